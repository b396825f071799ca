// The open host as a process beside other programs, and its threads beside one.
#include "bench/beside/program.h"
#include "bench/cases/cases.h"
#include "bench/inputs/inputs.h"
#include "bench/measure/pairs.h"
#include "fiohost/session.h"

namespace bench {
namespace {

using Arguments = std::vector<std::string>;

Arguments over(Arguments arguments, const Paths& files) {
  for (const Path& file : files) arguments.push_back(file.string());
  return arguments;
}

std::string openHost() { return (fiohost::pluginFolder().parent_path() / "fiohost").string(); }

std::unique_ptr<Measurement> prepare(const Arguments& ours, const Arguments& beside) {
  return std::make_unique<Pairs>([=] { runProgram(ours); }, [=] { runProgram(beside); });
}

// Decoding a few pictures to PNG files is work that keeps a processor busy.
std::unique_ptr<Measurement> prepareJobs() {
  const Path folder = outputPath("shown");
  std::filesystem::create_directories(folder);
  Paths pictures;
  for (int i = 0; i < 8; ++i) {
    pictures.push_back(inputPath("show-" + std::to_string(i) + ".jpg"));
    std::filesystem::copy_file(jpegOfMegapixels(1), pictures.back(),
                               std::filesystem::copy_options::skip_existing);
  }
  const auto show = [=](const char* jobs) -> Work {
    const Arguments arguments = over({openHost(), "show", "--force", "--jobs", jobs}, pictures);
    return [=] { runProgram(arguments, folder.string()); };
  };
  return std::make_unique<Pairs>(show("1"), show("2"));
}

// Both as processes, for what a user waits for: the streams as files beside no file at all.
std::unique_ptr<Measurement> prepareMpo(host::u32 images) {
  const std::string file = mpoOf(images).string();
  const std::string folder = outputPath("extracted").string();
  return prepare({openHost(), "mpo", "extract", "--jpeg", "--force", "-o", folder, file},
                 {"/usr/bin/python3", std::string(KF_BENCH_SOURCE) + "/beside/pillow_frames.py",
                  file, std::to_string(images), "1"});
}

}  // namespace

Cases processCases() {
  return {
      {"process exiftool", "exiftool -j over the same 300 files", "ratio", 0.03, Judged::atMost, 3,
       [] {
         return prepare(over({openHost(), "properties", "--json"}, manyFiles()),
                        over({"exiftool", "-j"}, manyFiles()));
       }},
      {"process exiv2", "exiv2 -pa over the same 300 files", "ratio", 0.5, Judged::atMost, 15,
       [] {
         return prepare(over({openHost(), "properties"}, manyFiles()),
                        over({"exiv2", "-pa"}, manyFiles()));
       }},
      {"process mpo 2 images", "Pillow: open and seek all frames, with its start", "ratio", 0.5,
       Judged::atMost, 15, [] { return prepareMpo(2); }},
      {"process mpo 127 images", "Pillow: open and seek all frames, with its start", "ratio", 0.5,
       Judged::atMost, 15, [] { return prepareMpo(127); }},
      // Eight pictures decoded to PNG files; the figure is the time of one job over that of two.
      {"jobs", "two jobs", "ratio", 1.8, Judged::atLeast, 9, &prepareJobs}};
}

}  // namespace bench

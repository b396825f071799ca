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

// Decoding and encoding a few large pictures, which is work that keeps a processor busy.
Arguments convertWith(const char* jobs) {
  const Path folder = outputPath("converted");
  std::filesystem::create_directories(folder);
  Paths pictures;
  for (int i = 0; i < 8; ++i) {
    pictures.push_back(inputPath("convert-" + std::to_string(i) + ".jpg"));
    std::filesystem::copy_file(jpegOfMegapixels(10), pictures.back(),
                               std::filesystem::copy_options::skip_existing);
  }
  return over({openHost(), "convert", "--jobs", jobs, "--force", "-o", folder.string()}, pictures);
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
      {"two processors", "two threads, for 8 pictures that are converted", "ratio", 1.8,
       Judged::atLeast, 9, [] { return prepare(convertWith("1"), convertWith("2")); }}};
}

}  // namespace bench

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/output_file.h"
#include "fiohost/picture_words.h"
#include "fiohost/strip/private_data.h"

namespace fiohost {
namespace {

std::string partText(const PrivatePart& part) {
  const std::string where =
      part.image != 0 ? "image " + std::to_string(part.image) : "behind the images";
  const std::string size = part.bytes != 0 ? ", " + std::to_string(part.bytes) + " bytes" : "";
  return where + ": " + part.what + size;
}

Json partsInJson(const std::vector<PrivatePart>& parts) {
  Json all = Json::array();
  for (const PrivatePart& part : parts) {
    all.push_back({{"image", part.image != 0 ? Json(part.image) : Json(nullptr)},
                   {"what", part.what},
                   {"bytes", part.bytes}});
  }
  return all;
}

class StripCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_, "JPEG or MPO files")->required();
    auto* gps = arguments.add_flag("--gps", gps_, "take out what tells where a picture was taken");
    auto* all = arguments.add_flag("--all", all_, "take out all that the picture does not need");
    gps->excludes(all);
    auto* output =
        arguments.add_option("-o,--output", output_, "the file, or the folder, to write to");
    auto* inPlace = arguments.add_flag("--in-place", inPlace_, "replace the files themselves");
    inPlace->excludes(output);
    arguments.add_flag("--force", replace_, "replace an existing output");
    arguments.add_flag("--json", json_, "print JSON");
    arguments.callback([this] {
      if (!gps_ && !all_) throw CLI::RequiredError("--gps or --all");
      if (output_.empty() && !inPlace_) throw CLI::RequiredError("--output or --in-place");
    });
  }

  ExitCode run(const Session&) override {
    const bool folder = !inPlace_ && std::filesystem::is_directory(platform::systemPath(output_));
    if (!inPlace_ && !folder && files_.size() > 1) {
      throw Failure(output_ + " is no folder", "several files need an existing folder to go to");
    }
    return serveFiles(files_, {json_}, [&](const std::string& name) {
      if (inPlace_) return serve(name, name, Existing::replaced);
      return serve(name, folder ? nameIn(name) : output_,
                   replace_ ? Existing::replaced : Existing::refused);
    });
  }

 private:
  [[nodiscard]] std::string nameIn(const std::string& input) const {
    const std::filesystem::path name = platform::systemPath(input).filename();
    return platform::displayPath(platform::systemPath(output_) / name);
  }

  FileResult serve(const std::string& name, const std::string& outputName,
                   Existing existing) const {
    const ByteBlock file = readWhole(SourceFile(name).path());
    const StrippedFile stripped = all_ ? withoutPrivateData(file) : withoutPlaces(file);
    OutputFile output(outputName, existing);
    output.write(stripped.bytes.data(), stripped.bytes.size());
    output.commit();
    return told(name, outputName, stripped);
  }

  static FileResult told(const std::string& name, const std::string& output,
                         const StrippedFile& stripped) {
    std::string words =
        name + " -> " + output + ", " + std::to_string(stripped.bytes.size()) + " bytes\n";
    for (const PrivatePart& part : stripped.removed) words += factLine("removed", partText(part));
    if (stripped.removed.empty()) words += factLine("removed", "nothing, there was none");
    for (const PrivatePart& part : stripped.kept) {
      words += factLine("kept", partText(part) + " (only --all takes it out)");
    }
    return {words,
            {{"file", name},
             {"output", output},
             {"bytes", stripped.bytes.size()},
             {"removed", partsInJson(stripped.removed)},
             {"kept", partsInJson(stripped.kept)}}};
  }

  std::vector<std::string> files_;
  std::string output_;
  bool gps_ = false;
  bool all_ = false;
  bool inPlace_ = false;
  bool replace_ = false;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> makeStripCommand() { return std::make_unique<StripCommand>(); }

}  // namespace fiohost

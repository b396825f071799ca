#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/jobs/jobs_option.h"
#include "fiohost/picture_words.h"
#include "fiohost/read_picture.h"

namespace fiohost {
namespace {

bool isTaken(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::exists(platform::systemPath(name), ignored);
}

// NAME.png, or NAME-2.png and so on when that is somebody else's file.
std::string outputName(const std::filesystem::path& file, bool force) {
  const std::string stem = platform::displayPath(file.stem());
  std::string name = stem + ".png";
  for (unsigned number = 2; !force && isTaken(name); ++number) {
    name = stem + "-" + std::to_string(number) + ".png";
  }
  return name;
}

class ShowCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_, "JPEG or MPO files")->required();
    arguments.add_flag("--force", force_, "overwrite PNG files of the same name");
    arguments.add_flag("--json", json_, "print JSON");
    jobs_.declare(arguments);
  }

  ExitCode run(const Session& session) override {
    return serveFiles(files_, {json_, jobs()},
                      [&](const std::string& name) { return serve(session, name); });
  }

 private:
  // Names that are apart now stay so: each only looks for files that are there.
  [[nodiscard]] unsigned jobs() const {
    return jobs_.countFor(files_, [this](const std::string& name) {
      return outputName(platform::systemPath(name), force_);
    });
  }

  FileResult serve(const Session& session, const std::string& name) const {
    const SourceFile file(name);
    Described described = describeFile(session, file);
    const PictureInfo info = gatherInfo(session, file, described);
    const std::string output = outputName(file.path(), force_);
    readPicture(session, file, described, {}, output);
    FileResult result = {describeInWords(info) + factLine("Written", output), describeInJson(info)};
    result.json["output"] = output;
    return result;
  }

  std::vector<std::string> files_;
  bool force_ = false;
  bool json_ = false;
  Jobs jobs_;
};

}  // namespace

std::unique_ptr<Command> makeShowCommand() { return std::make_unique<ShowCommand>(); }

}  // namespace fiohost

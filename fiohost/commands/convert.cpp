#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/convert_picture.h"
#include "fiohost/jobs/jobs_option.h"
#include "fiohost/picture_words.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

const SettingKind& samplingKind() { return settingKinds()[1]; }

class ConvertCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("IN", files_, "JPEG files")->required();
    arguments.add_option("-o,--output", output_, "the file, or the folder, to write to")
        ->required();
    arguments.add_option("--quality", quality_, "1 to 100")->check(CLI::Range(1, 100));
    arguments.add_option("--sampling", sampling_, "colour sampling: 444, 422, 420 or 411")
        ->check(CLI::IsMember({"444", "422", "420", "411"}));
    arguments.add_flag("--progressive", progressive_, "write the picture in several passes");
    arguments.add_flag("--no-jfif", noJfif_, "write no JFIF header");
    arguments.add_flag("--drop-metadata", options_.dropMetadata, "keep no metadata");
    arguments.add_flag("--keep-settings", options_.keepSourceSettings,
                       "encoding, sampling and JFIF header as the input has them");
    arguments.add_flag("--options", options_.askUser,
                       "ask in the save-options dialog before saving (Windows)");
    arguments.add_flag("--force", options_.replace, "replace an existing output");
    arguments.add_flag("--json", json_, "print JSON");
    jobs_.declare(arguments);
  }

  ExitCode run(const Session& session) override {
    const bool folder = std::filesystem::is_directory(platform::systemPath(output_));
    if (!folder && files_.size() > 1) {
      throw Failure(output_ + " is no folder", "several files need an existing folder to go to");
    }
    if (options_.askUser && !hasWindowsFor(session, "--options")) return exitUsage;
    takeOptions();
    return serveFiles(files_, {json_, jobs(folder)}, [&](const std::string& name) {
      return serve(session, name, folder ? nameIn(name) : output_);
    });
  }

 private:
  void takeOptions() {
    if (quality_ != 0) options_.quality = quality_;
    if (!sampling_.empty()) options_.sample = parseSetting(samplingKind(), sampling_);
    if (progressive_) options_.mode = host::modeProgressive;
    if (noJfif_) options_.jfif = 0;
  }

  [[nodiscard]] unsigned jobs(bool folder) const {
    if (!folder || options_.askUser) return 1;  // one dialog at a time
    return jobs_.countFor(files_, [this](const std::string& name) { return nameIn(name); });
  }

  [[nodiscard]] std::string nameIn(const std::string& input) const {
    const std::filesystem::path name = platform::systemPath(input).filename();
    return platform::displayPath(platform::systemPath(output_) / name.stem()) + ".jpg";
  }

  [[nodiscard]] FileResult serve(const Session& session, const std::string& name,
                                 const std::string& output) const {
    const SourceFile file(name);
    return savedResult(name, convertPicture(session, file, output, options_));
  }

  std::vector<std::string> files_;
  std::string output_;
  host::u32 quality_ = 0;
  std::string sampling_;
  bool progressive_ = false;
  bool noJfif_ = false;
  bool json_ = false;
  ConvertOptions options_;
  Jobs jobs_;
};

}  // namespace

std::unique_ptr<Command> makeConvertCommand() { return std::make_unique<ConvertCommand>(); }

}  // namespace fiohost

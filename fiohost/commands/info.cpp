#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/jobs/jobs_option.h"
#include "fiohost/picture_words.h"

namespace fiohost {
namespace {

class InfoCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_, "JPEG or MPO files")->required();
    arguments.add_flag("--json", json_, "print JSON");
    jobs_.declare(arguments);
  }

  ExitCode run(const Session& session) override {
    return serveFiles(files_, {json_, jobs_.count()}, [&session](const std::string& name) {
      const SourceFile file(name);
      const PictureInfo info = gatherInfo(session, file, describeFile(session, file));
      return FileResult{describeInWords(info), describeInJson(info)};
    });
  }

 private:
  std::vector<std::string> files_;
  bool json_ = false;
  Jobs jobs_;
};

}  // namespace

std::unique_ptr<Command> makeInfoCommand() { return std::make_unique<InfoCommand>(); }

}  // namespace fiohost

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/view/view_run.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

class ViewCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_,
                         "JPEG or MPO files, or a folder; of one file its neighbours can be "
                         "reached too");
  }

  ExitCode run(const Session& session) override {
    if (!session.plugin.hasWindows()) {
      printFailure("", Failure("view: this build has no windows", "use the Windows build"));
      return exitUsage;
    }
    platform::leaveOwnConsole();
    view::runViewer(session, files_);
    return exitSuccess;
  }

 private:
  std::vector<std::string> files_;
};

}  // namespace

std::unique_ptr<Command> makeViewCommand() { return std::make_unique<ViewCommand>(); }

}  // namespace fiohost

// What the program tells shells and manual readers about itself.
#include <iostream>

#include "fiohost/commands/command.h"
#include "fiohost/shell/completion.h"
#include "fiohost/shell/manual.h"

namespace fiohost {
namespace {

class CompletionCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("SHELL", shell_, "the shell to complete for")
        ->required()
        ->check(CLI::IsMember({"bash", "powershell"}));
  }

  ExitCode run(const Session&) override {
    const CommandLine line;
    std::cout << (shell_ == "bash" ? bashCompletion(line.app()) : powershellCompletion(line.app()));
    return exitSuccess;
  }

 private:
  std::string shell_;
};

class ManCommand : public Command {
 public:
  void declare(CLI::App&) override {}

  ExitCode run(const Session&) override {
    std::cout << manualPage(CommandLine().app());
    return exitSuccess;
  }
};

}  // namespace

std::unique_ptr<Command> makeCompletionCommand() { return std::make_unique<CompletionCommand>(); }
std::unique_ptr<Command> makeManCommand() { return std::make_unique<ManCommand>(); }

}  // namespace fiohost

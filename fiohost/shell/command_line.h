// The program's command line as it is parsed, shown as help, completed and described in the manual:
// all from the one declaration that each command makes.
#pragma once

#include <vector>

#include "fiohost/commands/command.h"

namespace fiohost {

struct ReadyCommand {
  CLI::App* arguments;
  std::unique_ptr<Command> command;
};

class CommandLine {
 public:
  CommandLine();

  [[nodiscard]] CLI::App& app() noexcept { return app_; }
  [[nodiscard]] const CLI::App& app() const noexcept { return app_; }
  [[nodiscard]] const std::vector<ReadyCommand>& commands() const noexcept { return commands_; }

 private:
  CLI::App app_;
  std::vector<ReadyCommand> commands_;
};

// A command's words, "mpo build"; empty for the program.
[[nodiscard]] std::string pathOf(const CLI::App& app);

// The commands below one, in the order in which they were declared.
[[nodiscard]] std::vector<const CLI::App*> partsOf(const CLI::App& app);

struct DeclaredOption {
  std::vector<std::string> names;    // "-o", "--output"; for a positional its one name
  std::string value;                 // what it takes, as help shows it; empty for a flag
  std::vector<std::string> choices;  // all its values, where they are few
  std::string description;
  bool positional;
  bool required;
};

[[nodiscard]] std::vector<DeclaredOption> optionsOf(const CLI::App& app);

}  // namespace fiohost

// One command of the program: its arguments and its work. A command is one file with its maker in
// the table.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>

#include "fiohost/session.h"

namespace fiohost {

enum ExitCode : int { exitSuccess = 0, exitSomeFailed = 1, exitUsage = 2 };

class Command {
 public:
  Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;
  virtual ~Command() = default;

  // Adds the command's arguments to its part of the command line.
  virtual void declare(CLI::App& arguments) = 0;
  // Does the work after the arguments were taken in. Data goes to the standard output, messages
  // to the standard error. Throws Failure for what concerns no single file.
  virtual ExitCode run(const Session& session) = 0;
};

struct CommandEntry {
  const char* name;
  const char* summary;
  std::unique_ptr<Command> (*make)();
};

struct CommandTable {
  const CommandEntry* first;
  const CommandEntry* last;
  [[nodiscard]] const CommandEntry* begin() const noexcept { return first; }
  [[nodiscard]] const CommandEntry* end() const noexcept { return last; }
};

[[nodiscard]] CommandTable commandTable();

std::unique_ptr<Command> makeCompletionCommand();
std::unique_ptr<Command> makeConvertCommand();
std::unique_ptr<Command> makeFormatsCommand();
std::unique_ptr<Command> makeHeapCommand();
std::unique_ptr<Command> makeInfoCommand();
std::unique_ptr<Command> makeManCommand();
std::unique_ptr<Command> makeMpoCommand();
std::unique_ptr<Command> makeMpoBuildCommand();  // a part of the one before, as the next ones
std::unique_ptr<Command> makeMpoInsertCommand();
std::unique_ptr<Command> makeMpoRemoveCommand();
std::unique_ptr<Command> makeMpoReorderCommand();
std::unique_ptr<Command> makeMpoRepairCommand();
std::unique_ptr<Command> makeMpoSwapCommand();
std::unique_ptr<Command> makeMpoVerifyCommand();
std::unique_ptr<Command> makePropertiesCommand();
std::unique_ptr<Command> makeReadCommand();
std::unique_ptr<Command> makeSetCommand();
std::unique_ptr<Command> makeSettingsCommand();
std::unique_ptr<Command> makeShowCommand();
std::unique_ptr<Command> makeStripCommand();
std::unique_ptr<Command> makeViewCommand();

}  // namespace fiohost

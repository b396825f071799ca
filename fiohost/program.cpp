#include "fiohost/program.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/interrupt.h"
#include "fiohost/view/implied_command.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

struct ReadyCommand {
  CLI::App* arguments;
  std::unique_ptr<Command> command;
};

std::vector<ReadyCommand> declareCommands(CLI::App& app) {
  std::vector<ReadyCommand> commands;
  for (const CommandEntry& entry : commandTable()) {
    CLI::App* arguments = app.add_subcommand(entry.name, entry.summary);
    commands.push_back({arguments, entry.make()});
    commands.back().command->declare(*arguments);
  }
  return commands;
}

// 0 when help was asked for.
int tellParseResult(const CLI::App& app, const CLI::ParseError& error) {
  return app.exit(error, std::cout, std::cerr) == 0 ? exitSuccess : exitUsage;
}

int runChosen(const std::vector<ReadyCommand>& commands) {
  const auto chosen = std::find_if(commands.begin(), commands.end(),
                                   [](const ReadyCommand& c) { return c.arguments->parsed(); });
  watchInterrupt();
  try {
    const Session session;
    return chosen->command->run(session);
  } catch (const Failure& failure) {
    printFailure("", failure);
  } catch (const std::exception& error) {
    printFailure("", Failure(error.what(), ""));
  }
  return exitSomeFailed;
}

int parseAndRun(std::vector<std::string> arguments) {
  CLI::App app("Opens JPEG and MPO pictures through the plug-in K32JPG.FIO.", "fiohost");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // "/folder/picture.jpg" is a file on every system
  const std::vector<ReadyCommand> commands = declareCommands(app);
  std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return tellParseResult(app, error);
  }
  return runChosen(commands);
}

void tellOfNoMemory() noexcept {
  std::fputs("there is no memory left; close other programs\n", stderr);
}

// A JSON value takes memory even to be destroyed, and a destructor cannot fail. Everything that was
// to be written is whole by then, so the program ends as after any other failure.
[[noreturn]] void endWithoutMemory() noexcept {
  try {
    if (std::exception_ptr current = std::current_exception()) std::rethrow_exception(current);
  } catch (const std::bad_alloc&) {
    tellOfNoMemory();
    std::_Exit(exitSomeFailed);
  } catch (...) {
    std::abort();
  }
  std::abort();
}

}  // namespace

int runProgram(std::vector<std::string> arguments) {
  std::set_terminate(&endWithoutMemory);
  try {
    const view::Start start = {platform::showsWindows, platform::hasConsoleToItself()};
    return parseAndRun(view::withImpliedCommand(std::move(arguments), start));
  } catch (const std::bad_alloc&) {  // even telling of a failure takes memory
    tellOfNoMemory();
    return exitSomeFailed;
  }
}

}  // namespace fiohost

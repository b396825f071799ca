#include "fiohost/program.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>

#include "fiohost/commands/results.h"
#include "fiohost/interrupt.h"
#include "fiohost/shell/command_line.h"
#include "fiohost/view/implied_command.h"
#include "platform/console/console.h"

namespace fiohost {
namespace {

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
  CommandLine line;
  std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
  try {
    line.app().parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return tellParseResult(line.app(), error);
  }
  return runChosen(line.commands());
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

#include "fiohost/program.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <new>

#include "fiohost/commands/results.h"
#include "fiohost/interrupt.h"
#include "fiohost/shell/command_line.h"

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

}  // namespace

int runProgram(std::vector<std::string> arguments) {
  try {
    return parseAndRun(std::move(arguments));
  } catch (const std::bad_alloc&) {  // even telling of a failure takes memory
    std::fputs("there is no memory left; close other programs\n", stderr);
    return exitSomeFailed;
  }
}

}  // namespace fiohost

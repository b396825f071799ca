// Examples of every command, for help and the manual.
#pragma once

#include <span>
#include <string>

namespace fiohost {

struct Example {
  const char* command;  // the command's words; empty for the program
  const char* line;     // as it is typed
  const char* meaning;
};

// Those of one command, in their order.
[[nodiscard]] std::span<const Example> examplesOf(const std::string& command);

}  // namespace fiohost

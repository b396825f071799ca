// The program behind main().
#pragma once

#include <string>
#include <vector>

namespace fiohost {

// Takes UTF-8 arguments without the program's name; returns the exit code.
int runProgram(std::vector<std::string> arguments);

}  // namespace fiohost

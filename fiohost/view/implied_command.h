// What the program does when it is started by a mouse, without a command.
#pragma once

#include <string>
#include <vector>

namespace fiohost::view {

// How the program was started.
struct Start {
  bool showsWindows;        // whether this system's build has windows
  bool hasConsoleToItself;  // one that the system opened for it, as for a double click
};

// The arguments with the command "view" in front where a user can have meant nothing else: there
// are none and nobody reads the console, or all of them are files or folders that exist, as when
// they were dropped on the program. Any others come back as they are.
[[nodiscard]] std::vector<std::string> withImpliedCommand(std::vector<std::string> arguments,
                                                          const Start& start);

}  // namespace fiohost::view

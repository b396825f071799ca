// NAME=VALUE, as commands that set something take it.
#pragma once

#include <string>
#include <vector>

namespace fiohost {

struct Change {
  std::string name;
  std::string text;
};

// Split at the first equals sign.
[[nodiscard]] std::vector<Change> splitChanges(const std::vector<std::string>& changes);

// What is wrong with one, for the command line; empty when nothing is.
[[nodiscard]] std::string checkChange(const std::string& change);

}  // namespace fiohost

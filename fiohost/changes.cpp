#include "fiohost/changes.h"

#include <algorithm>

namespace fiohost {

std::vector<Change> splitChanges(const std::vector<std::string>& changes) {
  std::vector<Change> split;
  for (const std::string& change : changes) {
    const std::size_t equals = std::min(change.find('='), change.size());
    split.push_back({change.substr(0, equals), change.substr(std::min(equals + 1, change.size()))});
  }
  return split;
}

std::string checkChange(const std::string& change) {
  const std::size_t equals = change.find('=');
  if (equals != std::string::npos && equals > 0) return "";
  return "\"" + change + "\" is no NAME=VALUE";
}

}  // namespace fiohost

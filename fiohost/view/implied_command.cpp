#include "fiohost/view/implied_command.h"

#include <algorithm>
#include <filesystem>

#include "fiohost/commands/command.h"
#include "platform/console/console.h"

namespace fiohost::view {
namespace {

bool isCommand(const std::string& word) {
  const CommandTable table = commandTable();
  return std::any_of(table.begin(), table.end(),
                     [&word](const CommandEntry& entry) { return word == entry.name; });
}

bool exists(const std::string& name) {
  if (name.empty()) return false;
  std::error_code ignored;
  return std::filesystem::exists(platform::systemPath(name), ignored);
}

}  // namespace

std::vector<std::string> withImpliedCommand(std::vector<std::string> arguments,
                                            const Start& start) {
  if (!start.showsWindows) return arguments;
  const bool meansWindow = arguments.empty()
                               ? start.hasConsoleToItself
                               : !isCommand(arguments.front()) &&
                                     std::all_of(arguments.begin(), arguments.end(), &exists);
  if (meansWindow) arguments.insert(arguments.begin(), "view");
  return arguments;
}

}  // namespace fiohost::view

#include "platform/console/start_folder.h"

#include <array>
#include <string>

#include "platform/console/console.h"
#include "platform/environment.h"

namespace platform {
namespace {

const std::filesystem::path* startFolder = nullptr;

constexpr std::array variables = {"KFIO_INI", "TMPDIR", "TMP", "TEMP"};

// A name alone is left as it is on Windows, where it means a file of the system's own folder.
void makeAbsolute(const char* variable) {
  const std::filesystem::path value = environmentValue(variable);
  const bool names = value.has_parent_path() || std::filesystem::path::preferred_separator == '/';
  if (value.empty() || value.is_absolute() || !names) return;
  SetEnvironmentVariableA(variable, std::filesystem::absolute(value).string().c_str());
}

}  // namespace

StartFolder::StartFolder() : path_(std::filesystem::current_path()) {
  for (const char* variable : variables) makeAbsolute(variable);
  startFolder = &path_;
}

StartFolder::~StartFolder() {
  startFolder = nullptr;
  std::error_code ignored;
  std::filesystem::current_path(path_, ignored);
}

std::filesystem::path fromStartFolder(const std::filesystem::path& name) {
  return startFolder != nullptr ? *startFolder / name : name;
}

}  // namespace platform

// The XDG Base Directory Specification says where settings belong.
#include "platform/settings_folder.h"

#include <filesystem>
#include <system_error>

#include "platform/environment.h"

namespace platform {
namespace {

// A relative path in the variable counts as none.
std::string configurationFolder() {
  std::string folder = environmentValue("XDG_CONFIG_HOME");
  if (folder.starts_with('/')) return folder;
  folder = environmentValue("HOME");
  return folder.empty() ? folder : folder + "/.config";
}

}  // namespace

std::string settingsFolder() {
  std::string folder = configurationFolder();
  if (folder.empty()) return {};
  folder += "/kfio";
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  return folder + '/';
}

}  // namespace platform

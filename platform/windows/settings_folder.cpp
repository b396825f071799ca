#include "platform/settings_folder.h"

#include "platform/environment.h"

namespace platform {

std::string settingsFolder() {
  std::string folder = environmentValue("APPDATA");
  if (folder.empty()) return {};
  folder += "\\kfio";
  CreateDirectoryA(folder.c_str(), nullptr);
  return folder + '\\';
}

}  // namespace platform

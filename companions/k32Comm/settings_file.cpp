// Where the settings file is.
#include <cstddef>
#include <cstring>
#include <exception>
#include <string>

#include "host/k32comm.h"
#include "platform/environment.h"
#include "platform/settings_folder.h"

namespace k32Comm {
namespace {

// KFIO_INI names the file itself; else it is kfio.ini in the user's settings.
std::string findSettingsFile() {
  std::string path = platform::environmentValue("KFIO_INI");
  if (!path.empty()) return path;
  path = platform::settingsFolder();
  return path.empty() ? path : path + "kfio.ini";
}

// A path that does not fit is left out: cut short it would name another file.
void storeSettingsFile(char* path, std::size_t capacity) {
  const std::string found = findSettingsFile();
  if (found.size() < capacity) std::memcpy(path, found.c_str(), found.size() + 1);
}

}  // namespace
}  // namespace k32Comm

extern "C" void k32GetKavroIniFileName(char* path, int capacity) {
  if (path == nullptr || capacity < 1) return;
  *path = '\0';
  try {
    k32Comm::storeSettingsFile(path, static_cast<std::size_t>(capacity));
  } catch (const std::exception&) {
    *path = '\0';
  }
}

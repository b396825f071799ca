#include "frame/companion_search.h"

#include <cstring>
#include <string>

#include "platform/delay_load.h"

namespace frame {
namespace {

constexpr char companionFolder[] = "fio";
constexpr DWORD longestHostPath = 259;

// The folder of the host's executable without its last separator; empty when it is not known.
std::string hostFolder() {
  char path[longestHostPath + 1] = {};
  if (GetModuleFileNameA(nullptr, path, longestHostPath) == 0) return {};
  const char* separator = std::strrchr(path, '\\');
  if (separator == nullptr) separator = std::strrchr(path, '/');
  return separator != nullptr ? std::string(path, static_cast<std::size_t>(separator - path))
                              : std::string();
}

HMODULE loadBesideHost(platform::DelayNotification notification, const char* library) noexcept {
  if (notification != platform::DelayNotification::libraryNotLoaded) return nullptr;
  try {
    const std::string folder = hostFolder();
    if (folder.empty()) return nullptr;
    return LoadLibraryA((folder + '\\' + companionFolder + '\\' + library).c_str());
  } catch (...) {
    return nullptr;  // no memory for the path: the library counts as missing
  }
}

}  // namespace

void installCompanionSearch() noexcept { platform::setDelayFailureHook(&loadBesideHost); }

}  // namespace frame

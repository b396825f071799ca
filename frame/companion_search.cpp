#include "frame/companion_search.h"

#include <cstdio>
#include <cstring>

#include "platform/delay_load.h"

namespace frame {
namespace {

constexpr DWORD longestHostPath = 259;

// Loads FOLDER\fio\LIBRARY, FOLDER being that of the host's executable.
HMODULE loadBesideHost(platform::DelayNotification notification, const char* library) noexcept {
  if (notification != platform::DelayNotification::libraryNotLoaded) return nullptr;
  char host[longestHostPath + 1] = {};
  if (GetModuleFileNameA(nullptr, host, longestHostPath) == 0) return nullptr;
  char* separator = std::strrchr(host, '\\');
  if (separator == nullptr) separator = std::strrchr(host, '/');
  if (separator == nullptr || separator == host) return nullptr;
  *separator = '\0';
  char path[2 * longestHostPath];
  const int length = std::snprintf(path, sizeof path, "%s\\fio\\%s", host, library);
  return length > 0 && length < static_cast<int>(sizeof path) ? LoadLibraryA(path) : nullptr;
}

}  // namespace

void installCompanionSearch() noexcept { platform::setDelayFailureHook(&loadBesideHost); }

}  // namespace frame

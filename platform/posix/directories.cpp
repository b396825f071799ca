#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/posix/errors.h"
#include "platform/posix/paths.h"
#include "platform/posix/unicode.h"

namespace platform::posix {
namespace {

std::string requireCurrentDirectory() {
  std::string path = currentDirectory();
  if (path.empty()) SetLastError(codeOfError(errno));
  return path;
}

BOOL enter(const std::string& path) {
  if (chdir(path.c_str()) == 0) return TRUE;
  struct stat status;
  const int error = errno;
  if (error == ENOTDIR && stat(path.c_str(), &status) == 0) {
    return failWith(ERROR_DIRECTORY, FALSE);
  }
  return failWith(codeOfError(error, path), FALSE);
}

// Without memory: whoever restores a directory has to succeed when there is none. False when that
// does not do, for whatever reason.
bool enterAsItStands(LPCWSTR path) noexcept {
  char bytes[PATH_MAX];
  if (path == nullptr) return false;
  const auto length = utf8Into(std::span(bytes).first(sizeof bytes - 1), path, Malformed::escape);
  if (!length) return false;
  bytes[*length] = '\0';
  return chdir(bytes) == 0;
}

std::string temporaryDirectory() {
  const char* chosen = std::getenv("TMPDIR");
  std::string path = chosen != nullptr && *chosen != '\0' ? chosen : "/tmp";
  if (path.front() != '/') path = currentDirectory() + "/" + path;
  if (path.back() != '/') path.push_back('/');
  return path;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

DWORD GetCurrentDirectoryW(DWORD capacity, LPWSTR buffer) noexcept {
  return guarded(DWORD{0}, [=] {
    const std::wstring path = widePath(requireCurrentDirectory());
    return path.empty() ? 0 : handOut<wchar_t>(path, capacity, buffer);
  });
}

BOOL SetCurrentDirectoryA(LPCSTR path) noexcept {
  return guarded(FALSE, [=] { return enter(systemPath(path)); });
}

BOOL SetCurrentDirectoryW(LPCWSTR path) noexcept {
  if (enterAsItStands(path)) return TRUE;
  return guarded(FALSE, [=] { return enter(systemPath(path)); });
}

DWORD GetTempPathA(DWORD capacity, LPSTR buffer) noexcept {
  return guarded(DWORD{0}, [=] { return handOut<char>(temporaryDirectory(), capacity, buffer); });
}

DWORD GetTempPathW(DWORD capacity, LPWSTR buffer) noexcept {
  return guarded(
      DWORD{0}, [=] { return handOut<wchar_t>(widePath(temporaryDirectory()), capacity, buffer); });
}

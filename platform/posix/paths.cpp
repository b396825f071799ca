#include "platform/posix/paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/posix/unicode.h"

namespace platform::posix {
namespace {

bool exists(const std::string& path) {
  struct stat status;
  return lstat(path.c_str(), &status) == 0;
}

std::string withSystemSeparators(std::string path) {
  if (path.find('\\') != std::string::npos && !exists(path)) {
    std::replace(path.begin(), path.end(), '\\', '/');
  }
  return path;
}

}  // namespace

std::string systemPath(const char* path) {
  return path != nullptr ? withSystemSeparators(path) : std::string();
}

std::string systemPath(const wchar_t* path) { return withSystemSeparators(pathBytes(path)); }

std::string pathBytes(const wchar_t* path) {
  if (path == nullptr) return {};
  return utf8FromWide(path, Malformed::escape).value_or(std::string());
}

std::wstring widePath(std::string_view path) {
  return wideFromUtf8(path, Malformed::escape).value_or(std::wstring());
}

std::string_view baseName(std::string_view path) noexcept {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

std::string currentDirectory() {
  std::string path(256, '\0');
  while (getcwd(path.data(), path.size()) == nullptr) {
    if (errno != ERANGE) return {};
    path.resize(path.size() * 2);
  }
  path.resize(path.find('\0'));
  return path;
}

}  // namespace platform::posix

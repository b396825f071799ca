#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "platform/posix/ini_text.h"
#include "platform/posix/objects.h"
#include "platform/posix/paths.h"
#include "platform/posix/unicode.h"

namespace platform::posix {
namespace {

// Nothing, with errno set, when the file cannot be read.
std::optional<std::string> readText(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  std::string text;
  char part[4096];
  while (true) {
    const ssize_t count = read(file.get(), part, sizeof(part));
    if (count == 0) return text;
    if (count < 0 && errno != EINTR) return std::nullopt;
    if (count > 0) text.append(part, static_cast<std::size_t>(count));
  }
}

bool writeText(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// The file behind a symbolic link, so that the link stays one.
std::string linkTarget(const std::string& path) {
  char resolved[PATH_MAX];
  return realpath(path.c_str(), resolved) != nullptr ? std::string(resolved) : path;
}

// Puts the text in place of the file's in one step: whoever reads sees the old text or the new one.
// False, with errno set, when that fails; the old file is whole then.
bool replaceText(const std::string& path, std::string_view text) {
  const std::string target = linkTarget(path);
  const std::string aside = target + "." + std::to_string(getpid()) + ".new";
  Descriptor file(open(aside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!file) return false;
  struct stat old;
  const bool keepMode = stat(target.c_str(), &old) == 0;
  if ((!keepMode || fchmod(file.get(), old.st_mode & 0777) == 0) && writeText(file.get(), text) &&
      rename(aside.c_str(), target.c_str()) == 0) {
    return true;
  }
  const int error = errno;
  unlink(aside.c_str());
  errno = error;
  return false;
}

bool isReadOnly(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

BOOL writeValue(const std::string& path, std::string_view section, std::string_view key,
                std::string_view value) {
  static std::mutex writing;
  const std::lock_guard<std::mutex> guard(writing);
  if (isReadOnly(path)) return failWith(ERROR_ACCESS_DENIED, FALSE);
  const std::optional<std::string> text = readText(path);
  if (!text && errno != ENOENT) return failWith(codeOfError(errno, path), FALSE);
  const std::string changed = withIniValue(text.value_or(""), section, key, value);
  return replaceText(path, changed) || failWith(codeOfError(errno, path), false);
}

// Nothing, with the last error set, when the file or the key is missing.
std::optional<std::string> readValue(LPCSTR section, LPCSTR key, LPCSTR path) {
  const std::string file = systemPath(path);
  const std::optional<std::string> text = readText(file);
  if (!text) return failWith<std::optional<std::string>>(codeOfError(errno, file), {});
  std::optional<std::string> value = findIniValue(*text, section, key);
  SetLastError(value ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND);
  return value;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR key, INT missing, LPCSTR path) noexcept {
  const auto otherwise = static_cast<UINT>(missing);
  if (section == nullptr || key == nullptr) return failWith(ERROR_INVALID_PARAMETER, otherwise);
  return guarded(otherwise, [=] {
    const std::optional<std::string> value = readValue(section, key, path);
    return value && !value->empty() ? iniNumber(*value) : otherwise;
  });
}

BOOL WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR path) noexcept {
  if (section == nullptr || key == nullptr || value == nullptr || path == nullptr) {
    return failWith(ERROR_INVALID_PARAMETER, FALSE);
  }
  return guarded(FALSE, [=] { return writeValue(systemPath(path), section, key, value); });
}

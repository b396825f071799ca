#include "platform/posix/errors.h"

#include <sys/stat.h>

#include <cerrno>

namespace platform::posix {
namespace {

thread_local DWORD lastError = ERROR_SUCCESS;

struct ErrorName {
  int error;
  DWORD code;
};

constexpr ErrorName errorNames[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_ACCESS_DENIED},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EEXIST, ERROR_FILE_EXISTS},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EFBIG, ERROR_DISK_FULL},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EINVAL, ERROR_INVALID_PARAMETER},
};

bool isFolder(const std::string& path) noexcept {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool hasFolder(const std::string& path) {
  const std::size_t separator = path.find_last_of('/');
  if (separator == std::string::npos) return !path.empty();
  return separator == 0 || isFolder(path.substr(0, separator));
}

}  // namespace

DWORD codeOfError(int error) noexcept {
  for (const ErrorName& name : errorNames) {
    if (name.error == error) return name.code;
  }
  return ERROR_GEN_FAILURE;
}

DWORD codeOfError(int error, const std::string& path) {
  if (error == ENOENT && !hasFolder(path)) return ERROR_PATH_NOT_FOUND;
  return codeOfError(error);
}

}  // namespace platform::posix

DWORD GetLastError() noexcept { return platform::posix::lastError; }

void SetLastError(DWORD code) noexcept { platform::posix::lastError = code; }

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/posix/objects.h"
#include "platform/posix/paths.h"

namespace platform::posix {
namespace {

bool isReadOnly(const struct stat& status) {
  return (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

// Why the file may not leave its name, or ERROR_SUCCESS.
DWORD removalRefusal(const struct stat& status) {
  Objects& objects = Objects::instance();
  const FileIdentity identity(status);
  if (S_ISDIR(status.st_mode) || isReadOnly(status)) return ERROR_ACCESS_DENIED;
  if (!objects.sharesDeletion(identity)) return ERROR_SHARING_VIOLATION;
  return objects.isMapped(identity) ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
}

BOOL deleteFile(const std::string& path) {
  struct stat status;
  if (path.empty()) return failWith(ERROR_PATH_NOT_FOUND, FALSE);
  if (lstat(path.c_str(), &status) != 0) return failWith(codeOfError(errno, path), FALSE);
  if (!S_ISLNK(status.st_mode)) {
    const DWORD code = removalRefusal(status);
    if (code != ERROR_SUCCESS) return failWith(code, FALSE);
  }
  return unlink(path.c_str()) == 0 || failWith(codeOfError(errno, path), false);
}

// Replaces what is at `to`, if anything is; any reason against that is an access that is denied.
BOOL replaceFile(const std::string& from, const std::string& to) {
  struct stat source;
  struct stat target;
  const bool known = stat(from.c_str(), &source) == 0 && stat(to.c_str(), &target) == 0;
  if (known && FileIdentity(source) != FileIdentity(target) &&
      removalRefusal(target) != ERROR_SUCCESS) {
    return failWith(ERROR_ACCESS_DENIED, FALSE);
  }
  return rename(from.c_str(), to.c_str()) == 0 || failWith(codeOfError(errno, to), false);
}

BOOL moveToFreeName(const std::string& from, const std::string& to) {
  if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return TRUE;
  if (errno == EEXIST) return failWith(ERROR_ALREADY_EXISTS, FALSE);
  if (errno != EINVAL && errno != ENOSYS) return failWith(codeOfError(errno, to), FALSE);
  // This file system cannot refuse to replace, so look first.
  if (access(to.c_str(), F_OK) == 0) return failWith(ERROR_ALREADY_EXISTS, FALSE);
  return rename(from.c_str(), to.c_str()) == 0 || failWith(codeOfError(errno, to), false);
}

BOOL moveFile(const std::string& from, const std::string& to, DWORD flags) {
  struct stat status;
  if (from.empty() || to.empty()) return failWith(ERROR_PATH_NOT_FOUND, FALSE);
  if ((flags & ~MOVEFILE_REPLACE_EXISTING) != 0) return failWith(ERROR_INVALID_PARAMETER, FALSE);
  if (lstat(from.c_str(), &status) != 0) return failWith(codeOfError(errno, from), FALSE);
  if (!Objects::instance().sharesDeletion(FileIdentity(status))) {
    return failWith(ERROR_SHARING_VIOLATION, FALSE);
  }
  return (flags & MOVEFILE_REPLACE_EXISTING) != 0 ? replaceFile(from, to)
                                                  : moveToFreeName(from, to);
}

DWORD attributesOf(const std::string& path) {
  struct stat status;
  if (path.empty()) return failWith(ERROR_PATH_NOT_FOUND, INVALID_FILE_ATTRIBUTES);
  if (stat(path.c_str(), &status) != 0) {
    return failWith(codeOfError(errno, path), INVALID_FILE_ATTRIBUTES);
  }
  const DWORD kind = S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_ARCHIVE;
  return kind | (isReadOnly(status) ? FILE_ATTRIBUTE_READONLY : 0);
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

BOOL DeleteFileA(LPCSTR path) noexcept {
  return guarded(FALSE, [=] { return deleteFile(systemPath(path)); });
}

BOOL DeleteFileW(LPCWSTR path) noexcept {
  return guarded(FALSE, [=] { return deleteFile(systemPath(path)); });
}

BOOL MoveFileExA(LPCSTR from, LPCSTR to, DWORD flags) noexcept {
  return guarded(FALSE, [=] { return moveFile(systemPath(from), systemPath(to), flags); });
}

BOOL MoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) noexcept {
  return guarded(FALSE, [=] { return moveFile(systemPath(from), systemPath(to), flags); });
}

DWORD GetFileAttributesA(LPCSTR path) noexcept {
  return guarded(INVALID_FILE_ATTRIBUTES, [=] { return attributesOf(systemPath(path)); });
}

DWORD GetFileAttributesW(LPCWSTR path) noexcept {
  return guarded(INVALID_FILE_ATTRIBUTES, [=] { return attributesOf(systemPath(path)); });
}

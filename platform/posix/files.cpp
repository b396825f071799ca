#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "platform/posix/objects.h"
#include "platform/posix/paths.h"

namespace platform::posix {
namespace {

constexpr mode_t newFileMode = 0666;
constexpr mode_t anyWriteBit = S_IWUSR | S_IWGRP | S_IWOTH;

struct Opened {
  Descriptor descriptor;
  bool existed = true;
};

Descriptor openDescriptor(const std::string& path, int flags) {
  int number;
  do {
    number = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, newFileMode);
  } while (number < 0 && errno == EINTR);
  return Descriptor(number);
}

int accessFlags(DWORD access, DWORD disposition) {
  if (disposition == CREATE_ALWAYS) return O_RDWR;  // a file is cut whatever its access is
  if ((access & GENERIC_WRITE) == 0) return O_RDONLY;
  return (access & GENERIC_READ) != 0 ? O_RDWR : O_WRONLY;
}

// The descriptor, with errno set when there is none.
Opened openForDisposition(const std::string& path, DWORD access, DWORD disposition) {
  const int flags = accessFlags(access, disposition);
  if (disposition == OPEN_EXISTING) return {openDescriptor(path, flags)};
  Descriptor created = openDescriptor(path, flags | O_CREAT | O_EXCL);
  if (created || errno != EEXIST || disposition == CREATE_NEW) return {std::move(created), false};
  return {openDescriptor(path, flags | O_CREAT)};
}

// Why an open file may not be used, or ERROR_SUCCESS.
DWORD refusal(const Opened& opened, const struct stat& status, DWORD access, DWORD disposition) {
  if (S_ISDIR(status.st_mode)) return ERROR_ACCESS_DENIED;
  const bool cut = disposition == CREATE_ALWAYS;
  const bool changes = cut || (access & GENERIC_WRITE) != 0;
  if (opened.existed && changes && (status.st_mode & anyWriteBit) == 0) return ERROR_ACCESS_DENIED;
  const bool mapped = opened.existed && cut && Objects::instance().isMapped(FileIdentity(status));
  return mapped ? ERROR_USER_MAPPED_FILE : ERROR_SUCCESS;
}

// Windows reports an existing file although the call succeeds.
HANDLE finishOpening(HANDLE handle, bool existed, DWORD disposition) {
  if (disposition == CREATE_ALWAYS && existed) {
    const auto file = Objects::instance().file(handle);
    struct stat status;
    if (fstat(file->descriptor.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        ftruncate(file->descriptor.get(), 0) != 0) {
      const DWORD code = codeOfError(errno);
      CloseHandle(handle);
      return failWith(code, INVALID_HANDLE_VALUE);
    }
  }
  const bool reported = existed && (disposition == CREATE_ALWAYS || disposition == OPEN_ALWAYS);
  return failWith(reported ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS, handle);
}

HANDLE createFile(const std::string& path, DWORD access, DWORD share, DWORD disposition) {
  if (path.empty()) return failWith(ERROR_PATH_NOT_FOUND, INVALID_HANDLE_VALUE);
  if (disposition < CREATE_NEW || disposition > OPEN_ALWAYS) {
    return failWith(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
  }
  Opened opened = openForDisposition(path, access, disposition);
  struct stat status;
  if (!opened.descriptor || fstat(opened.descriptor.get(), &status) != 0) {
    return failWith(codeOfError(errno, path), INVALID_HANDLE_VALUE);
  }
  if (const DWORD code = refusal(opened, status, access, disposition); code != ERROR_SUCCESS) {
    return failWith(code, INVALID_HANDLE_VALUE);
  }
  HANDLE handle = Objects::instance().addFile(
      {std::move(opened.descriptor), FileIdentity(status), access, share});
  if (handle == INVALID_HANDLE_VALUE) return handle;
  return finishOpening(handle, opened.existed, disposition);
}

// The file of a handle that was opened with the access; null, with the last error set, otherwise.
std::shared_ptr<OpenFile> fileWithAccess(HANDLE handle, DWORD access) {
  std::shared_ptr<OpenFile> file = Objects::instance().file(handle);
  if (file != nullptr && (file->access & access) != access) {
    return failWith(ERROR_ACCESS_DENIED, std::shared_ptr<OpenFile>());
  }
  return file;
}

// Moves up to `count` bytes with `transfer(done)`, which answers like read(2). False on an error;
// `moved` says how many bytes went before it.
template <typename Transfer>
bool transferAll(DWORD count, DWORD& moved, Transfer transfer) {
  moved = 0;
  while (moved < count) {
    const ssize_t step = transfer(moved);
    if (step == 0) return true;
    if (step < 0 && errno != EINTR) return failWith(codeOfError(errno), false);
    if (step > 0) moved += static_cast<DWORD>(step);
  }
  return true;
}

std::optional<LONGLONG> sizeOf(HANDLE handle) {
  const auto file = Objects::instance().file(handle);
  if (file == nullptr) return std::nullopt;
  struct stat status;
  if (fstat(file->descriptor.get(), &status) == 0) return status.st_size;
  return failWith<std::optional<LONGLONG>>(codeOfError(errno), std::nullopt);
}

std::optional<LONGLONG> seek(HANDLE handle, LONGLONG distance, DWORD origin) {
  const auto file = Objects::instance().file(handle);
  if (file == nullptr) return std::nullopt;
  constexpr int origins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
  if (origin > FILE_END) return failWith<std::optional<LONGLONG>>(ERROR_INVALID_PARAMETER, {});
  const off_t position = lseek(file->descriptor.get(), distance, origins[origin]);
  if (position >= 0) return position;
  const DWORD code = errno == EINVAL ? ERROR_NEGATIVE_SEEK : codeOfError(errno);
  return failWith<std::optional<LONGLONG>>(code, std::nullopt);
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES, DWORD disposition,
                   DWORD, HANDLE) noexcept {
  return guarded(INVALID_HANDLE_VALUE,
                 [=] { return createFile(systemPath(path), access, share, disposition); });
}

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES,
                   DWORD disposition, DWORD, HANDLE) noexcept {
  return guarded(INVALID_HANDLE_VALUE,
                 [=] { return createFile(systemPath(path), access, share, disposition); });
}

BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD count, LPDWORD read, LPOVERLAPPED) noexcept {
  if (read == nullptr) return failWith(ERROR_INVALID_PARAMETER, FALSE);
  *read = 0;
  const auto file = fileWithAccess(handle, GENERIC_READ);
  if (file == nullptr) return FALSE;
  return transferAll(count, *read, [&](DWORD done) {
    return ::read(file->descriptor.get(), static_cast<BYTE*>(buffer) + done, count - done);
  });
}

BOOL WriteFile(HANDLE handle, LPCVOID data, DWORD count, LPDWORD written, LPOVERLAPPED) noexcept {
  if (written == nullptr) return failWith(ERROR_INVALID_PARAMETER, FALSE);
  *written = 0;
  const auto file = fileWithAccess(handle, GENERIC_WRITE);
  if (file == nullptr) return FALSE;
  return transferAll(count, *written, [&](DWORD done) {
    return ::write(file->descriptor.get(), static_cast<const BYTE*>(data) + done, count - done);
  });
}

BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position,
                      DWORD origin) noexcept {
  const std::optional<LONGLONG> reached = seek(file, distance.QuadPart, origin);
  if (reached && position != nullptr) position->QuadPart = *reached;
  return reached.has_value();
}

BOOL GetFileSizeEx(HANDLE file, PLARGE_INTEGER size) noexcept {
  const std::optional<LONGLONG> found = sizeOf(file);
  if (found) size->QuadPart = *found;
  return found.has_value();
}

BOOL CloseHandle(HANDLE object) noexcept {
  return Objects::instance().close(object) || failWith(ERROR_INVALID_HANDLE, false);
}

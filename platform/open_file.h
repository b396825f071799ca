// Open files: the owner type, and positions and sizes in 64 bits.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "platform/system.h"

namespace platform {

// A file that this code opened and closes. False when it could not be opened.
class OpenFile {
 public:
  OpenFile() = default;
  explicit OpenFile(HANDLE opened) noexcept : handle_(opened) {}
  OpenFile(OpenFile&& other) noexcept
      : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
  OpenFile& operator=(OpenFile&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OpenFile() {
    if (*this) CloseHandle(handle_);
  }

  explicit operator bool() const noexcept {
    return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr;
  }
  [[nodiscard]] HANDLE get() const noexcept { return handle_; }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

// Opens an existing file for reading, shared with other readers. The wide or the ANSI form.
[[nodiscard]] inline OpenFile openForReading(const wchar_t* path) noexcept {
  return OpenFile(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
}
[[nodiscard]] inline OpenFile openForReading(const char* path) noexcept {
  return OpenFile(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Moves the file position to offset from the origin (FILE_BEGIN, FILE_CURRENT, FILE_END) and
// returns where it is then.
inline std::optional<std::uint64_t> moveTo(HANDLE file, std::int64_t offset,
                                           DWORD origin = FILE_BEGIN) noexcept {
  LARGE_INTEGER distance = {};
  distance.QuadPart = offset;
  LARGE_INTEGER position = {};
  if (SetFilePointerEx(file, distance, &position, origin) == 0) return std::nullopt;
  return static_cast<std::uint64_t>(position.QuadPart);
}

[[nodiscard]] inline std::optional<std::uint64_t> fileSizeOf(HANDLE file) noexcept {
  LARGE_INTEGER size = {};
  if (GetFileSizeEx(file, &size) == 0) return std::nullopt;
  return static_cast<std::uint64_t>(size.QuadPart);
}

// Reads or writes exactly count bytes at the file position; false when that is not possible.
[[nodiscard]] inline bool readWhole(HANDLE file, void* bytes, DWORD count) noexcept {
  DWORD read = 0;
  return ReadFile(file, bytes, count, &read, nullptr) != 0 && read == count;
}
[[nodiscard]] inline bool writeWhole(HANDLE file, const void* bytes, DWORD count) noexcept {
  DWORD written = 0;
  return WriteFile(file, bytes, count, &written, nullptr) != 0 && written == count;
}

}  // namespace platform

// A file read from its beginning to its end.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "host/types.h"

namespace kExifLib {

class FileStream {
 public:
  // Null and unreadable paths give a stream that is not open.
  explicit FileStream(const char* path) noexcept;
  explicit FileStream(const wchar_t* path) noexcept;
  FileStream(const FileStream&) = delete;
  FileStream& operator=(const FileStream&) = delete;
  ~FileStream();

  [[nodiscard]] bool isOpen() const noexcept { return file_ != INVALID_HANDLE_VALUE; }

  // Each is false, or short, at the file's end.
  [[nodiscard]] bool readByte(host::u8& value) noexcept;
  [[nodiscard]] bool readBigEndian16(unsigned& value) noexcept;
  [[nodiscard]] bool skip(std::size_t count) noexcept;
  [[nodiscard]] std::vector<host::u8> readUpTo(std::size_t count);

 private:
  [[nodiscard]] bool fill() noexcept;
  [[nodiscard]] std::span<const host::u8> take(std::size_t count) noexcept;

  HANDLE file_ = INVALID_HANDLE_VALUE;
  std::array<host::u8, 16384> buffer_;
  std::size_t position_ = 0;
  std::size_t filled_ = 0;
};

}  // namespace kExifLib

// A whole file as read-only memory.
#pragma once

#include <span>

#include "host/types.h"

namespace property {

// Owns the file, the mapping and the view, each closed on every way out.
class MappedFile {
 public:
  // Opens an existing file for reading, shared for reading. An empty file cannot be mapped.
  explicit MappedFile(const wchar_t* path) noexcept;
  explicit MappedFile(const char* path) noexcept;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  ~MappedFile();

  explicit operator bool() const noexcept { return view_ != nullptr; }
  // The file's bytes, as long as this object lives.
  [[nodiscard]] std::span<const host::u8> bytes() const noexcept;

 private:
  void map() noexcept;

  HANDLE file_;
  HANDLE mapping_ = nullptr;
  const void* view_ = nullptr;
  host::u64 size_ = 0;
};

}  // namespace property

#include "property/mapped_file.h"

namespace property {

MappedFile::MappedFile(const wchar_t* path) noexcept
    : file_(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                        FILE_ATTRIBUTE_NORMAL, nullptr)) {
  map();
}

MappedFile::MappedFile(const char* path) noexcept
    : file_(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                        FILE_ATTRIBUTE_NORMAL, nullptr)) {
  map();
}

MappedFile::~MappedFile() {
  if (view_ != nullptr) UnmapViewOfFile(view_);
  if (mapping_ != nullptr) CloseHandle(mapping_);
  if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
}

void MappedFile::map() noexcept {
  LARGE_INTEGER size = {};
  if (file_ == INVALID_HANDLE_VALUE || GetFileSizeEx(file_, &size) == 0) return;
  mapping_ = CreateFileMappingA(file_, nullptr, PAGE_READONLY, 0, 0, nullptr);
  if (mapping_ == nullptr) return;
  view_ = MapViewOfFile(mapping_, FILE_MAP_READ, 0, 0, 0);
  size_ = static_cast<host::u64>(size.QuadPart);
}

std::span<const host::u8> MappedFile::bytes() const noexcept {
  return {static_cast<const host::u8*>(view_), static_cast<std::size_t>(size_)};
}

}  // namespace property

#include "companions/kExifLib/file_stream.h"

#include <algorithm>

namespace kExifLib {
namespace {

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

}  // namespace

FileStream::FileStream(const char* path) noexcept {
  if (path == nullptr) return;
  file_ = CreateFileA(path, GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                      nullptr);
}

FileStream::FileStream(const wchar_t* path) noexcept {
  if (path == nullptr) return;
  file_ = CreateFileW(path, GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                      nullptr);
}

FileStream::~FileStream() {
  if (isOpen()) CloseHandle(file_);
}

bool FileStream::fill() noexcept {
  DWORD count = 0;
  position_ = filled_ = 0;
  if (!ReadFile(file_, buffer_.data(), static_cast<DWORD>(buffer_.size()), &count, nullptr)) {
    return false;
  }
  filled_ = std::min<std::size_t>(count, buffer_.size());
  return filled_ != 0;
}

// At most count bytes of the buffer, which is filled again when it is used up; empty at the end.
std::span<const host::u8> FileStream::take(std::size_t count) noexcept {
  if (position_ == filled_ && !fill()) return {};
  const std::size_t length = std::min(count, filled_ - position_);
  const std::span<const host::u8> bytes(buffer_.data() + position_, length);
  position_ += length;
  return bytes;
}

bool FileStream::readByte(host::u8& value) noexcept {
  const auto byte = take(1);
  if (byte.empty()) return false;
  value = byte.front();
  return true;
}

bool FileStream::readBigEndian16(unsigned& value) noexcept {
  host::u8 high = 0;
  host::u8 low = 0;
  if (!readByte(high) || !readByte(low)) return false;
  value = high * 256U + low;
  return true;
}

bool FileStream::skip(std::size_t count) noexcept {
  while (count != 0) {
    const auto bytes = take(count);
    if (bytes.empty()) return false;
    count -= bytes.size();
  }
  return true;
}

std::vector<host::u8> FileStream::readUpTo(std::size_t count) {
  std::vector<host::u8> result;
  result.reserve(count);
  while (result.size() < count) {
    const auto bytes = take(count - result.size());
    if (bytes.empty()) break;
    result.insert(result.end(), bytes.begin(), bytes.end());
  }
  return result;
}

}  // namespace kExifLib

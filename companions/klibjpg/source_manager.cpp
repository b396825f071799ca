#include "companions/klibjpg/source_manager.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace klibjpg {
namespace {

using host::u8;
constexpr u8 prefix = 0xFF;
constexpr u8 endOfImage[] = {prefix, JPEG_EOI};

// Behind a prefix: neither a stuffed zero (T.81 F.1.2.3), a fill byte nor a restart marker.
bool endsScan(u8 code) {
  return code != 0 && code != prefix && (code < JPEG_RST0 || code > JPEG_RST0 + 7);
}

}  // namespace

InputSource::InputSource() noexcept : jpeg_source_mgr{} {
  init_source = [](j_decompress_ptr) {};
  fill_input_buffer = [](j_decompress_ptr info) -> boolean {
    static_cast<InputSource*>(info->src)->refill();
    return TRUE;
  };
  skip_input_data = [](j_decompress_ptr info, long count) {
    if (count > 0) static_cast<InputSource*>(info->src)->skip(static_cast<std::size_t>(count));
  };
  resync_to_restart = jpeg_resync_to_restart;
  term_source = [](j_decompress_ptr) {};
}

bool InputSource::refill() {
  std::span<const u8> next = std::exchange(behind_, {});
  if (next.empty() && !ended_) next = nextBuffer();
  if (next.empty()) {
    end();
    return false;
  }
  delivered_ += next.size();
  use(next);
  return true;
}

void InputSource::use(std::span<const u8> bytes) noexcept {
  next_input_byte = bytes.data();
  bytes_in_buffer = bytes.size();
}

void InputSource::end() noexcept {
  ended_ = true;
  behind_ = {};
  use(endOfImage);
}

const u8* InputSource::take(std::size_t count, u8* spare) {
  if (ended_) return nullptr;
  if (bytes_in_buffer >= count) {
    const u8* const bytes = next_input_byte;
    next_input_byte += count;
    bytes_in_buffer -= count;
    return bytes;
  }
  for (std::size_t taken = 0; taken < count;) {
    if (bytes_in_buffer == 0 && !refill()) return nullptr;
    const std::size_t part = std::min(count - taken, bytes_in_buffer);
    std::memcpy(spare + taken, next_input_byte, part);
    next_input_byte += part;
    bytes_in_buffer -= part;
    taken += part;
  }
  return spare;
}

void InputSource::skip(std::size_t count) {
  while (!ended_ && count > bytes_in_buffer) {
    count -= bytes_in_buffer;
    refill();
  }
  if (ended_) return;
  next_input_byte += count;
  bytes_in_buffer -= count;
}

void InputSource::skipScan() {
  while (!ended_) {
    const void* found =
        bytes_in_buffer != 0 ? std::memchr(next_input_byte, prefix, bytes_in_buffer) : nullptr;
    if (found == nullptr) {
      refill();
      continue;
    }
    skip(static_cast<std::size_t>(static_cast<const u8*>(found) - next_input_byte));
    if (isAtMarker()) return;
    skip(1);
  }
}

void InputSource::restart() {
  ended_ = false;
  behind_ = {};
  delivered_ = 0;
  bytes_in_buffer = 0;
  moveToStart();
}

// The next byte is a marker's prefix. When its code lies in the buffer behind, the prefix is handed
// out as a buffer of its own.
bool InputSource::isAtMarker() {
  if (bytes_in_buffer > 1) return endsScan(next_input_byte[1]);
  if (behind_.empty()) behind_ = nextBuffer();
  if (behind_.empty() || !endsScan(behind_[0])) return false;
  use({endOfImage, 1});
  return true;
}

std::span<const u8> MemorySource::nextBuffer() {
  return std::exchange(rest_, std::span<const u8>());
}

void MemorySource::moveToStart() { rest_ = bytes_; }

FileSource::FileSource(const char* path)
    : file_(path == nullptr ? INVALID_HANDLE_VALUE
                            : CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}

FileSource::FileSource(const wchar_t* path)
    : file_(path == nullptr ? INVALID_HANDLE_VALUE
                            : CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {}

FileSource::~FileSource() {
  if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
}

std::span<const u8> FileSource::nextBuffer() {
  if (file_ == INVALID_HANDLE_VALUE) return {};
  DWORD count = 0;
  if (!ReadFile(file_, buffer_.get(), piece_, &count, nullptr)) {
    noteFailure();
    return {};
  }
  piece_ = std::min(piece_ * 2, bufferSize);
  return {buffer_.get(), count};
}

void FileSource::moveToStart() { SetFilePointerEx(file_, LARGE_INTEGER{}, nullptr, FILE_BEGIN); }

std::span<const u8> DescriptorSource::nextBuffer() {
  if (last_) return {};
  host::u32 count = 0;
  u8* buffer = nullptr;
  last_ = input_.read(input_.context, &count, &buffer) != host::inputMore;
  return buffer != nullptr ? std::span<const u8>(buffer, count) : std::span<const u8>();
}

}  // namespace klibjpg

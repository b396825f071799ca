#include "companions/klibjpg/source_manager.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace klibjpg {
namespace {

using host::u8;
constexpr u8 endOfImage[] = {0xFF, JPEG_EOI};

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
  const std::span<const u8> next = ended_ ? std::span<const u8>() : nextBuffer();
  if (next.empty()) {
    end();
    return false;
  }
  delivered_ += next.size();
  next_input_byte = next.data();
  bytes_in_buffer = next.size();
  return true;
}

void InputSource::end() noexcept {
  ended_ = true;
  next_input_byte = endOfImage;
  bytes_in_buffer = sizeof(endOfImage);
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

std::span<const u8> MemorySource::nextBuffer() {
  return std::exchange(bytes_, std::span<const u8>());
}

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
  if (!ReadFile(file_, buffer_.get(), bufferSize, &count, nullptr)) {
    noteFailure();
    return {};
  }
  return {buffer_.get(), count};
}

std::span<const u8> DescriptorSource::nextBuffer() {
  if (last_) return {};
  host::u32 count = 0;
  u8* buffer = nullptr;
  last_ = input_.read(input_.context, &count, &buffer) != host::inputMore;
  return buffer != nullptr ? std::span<const u8>(buffer, count) : std::span<const u8>();
}

}  // namespace klibjpg

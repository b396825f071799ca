#include "property/memory_stream.h"

#include <algorithm>
#include <cstring>

namespace property {
namespace {

using host::i64;
using host::u64;

u64 bytesLeft(const MemoryStream& stream) noexcept {
  return stream.position < stream.size ? stream.size - stream.position : 0;
}

i64 read(MemoryStream& stream, void* buffer, i64 count) noexcept {
  if (count <= 0) return 0;
  const u64 length = std::min(static_cast<u64>(count), bytesLeft(stream));
  if (length == 0) return 0;
  std::memcpy(buffer, stream.base + stream.position, static_cast<std::size_t>(length));
  stream.position += length;
  return static_cast<i64>(length);
}

i64 write(MemoryStream& stream, const void* bytes, i64 count) noexcept {
  if (count <= 0 || static_cast<u64>(count) > bytesLeft(stream)) return 0;
  std::memcpy(stream.base + stream.position, bytes, static_cast<std::size_t>(count));
  stream.position += static_cast<u64>(count);
  return count;
}

// Unsigned, so that a position before the start lies beyond the size.
i64 seek(MemoryStream& stream, u64 offset, i64 origin) noexcept {
  if (origin == exif::fromStart) stream.position = offset;
  if (origin == exif::fromCurrent) stream.position += offset;
  if (origin == exif::fromEnd) stream.position = stream.size + offset;
  if (stream.position <= stream.size) return 0;
  stream.position = stream.size;
  return -1;
}

}  // namespace

i64 memoryStreamCallback(void* stream, host::u32 operation, void* argument, i64 count) noexcept {
  auto& memory = *static_cast<MemoryStream*>(stream);
  switch (operation) {
    case exif::streamRead:
      return read(memory, argument, count);
    case exif::streamWrite:
      return write(memory, argument, count);
    case exif::streamSeek:
      return seek(memory, reinterpret_cast<std::uintptr_t>(argument), count);
    case exif::streamTell:
      return static_cast<i64>(memory.position);
    default:
      return 0;
  }
}

}  // namespace property

// Bytes in memory as a stream.
#pragma once

#include "exif/stream_reader.h"

namespace property {

struct MemoryStream {
  host::u64 size;  // bytes
  host::u8* base;
  host::u64 position;  // not beyond size
};

// The stream's callback; see exif::StreamOperation. A read delivers what is left. A write that does
// not fit whole writes nothing. A seek that ends beyond the size, or before the start, leaves the
// position at the size and gives -1. Any other operation gives 0.
host::i64 memoryStreamCallback(void* stream, host::u32 operation, void* argument,
                               host::i64 count) noexcept;

}  // namespace property

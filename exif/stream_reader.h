// Sequential access to bytes that somebody else keeps, through one callback.
#pragma once

#include "host/types.h"

namespace exif {

enum StreamOperation : host::u32 {
  streamRead = 3,   // argument: buffer, count: bytes; the result is the number of bytes delivered
  streamWrite = 4,  // argument: bytes, count: how many; the result is count or 0
  streamSeek = 5,   // argument: the offset as a number, count: a StreamOrigin
  streamTell = 6,   // the result is the position
};

enum StreamOrigin : host::i64 { fromStart = 0, fromCurrent = 1, fromEnd = 2 };

using StreamCallback = host::i64(void* stream, host::u32 operation, void* argument,
                                 host::i64 count) noexcept;

// A stream with its callback, as readers are handed it.
struct StreamReader {
  void* stream;
  StreamCallback* callback;

  // Returns the bytes delivered, fewer at the end.
  host::i64 read(void* buffer, host::i64 count) const noexcept {
    return callback(stream, streamRead, buffer, count);
  }
  void skipByte() const noexcept {
    callback(stream, streamSeek, reinterpret_cast<void*>(std::uintptr_t{1}), fromCurrent);
  }
};

}  // namespace exif

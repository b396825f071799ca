// How the codec reads one JPEG stream out of an open file.
#pragma once

#include "host/klibjpg.h"
#include "platform/global_memory.h"

namespace mpo {

// Reads on from the file's position in pieces of 64 KiB.
class CodecInput {
 public:
  // file stays open as long as this object. False when the buffer could not be had.
  explicit CodecInput(HANDLE file) noexcept;
  CodecInput(const CodecInput&) = delete;
  CodecInput& operator=(const CodecInput&) = delete;

  explicit operator bool() const noexcept { return static_cast<bool>(buffer_); }

  // Runs the codec over the stream that starts at offset. Returns the codec's result, or 0 when the
  // file cannot be positioned there.
  [[nodiscard]] int run(host::u64 offset, const host::CodecCallback& callback) noexcept;

 private:
  static int readPiece(void* input, host::u32* count, host::u8** buffer) noexcept;

  HANDLE file_;
  platform::OwnedGlobal buffer_;
};

}  // namespace mpo

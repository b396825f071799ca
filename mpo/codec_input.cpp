#include "mpo/codec_input.h"

#include "platform/open_file.h"

namespace mpo {
namespace {

constexpr DWORD pieceSize = 64 * 1024;

}  // namespace

CodecInput::CodecInput(HANDLE file) noexcept
    : file_(file), buffer_(platform::fixedZeroed, pieceSize) {}

int CodecInput::run(host::u64 offset, const host::CodecCallback& callback) noexcept {
  if (!platform::moveTo(file_, static_cast<host::i64>(offset))) return 0;
  host::InputDescriptor input = {};
  input.size = sizeof input;
  input.context = this;
  input.read = &readPiece;
  return kJpgRead(&input, &callback, nullptr);
}

// Count and address are reported for a short or failed read too.
int CodecInput::readPiece(void* input, host::u32* count, host::u8** buffer) noexcept {
  const auto& self = *static_cast<const CodecInput*>(input);
  DWORD read = 0;
  const bool done = ReadFile(self.file_, self.buffer_.get(), pieceSize, &read, nullptr) != 0;
  *count = read;
  *buffer = static_cast<host::u8*>(self.buffer_.get());
  return done && read == pieceSize ? host::inputMore : host::inputLast;
}

}  // namespace mpo

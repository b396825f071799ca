// Finding the multi-picture segment in a file.
#include <cstring>

#include "mpo/mpf_segment.h"
#include "platform/open_file.h"

namespace mpo {
namespace {

using host::u16;
using host::u64;
using host::u8;

// Forward reading through a small buffer, so that stepping over bytes costs no call apiece.
class BufferedFile {
 public:
  explicit BufferedFile(HANDLE file) noexcept : file_(file) {
    const std::optional<u64> start = platform::moveTo(file, 0, FILE_CURRENT);
    readable_ = start.has_value();
    bufferStart_ = start.value_or(0);
  }

  [[nodiscard]] u64 position() const noexcept { return bufferStart_ + used_; }

  [[nodiscard]] bool read(std::span<u8> bytes) noexcept {
    for (u8& byte : bytes) {
      if (used_ == filled_ && !refill()) return false;
      byte = buffer_[used_++];
    }
    return true;
  }

  // Going past the end of the file is noticed by the next read.
  void skip(std::size_t count) noexcept {
    if (count <= filled_ - used_) {
      used_ += count;
      return;
    }
    const u64 target = position() + count;
    readable_ = readable_ && platform::moveTo(file_, static_cast<host::i64>(target)).has_value();
    bufferStart_ = target;
    used_ = filled_ = 0;
  }

 private:
  [[nodiscard]] bool refill() noexcept {
    bufferStart_ += filled_;
    used_ = filled_ = 0;
    DWORD count = 0;
    readable_ =
        readable_ && ReadFile(file_, buffer_, sizeof buffer_, &count, nullptr) != 0 && count != 0;
    if (readable_) filled_ = count;
    return readable_;
  }

  HANDLE file_;
  u8 buffer_[4096] = {};
  std::size_t used_ = 0;
  std::size_t filled_ = 0;
  u64 bufferStart_ = 0;  // file offset of the buffer's first byte
  bool readable_ = false;
};

// T.81, B.1.1.3; reserved codes count as segments.
bool hasLength(u8 marker) noexcept {
  return (marker >= 0x02 && marker <= 0xCF) || (marker >= 0xDA && marker <= 0xFE);
}

constexpr u8 markerPrefix = 0xFF;
constexpr u8 endOfImage = 0xD9;
constexpr u8 app2 = 0xE2;
constexpr u16 lengthSize = 2;

enum class Step { goOn, found, end };

// Steps over what belongs to the marker that was just read.
Step passMarker(BufferedFile& file, u8 marker) noexcept {
  if (marker == endOfImage) return Step::end;
  if (!hasLength(marker)) return Step::goOn;
  u8 lengthBytes[lengthSize];
  if (!file.read(lengthBytes)) return Step::end;
  const auto length = static_cast<u16>(lengthBytes[0] << 8 | lengthBytes[1]);
  u16 passed = lengthSize;
  if (marker == app2) {
    u8 signature[mpfSignatureSize];
    if (!file.read(signature)) return Step::end;
    if (std::memcmp(signature, mpfSignature, sizeof signature) == 0) return Step::found;
    passed = lengthSize + mpfSignatureSize;
  }
  if (length > passed) file.skip(static_cast<std::size_t>(length - passed));
  return Step::goOn;
}

// The pair of bytes slides by one, so fill bytes and entropy-coded data are stepped through and the
// search never passes the image's end.
bool find(BufferedFile& file) noexcept {
  u8 pair[2];
  if (!file.read(pair)) return false;
  for (;;) {
    if (pair[0] == markerPrefix) {
      const Step step = passMarker(file, pair[1]);
      if (step != Step::goOn) return step == Step::found;
    }
    pair[0] = pair[1];
    if (!file.read(std::span(pair).last<1>())) return false;
  }
}

}  // namespace

std::optional<u16> MpfGet16(platform::ByteOrder order, std::span<const u8> bytes) noexcept {
  return platform::ByteReader(bytes, order).u16(0);
}

std::optional<host::u32> MpfGet32(platform::ByteOrder order, std::span<const u8> bytes) noexcept {
  return platform::ByteReader(bytes, order).u32(0);
}

int MpfFindSegment(HANDLE file, u64* position, bool* found) noexcept {
  if (position != nullptr) *position = 0;
  if (found != nullptr) *found = false;
  BufferedFile buffered(file);
  if (!find(buffered)) return 0;
  if (!platform::moveTo(file, static_cast<host::i64>(buffered.position()))) return 0;
  if (position != nullptr) *position = buffered.position();
  if (found != nullptr) *found = true;
  return 1;
}

}  // namespace mpo

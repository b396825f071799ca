#include "mpo/segment_intake.h"

#include <algorithm>

namespace mpo {
namespace {

constexpr host::u16 appNumber = 2;

// What follows the signature, or none when the segment is another.
std::optional<std::span<const host::u8>> mpfBlockOf(const host::SegmentRecord& segment) noexcept {
  if (segment.kind != 1 || (segment.appNumber & 0xFF) != appNumber || segment.payload == nullptr ||
      segment.payloadLength < static_cast<host::i32>(mpfSignatureSize) ||
      !std::equal(std::begin(mpfSignature), std::end(mpfSignature), segment.payload)) {
    return std::nullopt;
  }
  const auto length = static_cast<std::size_t>(segment.payloadLength);
  return std::span(segment.payload, length).subspan(mpfSignatureSize);
}

}  // namespace

host::u32 SegmentIntake::take(const host::SegmentRecord& segment) noexcept {
  const auto block = mpfBlockOf(segment);
  if (!block) {
    if (capture_ != nullptr) capture_->capture(segment);
    return host::codecGoOn;
  }
  if (!index_) return host::codecGoOn;
  const auto base = static_cast<host::u32>(start_ + segment.payloadOffset + mpfSignatureSize);
  const bool parsed = MpfParseSegment(position_, *index_, *block, base) == mpfParsed;
  return static_cast<host::u32>(parsed ? host::codecGoOn : host::codecBadMpfSegment);
}

}  // namespace mpo

#include "property/raw_segments.h"

namespace property {
namespace {

constexpr host::u32 largestSegmentData = 65537;  // marker, length and 65,533 bytes of payload
constexpr std::size_t segmentHead = 4;
constexpr host::u8 firstAppMarker = 0xE0;

}  // namespace

bool everySegment(const RawSegment&) noexcept { return true; }

std::optional<RawSegment> RawSegments::segmentOf(const host::PropertyField& field) const noexcept {
  if (field.sourceGroup != host::groupRawSegment || field.dataSize > largestSegmentData) {
    return std::nullopt;
  }
  const std::span<const host::u8> block = dataBlockOf(field);
  if (block.size() < segmentHead) return std::nullopt;
  const RawSegment segment{static_cast<host::u16>(block[1] - firstAppMarker),
                           block.subspan(segmentHead)};
  return filter_(segment) ? std::optional(segment) : std::nullopt;
}

host::u32 RawSegments::count() const noexcept {
  host::u32 count = 0;
  for (const host::PropertyField& field : record_.fields()) count += segmentOf(field) ? 1u : 0u;
  return count;
}

std::optional<RawSegment> RawSegments::find(host::u32 number) noexcept {
  if (number <= lastNumber_) {
    lastNumber_ = 0;
    nextField_ = 0;
  }
  const std::span<const host::PropertyField> fields = record_.fields();
  while (nextField_ < fields.size()) {
    const std::optional<RawSegment> segment = segmentOf(fields[nextField_++]);
    if (segment && ++lastNumber_ == number) return segment;
  }
  lastNumber_ = 0;
  nextField_ = 0;
  return std::nullopt;
}

}  // namespace property

// The whole application segments that a property record keeps for the writers.
#pragma once

#include <optional>

#include "host/klibjpg.h"
#include "property/property_record.h"

namespace property {

// A segment as the codec takes it: APP number and payload. The bytes belong to the record.
struct RawSegment {
  host::u16 appNumber;
  std::span<const host::u8> payload;
};

// Chooses which of the raw segments are written.
using SegmentFilter = bool(const RawSegment& segment) noexcept;
[[nodiscard]] bool everySegment(const RawSegment& segment) noexcept;

// The raw segments of one property record in record order, numbered from 1 as the codec asks for
// them. A segment whose data is over 65,537 bytes, the most that a JPEG segment holds with its
// marker, is left out. The record stays locked while this object lives.
class RawSegments {
 public:
  explicit RawSegments(HGLOBAL record, SegmentFilter* filter = &everySegment) noexcept
      : record_(record), filter_(filter) {}

  [[nodiscard]] host::u32 count() const noexcept;
  // None when there are fewer than number.
  [[nodiscard]] std::optional<RawSegment> find(host::u32 number) noexcept;

 private:
  [[nodiscard]] std::optional<RawSegment> segmentOf(
      const host::PropertyField& field) const noexcept;

  PropertyRecord record_;
  SegmentFilter* filter_;
  // Where the last search ended, so that asking for one after the other is linear.
  host::u32 lastNumber_ = 0;
  std::size_t nextField_ = 0;
};

}  // namespace property

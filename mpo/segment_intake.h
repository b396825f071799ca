// Where the application segments of an MPO's images go.
#pragma once

#include <utility>

#include "mpo/mpf_segment.h"
#include "property/segment_capture.h"

namespace mpo {

// Multi-picture segments are parsed into the list, all others are left to the capture.
class SegmentIntake {
 public:
  // Without an index multi-picture segments are ignored; without a capture the others are.
  SegmentIntake(std::optional<MpoIndex> index, property::SegmentCapture* capture) noexcept
      : index_(std::move(index)), capture_(capture) {}

  // The image that the next segments belong to: its position in the array and in the file.
  void beginImage(host::u32 position, host::u64 start) noexcept {
    position_ = position;
    start_ = start;
  }
  void dropCapture() noexcept { capture_ = nullptr; }

  // The answer to the codec: codecGoOn, or codecBadMpfSegment.
  [[nodiscard]] host::u32 take(const host::SegmentRecord& segment) noexcept;

 private:
  std::optional<MpoIndex> index_;
  property::SegmentCapture* capture_;
  host::u32 position_ = 0;
  host::u64 start_ = 0;
};

}  // namespace mpo

// From application segments to property fields: every APPn segment that the codec reports is
// classified, noted in the record's segment map and kept as a field.
#pragma once

#include <optional>

#include "host/klibjpg.h"
#include "property/segment_map.h"

namespace property {

// What the callers of the capture do differently.
struct CaptureRules {
  // Extended XMP (XMP specification part 3, 1.1.3.1) is put together from its chunks.
  bool joinExtendedXmp = true;
  // Whole segments are kept for the writers; without it only decoded fields and places are.
  bool keepRaw = true;
  // A segment that gave an XMP or ICC field is kept raw as well.
  bool keepRawBesideField = true;
};

inline constexpr CaptureRules scanRules{};
inline constexpr CaptureRules readRules{.joinExtendedXmp = false};

// Captures into one locked file-data record.
class SegmentCapture {
 public:
  // size: bytes that the record really has. A record too small for the property record's handle
  // keeps nothing; one without a segment map keeps raw fields only.
  SegmentCapture(void* lockedRecord, std::size_t size, const CaptureRules& rules) noexcept;

  void capture(const host::SegmentRecord& segment) noexcept;

  // Undoes everything captured since construction, so that reading again does not keep a segment
  // twice: fields, a property record made on the way, and the segment map.
  void takeBack() noexcept;

  [[nodiscard]] SegmentMap& map() noexcept { return map_; }

 private:
  struct Segment;

  [[nodiscard]] bool scanned() const noexcept;
  [[nodiscard]] std::optional<host::u16> classify(const Segment& segment) noexcept;
  [[nodiscard]] std::optional<host::u16> classifyApp0(const Segment& segment) noexcept;
  [[nodiscard]] std::optional<host::u16> classifyApp1(const Segment& segment) noexcept;
  [[nodiscard]] std::optional<host::u16> classifyApp2(const Segment& segment) noexcept;
  [[nodiscard]] std::optional<host::u16> classifyApp13(const Segment& segment) noexcept;
  [[nodiscard]] std::optional<host::u16> classifyApp14(const Segment& segment) noexcept;
  void note(const PlaceOffsets SegmentMapLayout::*place, const Segment& segment) noexcept;
  void addXmp(const Segment& segment) noexcept;
  void addIcc(const Segment& segment) noexcept;
  void addExtendedXmp(const Segment& segment) noexcept;
  void joinExtendedXmpChunk(const Segment& segment) noexcept;
  void addRaw(const Segment& segment, host::u16 fieldId) noexcept;

  host::FileDataRecord* record_ = nullptr;  // null: too small to keep fields
  SegmentMap map_;
  CaptureRules rules_;
  host::i32 fieldsBefore_ = 0;
  bool hadRecord_ = false;
  host::u8 mapBefore_[sizeof(host::MpoList)] = {};
  host::u8* mapBytes_ = nullptr;
};

}  // namespace property

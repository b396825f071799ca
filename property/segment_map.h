// The part of a file-data record where the places of the metadata segments are noted. JPEG and MPO
// records keep the same fields at different offsets: two rows of one table.
#pragma once

#include <cstddef>

#include "host/mpo.h"

namespace property {

struct PlaceOffsets {
  std::size_t present;
  std::size_t offset;
  std::size_t length;
};

struct SegmentMapLayout {
  host::u32 tag;
  std::size_t recordSize;  // a smaller record has no map
  std::size_t markerFlags;
  PlaceOffsets heap;
  PlaceOffsets exif;
  PlaceOffsets iptc;
  std::size_t scanned;
  std::size_t mapBegin;  // the bytes that the map's fields lie in
  std::size_t mapEnd;
};

extern const SegmentMapLayout jpegSegmentMap;
extern const SegmentMapLayout mpoSegmentMap;

struct SegmentPlace {
  host::u32 present;
  host::u32 offset;  // of the payload, from the start of the image
  host::u32 length;  // bytes of payload
};

// A map inside a locked record. False when the record has none: another tag, or too small.
class SegmentMap {
 public:
  // size: bytes that the record really has.
  SegmentMap(void* lockedRecord, std::size_t size) noexcept;
  // The map of a known layout, whatever the record's tag says.
  SegmentMap(void* lockedRecord, std::size_t size, const SegmentMapLayout& layout) noexcept;

  explicit operator bool() const noexcept { return layout_ != nullptr; }
  [[nodiscard]] const SegmentMapLayout& layout() const noexcept { return *layout_; }

  [[nodiscard]] SegmentPlace place(const PlaceOffsets& offsets) const noexcept;
  // Only the first segment of a kind is noted.
  void noteFirst(const PlaceOffsets& offsets, host::u32 offset, host::u32 length) noexcept;
  void setLength(const PlaceOffsets& offsets, host::u32 length) noexcept;
  void setMarkerFlag(host::u16 flag) noexcept;
  [[nodiscard]] bool scanned() const noexcept;
  void setScanned() noexcept;
  // The same at the end of a scan, which also clears the 16 bits that follow, where they are still
  // the record's: a JPEG record ends there.
  void setScannedByScan() noexcept;

 private:
  [[nodiscard]] host::u32 get(std::size_t offset) const noexcept;
  void set(std::size_t offset, host::u32 value) noexcept;

  host::u8* record_;
  std::size_t size_;
  const SegmentMapLayout* layout_ = nullptr;
};

// Bytes that a record must have to hold a property record's handle.
inline constexpr std::size_t smallestRecordWithProperties = sizeof(host::FileDataRecord);

}  // namespace property

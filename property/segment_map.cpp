#include "property/segment_map.h"

#include <cstring>
#include <initializer_list>

namespace property {
namespace {

using host::JpegFileData;
using host::MpoFileData;
using host::u16;
using host::u32;
using host::u8;

constexpr std::size_t tagOffset = offsetof(JpegFileData, tail.tag);
static_assert(tagOffset == offsetof(MpoFileData, tag));

}  // namespace

constexpr SegmentMapLayout jpegSegmentMap{
    host::jpegTailTag,
    sizeof(JpegFileData),
    offsetof(JpegFileData, tail.markerFlags),
    {offsetof(JpegFileData, tail.heapPresent), offsetof(JpegFileData, tail.heapOffset),
     offsetof(JpegFileData, tail.heapLength)},
    {offsetof(JpegFileData, tail.exifPresent), offsetof(JpegFileData, tail.exifOffset),
     offsetof(JpegFileData, tail.exifLength)},
    {offsetof(JpegFileData, tail.iptcPresent), offsetof(JpegFileData, tail.iptcOffset),
     offsetof(JpegFileData, tail.iptcLength)},
    offsetof(JpegFileData, tail.scanned),
    offsetof(JpegFileData, tail.markerFlags),
    sizeof(JpegFileData)};

constexpr SegmentMapLayout mpoSegmentMap{
    host::mpoTailTag,
    offsetof(MpoFileData, list.gap126),
    offsetof(MpoFileData, list.firstImage.markerFlags),
    {offsetof(MpoFileData, list.heapPresent), offsetof(MpoFileData, list.heapOffset),
     offsetof(MpoFileData, list.heapLength)},
    {offsetof(MpoFileData, list.exifPresent), offsetof(MpoFileData, list.exifOffset),
     offsetof(MpoFileData, list.exifLength)},
    {offsetof(MpoFileData, list.iptcPresent), offsetof(MpoFileData, list.iptcOffset),
     offsetof(MpoFileData, list.iptcLength)},
    offsetof(MpoFileData, list.scanned),
    offsetof(MpoFileData, list.firstImage.markerFlags),
    offsetof(MpoFileData, list.gap126)};

SegmentMap::SegmentMap(void* lockedRecord, std::size_t size) noexcept
    : record_(static_cast<u8*>(lockedRecord)), size_(size) {
  if (record_ == nullptr || size < tagOffset + sizeof(u32)) return;
  const u32 tag = get(tagOffset);
  for (const SegmentMapLayout* layout : {&jpegSegmentMap, &mpoSegmentMap}) {
    if (layout->tag == tag && size >= layout->recordSize) layout_ = layout;
  }
}

SegmentMap::SegmentMap(void* lockedRecord, std::size_t size,
                       const SegmentMapLayout& layout) noexcept
    : record_(static_cast<u8*>(lockedRecord)), size_(size) {
  if (record_ != nullptr && size >= layout.recordSize) layout_ = &layout;
}

u32 SegmentMap::get(std::size_t offset) const noexcept {
  u32 value = 0;
  std::memcpy(&value, record_ + offset, sizeof value);
  return value;
}

void SegmentMap::set(std::size_t offset, u32 value) noexcept {
  std::memcpy(record_ + offset, &value, sizeof value);
}

SegmentPlace SegmentMap::place(const PlaceOffsets& offsets) const noexcept {
  return {get(offsets.present), get(offsets.offset), get(offsets.length)};
}

void SegmentMap::noteFirst(const PlaceOffsets& offsets, u32 offset, u32 length) noexcept {
  if (get(offsets.present) != 0) return;
  set(offsets.present, 1);
  set(offsets.offset, offset);
  set(offsets.length, length);
}

void SegmentMap::setLength(const PlaceOffsets& offsets, u32 length) noexcept {
  set(offsets.length, length);
}

void SegmentMap::setMarkerFlag(u16 flag) noexcept {
  u16 flags = 0;
  std::memcpy(&flags, record_ + layout_->markerFlags, sizeof flags);
  flags = static_cast<u16>(flags | flag);
  std::memcpy(record_ + layout_->markerFlags, &flags, sizeof flags);
}

bool SegmentMap::scanned() const noexcept { return get(layout_->scanned) != 0; }

void SegmentMap::setScanned() noexcept { set(layout_->scanned, 1); }

void SegmentMap::setScannedByScan() noexcept {
  setScanned();
  const std::size_t end = layout_->scanned + sizeof(u32) + sizeof(u16);
  if (layout_ == &mpoSegmentMap && size_ >= end)
    std::memset(record_ + end - sizeof(u16), 0, sizeof(u16));
}

}  // namespace property

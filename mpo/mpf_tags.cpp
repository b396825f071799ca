#include "mpo/mpf_tags.h"

#include <algorithm>

namespace mpo {
namespace {

using host::MpoAttributes;
using host::u16;
using host::u32;

// TIFF 6.0, section 2.
constexpr u16 typeLong = 4;
constexpr u16 typeRational = 5;
constexpr u16 typeUndefined = 7;
constexpr u16 typeSignedRational = 10;

constexpr MpfTag structural(u16 tag, u16 type, MpfValue value, MpfPlace place, u32 flag = 0) {
  return {tag, type, value, 0, flag, flag, place, tag};
}

constexpr MpfTag attribute(u16 tag, u16 type, std::size_t member, u32 flag) {
  const MpfValue value = type == typeLong ? MpfValue::number : MpfValue::ratio;
  return {tag, type, value, member, flag, flag, MpfPlace::attributesWhenFlagged, tag};
}

// Kept: reading stores the overlap without its presence bit, so it is never reported as present.
constexpr MpfTag readWithoutFlag(MpfTag row) {
  row.flagRead = 0;
  return row;
}

constexpr MpfTag writtenAs(u16 tag, MpfTag row) {
  row.writtenTag = tag;
  return row;
}

constexpr u16 pitchAngle = 0xB20C;

constexpr MpfTag tags[] = {
    structural(0xB000, typeUndefined, MpfValue::version, MpfPlace::everyIfd, 0x00010000),
    structural(0xB001, typeLong, MpfValue::imageCount, MpfPlace::index),
    structural(0xB002, typeUndefined, MpfValue::entryTable, MpfPlace::index),
    structural(0xB003, typeUndefined, MpfValue::uidList, MpfPlace::indexWhenFlagged,
               mpfUidListFlag),
    structural(0xB004, typeLong, MpfValue::totalFrames, MpfPlace::index),
    structural(0xB101, typeLong, MpfValue::imageNumber, MpfPlace::attributes, 0x00020000),
    attribute(0xB201, typeLong, offsetof(MpoAttributes, panOrientation), 0x80000000),
    readWithoutFlag(
        attribute(0xB202, typeRational, offsetof(MpoAttributes, panOverlapHorizontal), 0x40000000)),
    attribute(0xB203, typeRational, offsetof(MpoAttributes, panOverlapVertical), 0x20000000),
    attribute(0xB204, typeLong, offsetof(MpoAttributes, baseViewpoint), 0x10000000),
    attribute(0xB205, typeSignedRational, offsetof(MpoAttributes, convergenceAngle), 0x08000000),
    attribute(0xB206, typeRational, offsetof(MpoAttributes, baselineLength), 0x04000000),
    attribute(0xB207, typeSignedRational, offsetof(MpoAttributes, verticalDivergence), 0x02000000),
    attribute(0xB208, typeSignedRational, offsetof(MpoAttributes, axisDistanceX), 0x01000000),
    attribute(0xB209, typeSignedRational, offsetof(MpoAttributes, axisDistanceY), 0x00800000),
    attribute(0xB20A, typeSignedRational, offsetof(MpoAttributes, axisDistanceZ), 0x00400000),
    attribute(0xB20B, typeSignedRational, offsetof(MpoAttributes, yawAngle), 0x00200000),
    attribute(pitchAngle, typeSignedRational, offsetof(MpoAttributes, pitchAngle), 0x00100000),
    // Kept: the roll angle goes out under the pitch angle's number but is read under its own.
    writtenAs(pitchAngle, attribute(0xB20D, typeSignedRational, offsetof(MpoAttributes, rollAngle),
                                    0x00080000)),
};

}  // namespace

std::span<const MpfTag> mpfTags() noexcept { return tags; }

const MpfTag* findMpfTag(u16 tag) noexcept {
  const auto* found = std::find_if(std::begin(tags), std::end(tags),
                                   [tag](const MpfTag& row) { return row.tag == tag; });
  return found != std::end(tags) ? found : nullptr;
}

bool isWritten(const MpfTag& row, MpfIfd ifd, u32 flags) noexcept {
  switch (row.place) {
    case MpfPlace::everyIfd:
      return true;
    case MpfPlace::index:
      return ifd == MpfIfd::index;
    case MpfPlace::indexWhenFlagged:
      return ifd == MpfIfd::index && (flags & row.flag) != 0;
    case MpfPlace::attributes:
      return ifd == MpfIfd::attributes;
    case MpfPlace::attributesWhenFlagged:
      return ifd == MpfIfd::attributes && (flags & row.flag) != 0;
  }
  return false;
}

}  // namespace mpo

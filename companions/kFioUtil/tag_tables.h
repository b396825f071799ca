// The tag-definition tables, and how their rows are written.
#pragma once

#include "host/property_record.h"
#include "host/tag_definition.h"

// Data exports. The underscore is part of the names that hosts look up.
extern "C" {
extern const host::TagDefinition _gfnFIOTIFFFORMATDef[host::exifRows];
extern const host::TagDefinition _gfnFIOGPSExifDef[host::gpsRows];
extern const host::TagDefinition _gfnIPTCRecordEntry[host::iptcRows];
}

namespace kFioUtil {

// What a standard says about a tag's value: TIFF type, number of elements, and how a property
// field keeps it. A number goes into the descriptor itself only where there can be but one.
struct ValueForm {
  host::u16 type;
  host::u16 count;
  host::ValueKind kind;
};

enum TiffType : host::u16 {
  anyType = 0,
  typeByte = 1,
  typeAscii = 2,
  typeShort = 3,
  typeLong = 4,
  typeRational = 5,
  typeUndefined = 7,
  typeSRational = 10,
};

inline constexpr host::u16 anyCount = 0;

constexpr ValueForm text(host::u16 count = anyCount) { return {typeAscii, count, host::kindText}; }
// A version number: four characters, though the standard calls the type UNDEFINED.
inline constexpr ValueForm version{typeUndefined, 4, host::kindText};
inline constexpr ValueForm oneByte{typeByte, 1, host::kindNumber16};
inline constexpr ValueForm oneShort{typeShort, 1, host::kindNumber16};
inline constexpr ValueForm oneLong{typeLong, 1, host::kindNumber32};
inline constexpr ValueForm shortOrLong{anyType, 1, host::kindNumber32};
inline constexpr ValueForm shortsOrLongs{anyType, anyCount, host::kindBlock};
constexpr ValueForm bytes(host::u16 count = anyCount) { return {typeByte, count, host::kindBlock}; }
constexpr ValueForm shorts(host::u16 count = anyCount) {
  return {typeShort, count, host::kindBlock};
}
constexpr ValueForm rationals(host::u16 count) { return {typeRational, count, host::kindBlock}; }
inline constexpr ValueForm rational = rationals(1);
inline constexpr ValueForm signedRational{typeSRational, 1, host::kindBlock};
constexpr ValueForm undefined(host::u16 count = anyCount) {
  return {typeUndefined, count, host::kindBlock};
}

// Labels follow the field ids, so that a row needs no number of its own for them.
inline constexpr host::u32 exifLabels = 1200;  // primary group, from field 5200 on
inline constexpr host::u32 hostLabels = 1300;  // secondary group, from field 4000 on
inline constexpr host::u32 gpsLabels = 1400;   // from field 5300 on

constexpr host::u32 labelOf(host::u32 fieldId) {
  if (fieldId >= host::fieldGpsFirst) return gpsLabels + fieldId - host::fieldGpsFirst;
  if (fieldId >= host::fieldExifFirst) return exifLabels + fieldId - host::fieldExifFirst;
  return hostLabels + fieldId - host::fieldHostFirst;
}

constexpr host::TagDefinition define(host::u16 fieldId, host::u16 tag, ValueForm form) {
  return {tag, form.type, form.count, form.kind, fieldId, labelOf(fieldId), {}};
}

}  // namespace kFioUtil

// A row of the tag-definition tables that kFioUtil.dll exports as data.
#pragma once

#include "host/types.h"

namespace host {

#pragma pack(push, 1)

struct TagDefinition {
  u16 tag;      // TIFF tag, or IPTC dataset of record 2
  u16 type;     // TIFF type that the standard fixes; 0 = it leaves a choice
  u16 count;    // number of elements that the standard fixes; 0 = any
  u16 kind;     // see ValueKind
  u16 fieldId;  // see FieldId
  u32 labelId;  // string of KFRES.DLL, noLabel = none
  u8 gap14[16];
};

#pragma pack(pop)

inline constexpr u32 noLabel = 0xFFFFFFFF;

inline constexpr unsigned exifPrimaryRows = 71;
inline constexpr unsigned exifSecondaryRows = 42;
inline constexpr unsigned exifRows = exifPrimaryRows + exifSecondaryRows;
inline constexpr unsigned gpsRows = 32;
inline constexpr unsigned iptcRows = 27;

HOST_FIELD_AT(TagDefinition, tag, 0);
HOST_FIELD_AT(TagDefinition, type, 2);
HOST_FIELD_AT(TagDefinition, count, 4);
HOST_FIELD_AT(TagDefinition, kind, 6);
HOST_FIELD_AT(TagDefinition, fieldId, 8);
HOST_FIELD_AT(TagDefinition, labelId, 10);
HOST_RECORD_SIZE(TagDefinition, 30);

}  // namespace host

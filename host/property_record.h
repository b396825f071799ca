// The property record: the host's container for everything known about a file beyond its pixels.
// Movable global memory whose handle lies in the file-data record.
#pragma once

#include "host/types.h"

namespace host {

#pragma pack(push, 1)

struct PropertyHeader {
  u32 recordSize;  // 8 + 88 * fieldCount
  i32 fieldCount;
};

struct PropertyField {
  u32 descriptorSize;  // 88
  u16 valueKind;       // see ValueKind
  u16 fieldId;         // see FieldId
  char name[61];       // up to 61 characters; the NUL of a full name lies in scanComplete
  u8 scanComplete;     // header field only: the file's metadata has been taken in
  u16 sourceGroup;     // groupRawSegment, or the TIFF type of an EXIF field
  u32 dataSize;        // bytes, the 4-byte prefix included
  u8 gap76[4];
  u64 data;  // address of the block that the record owns, or the value itself
};

#pragma pack(pop)

enum ValueKind : u16 {
  kindText = 1,           // plain NUL-terminated text
  kindNumber32 = 2,       // the value itself
  kindNumber32Alt = 3,    // the value itself
  kindNumber32Other = 4,  // the value itself
  kindBlock = 5,          // a block whose first four bytes are a prefix
  kindDateTime = 6,       // 16-bit date, then 16-bit time
  kindNumber16 = 15,
  kindNumber16Unsigned = 16,
};

enum FieldId : u16 {
  fieldPhotoshop = 2004,
  fieldHeader = 3999,
  fieldHostFirst = 4000,
  fieldIcc = 4014,
  fieldXmp = 4037,
  fieldHostLast = 4099,
  fieldRawSegment = 4701,
  fieldFpxr = 4712,
  fieldHeap = 5000,
  fieldExifFirst = 5200,
  fieldExifLast = 5296,
  fieldExifSegment = 5297,
  fieldGpsFirst = 5300,
  fieldGpsLast = 5331,
  fieldIptcFirst = 5600,
  fieldIptcLast = 5626,
  fieldMakerNoteFirst = 9000,
};

// The value of sourceGroup by which the writers pick whole application segments.
inline constexpr u16 groupRawSegment = 4701;

HOST_FIELD_AT(PropertyHeader, recordSize, 0);
HOST_FIELD_AT(PropertyHeader, fieldCount, 4);
HOST_RECORD_SIZE(PropertyHeader, 8);
HOST_FIELD_AT(PropertyField, descriptorSize, 0);
HOST_FIELD_AT(PropertyField, valueKind, 4);
HOST_FIELD_AT(PropertyField, fieldId, 6);
HOST_FIELD_AT(PropertyField, name, 8);
HOST_FIELD_AT(PropertyField, scanComplete, 69);
HOST_FIELD_AT(PropertyField, sourceGroup, 70);
HOST_FIELD_AT(PropertyField, dataSize, 72);
HOST_FIELD_AT(PropertyField, data, 80);
HOST_RECORD_SIZE(PropertyField, 88);

}  // namespace host

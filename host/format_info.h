// The format-information record: what a plug-in tells the host about one file format.
#pragma once

#include "host/types.h"

namespace host {

#pragma pack(push, 1)

// 120 bytes, movable global memory; the host owns it. Unlisted bytes are zero.
struct FormatInfoRecord {
  u16 formatId;
  u16 versionedFormatId;  // zero when the host's file-I/O layer refuses this plug-in's version
  u32 flag4;
  u32 hasDialogs;  // only the JPEG format exports the two dialog entry points
  u32 flag12;
  u32 flag16;
  u32 flag20;
  u32 mask;
  char extension[4];     // NUL-padded, no dot
  char displayName[48];  // NUL-terminated ANSI
  u64 reserved80;
  u64 reserved88;
  u16 reserved96;
  u8 gap98[4];
  u16 signatureLength;
  u8 signature[2];
  u8 gap106[14];
};

#pragma pack(pop)

HOST_FIELD_AT(FormatInfoRecord, formatId, 0);
HOST_FIELD_AT(FormatInfoRecord, versionedFormatId, 2);
HOST_FIELD_AT(FormatInfoRecord, flag4, 4);
HOST_FIELD_AT(FormatInfoRecord, hasDialogs, 8);
HOST_FIELD_AT(FormatInfoRecord, flag12, 12);
HOST_FIELD_AT(FormatInfoRecord, flag16, 16);
HOST_FIELD_AT(FormatInfoRecord, flag20, 20);
HOST_FIELD_AT(FormatInfoRecord, mask, 24);
HOST_FIELD_AT(FormatInfoRecord, extension, 28);
HOST_FIELD_AT(FormatInfoRecord, displayName, 32);
HOST_FIELD_AT(FormatInfoRecord, reserved80, 80);
HOST_FIELD_AT(FormatInfoRecord, reserved88, 88);
HOST_FIELD_AT(FormatInfoRecord, reserved96, 96);
HOST_FIELD_AT(FormatInfoRecord, signatureLength, 102);
HOST_FIELD_AT(FormatInfoRecord, signature, 104);
HOST_RECORD_SIZE(FormatInfoRecord, 120);

}  // namespace host

// One entry of a TIFF directory (TIFF 6.0, section 2, "IFD Entry").
#pragma once

#include <optional>

#include "host/types.h"
#include "platform/byte_reader.h"

namespace exif {

enum TiffType : host::u16 {
  typeByte = 1,
  typeAscii = 2,
  typeShort = 3,
  typeLong = 4,
  typeRational = 5,
  typeSByte = 6,
  typeUndefined = 7,
  typeSShort = 8,
  typeSLong = 9,
  typeSRational = 10,
  typeFloat = 11,
  typeDouble = 12,
};

inline constexpr host::u64 entrySize = 12;
inline constexpr host::u64 entryCountSize = 2;

struct DirectoryEntry {
  host::u16 tag;
  host::u16 type;
  host::i32 count;          // elements; as a file says it, so it may be negative
  host::u32 valueOrOffset;  // in this machine's order
};

// Bytes of one element; 0 for a type that TIFF 6.0 does not have.
[[nodiscard]] host::u32 elementSize(host::u16 type) noexcept;
[[nodiscard]] inline bool isKnownType(host::u16 type) noexcept { return elementSize(type) != 0; }

// The entry count of the directory at an offset; 0 when it lies outside.
[[nodiscard]] host::u16 readEntryCount(const platform::ByteReader& tiff, host::u64 offset) noexcept;

// The entry at an offset, or none when it does not lie inside whole. Of a big-endian entry, small
// values that lie in the entry itself are brought into order by their type: bytes stay, pairs of
// shorts are turned each for itself.
[[nodiscard]] std::optional<DirectoryEntry> readEntry(const platform::ByteReader& tiff,
                                                      host::u64 offset) noexcept;

}  // namespace exif

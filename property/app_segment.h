// Application segments as they stand in a JPEG stream (T.81, B.2.4.6): heads and signatures.
#pragma once

#include <string_view>

#include "host/types.h"

namespace property {

inline constexpr std::string_view exifSignature{"Exif\0\0", 6};  // EXIF 2.32, clause 4.7.2
inline constexpr std::string_view xmpSignature{"http://ns.adobe.com/xap/1.0/"};
inline constexpr std::size_t xmpHeader = xmpSignature.size() + 1;  // the signature with its NUL

// Behind the prefix of an extended XMP field: GUID, full length, offset 0, then the joined packet.
inline constexpr std::size_t extendedXmpGuid = 32;
inline constexpr std::size_t extendedXmpHead = extendedXmpGuid + 2 * sizeof(host::u32);

// Marker and length, the first bytes of a segment's data block.
struct SegmentHead {
  host::u8 bytes[4];
};

// Of a payload over 65,533 bytes, which no segment holds, the length's low 16 bits.
constexpr SegmentHead segmentHead(host::u16 appNumber, host::u64 payloadLength) noexcept {
  const host::u64 length = payloadLength + 2;
  return {{0xFF, static_cast<host::u8>(0xE0 + (appNumber & 0xFF)),
           static_cast<host::u8>(length >> 8), static_cast<host::u8>(length)}};
}

}  // namespace property

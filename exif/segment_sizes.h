// What an EXIF segment is made of, and how large that makes it.
#pragma once

#include <span>

#include "host/property_record.h"

namespace exif {

// Where the packet of an XMP field goes.
enum class XmpPlace {
  ifd0 = 0,        // an entry of the 0th IFD
  ownSegment = 1,  // a segment behind the EXIF segment
};

// The ids whose fields make one directory.
struct FieldRange {
  host::u16 first;
  host::u16 last;

  [[nodiscard]] constexpr bool holds(host::u16 fieldId) const noexcept {
    return fieldId >= first && fieldId <= last;
  }
};
inline constexpr FieldRange exifFields{host::fieldExifFirst, host::fieldExifLast};
inline constexpr FieldRange gpsFields{host::fieldGpsFirst, host::fieldGpsLast};

// A field of the 0th IFD. ICC chunks, whose ids lie among them, are no exception.
[[nodiscard]] bool isHostField(const host::PropertyField& field, XmpPlace xmp) noexcept;

// The parts of a segment that is made from the fields of a record.
struct SegmentParts {
  host::u32 hostFields = 0;
  host::u32 exifFields = 0;
  host::u32 gpsFields = 0;
  host::u64 valueBytes = 0;  // of all these fields, behind the directories
  host::u64 iptcBytes = 0;   // the datasets in a stream, 0 = no IPTC
  host::u64 thumbnailBytes = 0;

  [[nodiscard]] bool empty() const noexcept {
    return hostFields == 0 && exifFields == 0 && gpsFields == 0 && iptcBytes == 0 &&
           thumbnailBytes == 0;
  }
};

[[nodiscard]] SegmentParts partsOf(std::span<const host::PropertyField> fields,
                                   std::span<const host::u8> thumbnail, XmpPlace xmp) noexcept;

// Bytes from the byte-order mark to the first value: header and directories, with a place for every
// field, whether it will give an entry or not.
[[nodiscard]] host::u64 directorySizeOf(const SegmentParts& parts) noexcept;

// Bytes of the segment's payload: the identifier, the directories and the values.
[[nodiscard]] host::u64 payloadSizeOf(const SegmentParts& parts) noexcept;

// The two resolutions of the 1st IFD.
inline constexpr host::u64 thumbnailRationalBytes = 16;
inline constexpr host::u32 thumbnailEntries = 6;

}  // namespace exif

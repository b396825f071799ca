// Making the EXIF and XMP segments of a picture from its property fields (EXIF 2.32, clause 4.5).
#pragma once

#include <span>

#include "exif/segment_sizes.h"
#include "platform/system.h"

namespace exif {

// Adds a raw EXIF segment with the record's host, EXIF, GPS and IPTC fields and a thumbnail, and
// behind it a raw segment of its XMP packet; the writers put both into the file. The structure is
// little-endian. XMP is only met among host fields: a record without any other gets no XMP segment.
// slot: where the property record's handle lies, which may change. thumbnail: a JPEG stream, empty
// = none. Nothing is added when there is nothing to put in, room is refused or there is no memory.
// Kept: a missing tag table ends the call with the record locked.
void buildSegments(HGLOBAL* slot, std::span<const host::u8> thumbnail, XmpPlace xmp) noexcept;

// Builds them for a record that has no raw EXIF segment. A slot without a record stays as it is.
void ensureSegments(HGLOBAL* slot, std::span<const host::u8> thumbnail) noexcept;

}  // namespace exif

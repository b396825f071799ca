// The walk through an EXIF segment: IFD0, the EXIF and the GPS directory, and an IPTC block.
#pragma once

#include <span>

#include "host/types.h"
#include "platform/system.h"

namespace exif {

// Adds the fields of an APP1 "Exif" segment to the property record.
// payload: from the segment's first payload byte to the end of what may be read, which is the
// mapped file and not the segment: offsets behind the segment are followed. length: the payload's
// own length; only IFD0 must begin below it. slot: where the property record's handle lies.
// False when the payload is rejected, true when anything was walked.
bool walkExif(std::span<const host::u8> payload, host::u32 length, HGLOBAL* slot) noexcept;

}  // namespace exif

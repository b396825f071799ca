// Maker notes that are built like a TIFF directory, with or without a header of their own.
#pragma once

#include "host/types.h"
#include "platform/byte_reader.h"
#include "platform/system.h"

namespace exif {

// Adds every entry of a maker note to the property record as a byte block, without a label; its
// field id is 9000 + the entry's position in the note. The walk of a segment does not call this.
// tiff: from the outer TIFF header to the end of what may be read, in the outer byte order.
// offset: of the note in it. slot: where the property record's handle lies.
// False when the note's entry count is not 1 to 300; true otherwise, whatever was stored.
bool decodeMakerNote(const platform::ByteReader& tiff, host::u32 offset, HGLOBAL* slot) noexcept;

}  // namespace exif

// Reading a whole directory into the property record.
#pragma once

#include "exif/value_budget.h"
#include "platform/byte_reader.h"
#include "platform/system.h"

namespace exif {

// Where a directory's pointers to other blocks are noted. A null out is not asked for.
struct PointerOuts {
  host::u32* makerNote = nullptr;
  host::u32* photoshop = nullptr;
  host::u32* iptcOffset = nullptr;
  host::i32* iptcCount = nullptr;
};

// Adds one field for every entry of an IFD0 or EXIF directory whose tag the host's table knows.
// tiff: from the TIFF header to the end of what may be read, in the file's order; what does not lie
// inside is left out, a directory outside is one without entries. slot: where the property record's
// handle lies; the handle may change.
// False when room was refused or the definition set cannot be built; nothing is stored then.
bool readDirectory(const platform::ByteReader& tiff, host::u32 offset, HGLOBAL* slot,
                   ValueBudget& budget, const PointerOuts& outs = {}) noexcept;

// The same for a GPS directory, which has 1 to 32 entries; any other count is refused.
bool readGpsDirectory(const platform::ByteReader& tiff, host::u32 offset, HGLOBAL* slot,
                      ValueBudget& budget) noexcept;

}  // namespace exif

// Taking a file's metadata into its property record.
#pragma once

#include "host/file_data.h"
#include "property/segment_map.h"

namespace property {

// True when the record's metadata has been taken in before: its header field says so.
[[nodiscard]] bool isScanComplete(HGLOBAL propertyRecord) noexcept;

// Maps the source file and decodes the segments that the record's segment map notes.
// out: receives the property record's handle, or null for a caller that does not want it.
// imageIndex: which image of an MPO file the noted places count from; 0 for a JPEG.
// Returns 1 when the metadata has been taken in, now or before; 0 when it was found to hold none,
// when the file cannot be mapped (nothing is changed then), or when out ends up null.
int scanMappedFile(HGLOBAL fileData, HGLOBAL* out, host::u32 imageIndex) noexcept;

}  // namespace property

// Taking an edited property record over from the host.
#pragma once

#include "property/segment_map.h"

namespace property {

// Writes the edited camera data back into its heap and makes the property record that of the file,
// in any record that holds its slot; the heap's new length goes to the map of that layout,
// whatever the record's tag says, as far as the record reaches. Nothing changes when the file data
// is null or the heap cannot take the edits. The old property record is not freed.
void setProperty(HGLOBAL fileData, HGLOBAL property, const SegmentMapLayout& layout) noexcept;

}  // namespace property

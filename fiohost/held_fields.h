// Fields whose values the raw segments of the same record hold already. The plug-in builds an EXIF
// segment of every field for a picture that has none, so they would be written a second time.
#pragma once

#include "fiohost/properties.h"

namespace fiohost {

// The Photoshop segment with the IPTC datasets; null when there is none.
[[nodiscard]] host::PropertyField* iptcSegment(const LockedFields& locked);
[[nodiscard]] bool isIptcField(const host::PropertyField& field);

// Takes them out of the record; the segments stay.
void dropHeldFields(const FileData& fileData);

}  // namespace fiohost

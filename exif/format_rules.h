// From the raw text of well-known EXIF tags to what a reader expects: "F/2.8" for "28/10".
#pragma once

#include "exif/display_text.h"
#include "host/property_record.h"

namespace exif {

// The text to show for an EXIF field of the primary group whose raw text this is: formatted by the
// rule of its field id, or the raw text where there is no rule or the rule has nothing to say.
// resources: KFRES.DLL, which holds the value names.
[[nodiscard]] DisplayText formatExifValue(HMODULE resources, const host::PropertyField& field,
                                          const DisplayText& raw) noexcept;

// The same for a GPS field; only the version of the GPS tags has a rule.
[[nodiscard]] DisplayText formatGpsValue(const host::PropertyField& field,
                                         const DisplayText& raw) noexcept;

}  // namespace exif

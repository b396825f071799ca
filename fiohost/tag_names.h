// What the standards call their tags and datasets.
#pragma once

#include "fiohost/properties.h"

namespace fiohost {

// "FNumber", "GPSLatitude", "Keywords"; empty for a tag that is not listed.
[[nodiscard]] const char* standardName(PropertyGroup group, unsigned tag);

}  // namespace fiohost

// A property field for people and for programs.
#pragma once

#include <string>

#include "fiohost/json_value.h"
#include "fiohost/properties.h"

namespace fiohost {

// As the rules for well-known tags format the value, else in words that are quick to read. exact:
// numbers as they are stored, rationals as fractions and every byte of a value.
[[nodiscard]] std::string valueText(const Property& property, bool exact);

// Where the field comes from: "EXIF tag 0x829A, RATIONAL", "IPTC dataset 2:105", "APP1".
[[nodiscard]] std::string originText(const Property& property);

[[nodiscard]] Json propertyInJson(const Property& property, bool exact);

}  // namespace fiohost

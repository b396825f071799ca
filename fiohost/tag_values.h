// Values for tags from what a user types, in the form of the tag's TIFF type.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fiohost/tag_catalogue.h"

namespace fiohost {

struct TagValue {
  host::u16 tiffType;               // 0 for a dataset
  std::vector<std::uint8_t> bytes;  // as a little-endian TIFF file holds them, or a dataset's data

  [[nodiscard]] bool operator==(const TagValue&) const = default;
};

// The value that a text gives for a tag. presentType: the type of the field that is there, which
// decides where the standard leaves a choice; 0 when there is none. Numbers are separated by
// blanks, commas or semicolons; fractions are "1/250" or "0.004"; bytes are pairs of hexadecimal
// digits; a comment is a plain text. Throws Failure, naming the tag and what it takes, for any
// other text.
[[nodiscard]] TagValue parseTagValue(const SettableTag& tag, host::u16 presentType,
                                     const std::string& text);

}  // namespace fiohost

// The forms that the standards fix for texts: dates, references, codes (EXIF 2.32, IIM 4.2).
#pragma once

#include <string>

#include "fiohost/tag_catalogue.h"

namespace fiohost {

struct TextForm {
  PropertyGroup group;
  unsigned tag;
  // d a digit, x a hexadecimal one, s a sign, everything else itself; several forms are separated
  // by '|'.
  const char* pattern;
  const char* words;  // what the tag takes
};

// Null when the standard leaves the text open.
[[nodiscard]] const TextForm* textFormOf(const SettableTag& tag);

[[nodiscard]] bool hasForm(const TextForm& form, const std::string& text);

}  // namespace fiohost

// The attributes of an image in a multi-picture file (CIPA DC-007, 5.2.4): one table for showing
// them and for the options that set them.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/mpo.h"

namespace fiohost {

// The multi-frame files that an attribute belongs to. Of the viewpoints' attributes one value is
// the step from each image to the next.
enum class AttributeUse { panorama, viewpoints, everyMultiFrame };

struct MpoAttribute {
  const char* key;    // in JSON
  const char* words;  // for people
  const char* option;
  host::u32 presence;
  // Where the value lies: one of the two.
  host::u32 host::MpoAttributes::*number;
  host::MpoRational host::MpoAttributes::*ratio;
  bool isSigned;
  const char* unit;
  double least;  // in that unit
  double most;
  AttributeUse use;
};

// In the order of their tags.
[[nodiscard]] std::span<const MpoAttribute> mpoAttributes();

// What the standard records for a value that nobody knows.
inline constexpr host::MpoRational unknownRatio = {0xFFFFFFFF, 0xFFFFFFFF};

[[nodiscard]] bool isUnknown(const host::MpoRational& ratio);

// The value as its tag's type makes it of the two words; none for one that is not known.
[[nodiscard]] std::optional<double> valueOf(const host::MpoRational& ratio, bool isSigned);

[[nodiscard]] bool isInRange(const MpoAttribute& attribute, const host::MpoRational& value);

// An attribute as a user gives it.
struct GivenAttribute {
  const MpoAttribute* attribute;
  // For every image, or one for all. A number lies in the numerator.
  std::vector<host::MpoRational> values;

  // position counts from 0. There must be a value for it.
  [[nodiscard]] host::MpoRational at(std::size_t position) const {
    return values.size() == 1 ? values.front() : values[position];
  }
};

// The values in a text: numbers, or fractions as NUM/DEN, with commas between them; "unknown" for
// one that is not known. None when it is no such text or a value is out of the attribute's range.
[[nodiscard]] std::optional<GivenAttribute> parseAttribute(const MpoAttribute& attribute,
                                                           const std::string& text);

// What the option takes: "degrees from -180 to 180, NUM/DEN, for all images, or one each ...".
[[nodiscard]] std::string attributeHelp(const MpoAttribute& attribute);

// Puts the value into the description of an image.
void describe(const MpoAttribute& attribute, host::MpoRational value, host::MpoImageDesc& image);

}  // namespace fiohost

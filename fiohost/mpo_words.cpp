#include "fiohost/mpo_words.h"

#include <array>
#include <cstdio>
#include <optional>

#include "fiohost/picture_info.h"
#include "fiohost/picture_words.h"

namespace fiohost {
namespace {

using host::MpoAttributes;
using host::MpoRational;
using nlohmann::ordered_json;

// Attributes that are numbers, and those that are fractions (CIPA DC-007, 5.2.4).
struct NumberRow {
  const char* key;
  const char* words;
  host::u32 presence;
  host::u32 MpoAttributes::*value;
};

struct RatioRow {
  const char* key;
  const char* words;
  host::u32 presence;
  MpoRational MpoAttributes::*value;
  bool isSigned;
};

constexpr std::array numberRows = {
    NumberRow{"panOrientation", "Panorama orientation", host::presencePanOrientation,
              &MpoAttributes::panOrientation},
    NumberRow{"baseViewpoint", "Base viewpoint", host::presenceBaseViewpoint,
              &MpoAttributes::baseViewpoint},
};

constexpr std::array ratioRows = {
    RatioRow{"panOverlapHorizontal", "Horizontal overlap", host::presencePanOverlapHorizontal,
             &MpoAttributes::panOverlapHorizontal, false},
    RatioRow{"panOverlapVertical", "Vertical overlap", host::presencePanOverlapVertical,
             &MpoAttributes::panOverlapVertical, false},
    RatioRow{"convergenceAngle", "Convergence angle", host::presenceConvergenceAngle,
             &MpoAttributes::convergenceAngle, true},
    RatioRow{"baselineLength", "Baseline length", host::presenceBaselineLength,
             &MpoAttributes::baselineLength, false},
    RatioRow{"verticalDivergence", "Vertical divergence", host::presenceVerticalDivergence,
             &MpoAttributes::verticalDivergence, true},
    RatioRow{"axisDistanceX", "Axis distance X", host::presenceAxisDistanceX,
             &MpoAttributes::axisDistanceX, true},
    RatioRow{"axisDistanceY", "Axis distance Y", host::presenceAxisDistanceY,
             &MpoAttributes::axisDistanceY, true},
    RatioRow{"axisDistanceZ", "Axis distance Z", host::presenceAxisDistanceZ,
             &MpoAttributes::axisDistanceZ, true},
    RatioRow{"yawAngle", "Yaw angle", host::presenceYawAngle, &MpoAttributes::yawAngle, true},
    RatioRow{"pitchAngle", "Pitch angle", host::presencePitchAngle, &MpoAttributes::pitchAngle,
             true},
    RatioRow{"rollAngle", "Roll angle", host::presenceRollAngle, &MpoAttributes::rollAngle, true},
};

// A fraction's two words as the numbers that its tag's type makes of them.
struct Fraction {
  host::i64 numerator;
  host::i64 denominator;
  bool unknown;  // recorded as such: all bits set

  // None for a value that is recorded as unknown.
  [[nodiscard]] std::optional<double> value() const {
    if (unknown || denominator == 0) return std::nullopt;
    return static_cast<double>(numerator) / static_cast<double>(denominator);
  }
};

// Packed members have no references, so the fraction is taken by value.
Fraction fractionOf(MpoRational ratio, bool isSigned) {
  const bool unknown = ratio.numerator == 0xFFFFFFFF && ratio.denominator == 0xFFFFFFFF;
  if (!isSigned) return {ratio.numerator, ratio.denominator, unknown};
  return {static_cast<host::i32>(ratio.numerator), static_cast<host::i32>(ratio.denominator),
          unknown};
}

// Reading gives the horizontal overlap without its flag; its denominator tells that it is there.
bool isPresent(const RatioRow& row, const host::MpoEntry& entry) {
  if (row.presence == host::presencePanOverlapHorizontal) {
    return entry.attributes.panOverlapHorizontal.denominator != 0;
  }
  return (entry.flags & row.presence) != 0;
}

std::string fractionText(const Fraction& fraction) {
  const std::string stored =
      std::to_string(fraction.numerator) + "/" + std::to_string(fraction.denominator);
  const std::optional<double> value = fraction.value();
  char text[48] = "unknown";
  if (value) std::snprintf(text, sizeof text, "%.6g", *value);
  return stored + " (" + text + ")";
}

ordered_json fractionInJson(const Fraction& fraction) {
  const std::optional<double> value = fraction.value();
  return {{"numerator", fraction.numerator},
          {"denominator", fraction.denominator},
          {"value", value ? ordered_json(*value) : ordered_json(nullptr)}};
}

std::string attributeLine(const std::string& name, const std::string& value) {
  constexpr std::size_t nameWidth = 22;
  std::string line = "    " + name;
  line.resize(4 + nameWidth, ' ');
  return line + value + "\n";
}

std::string attributesInWords(const host::MpoEntry& entry) {
  const MpoAttributes attributes = entry.attributes;
  std::string text;
  for (const NumberRow& row : numberRows) {
    if ((entry.flags & row.presence) == 0) continue;
    text += attributeLine(row.words, std::to_string(attributes.*row.value));
  }
  for (const RatioRow& row : ratioRows) {
    if (!isPresent(row, entry)) continue;
    text += attributeLine(row.words, fractionText(fractionOf(attributes.*row.value, row.isSigned)));
  }
  return text;
}

ordered_json attributesInJson(const host::MpoEntry& entry) {
  const MpoAttributes attributes = entry.attributes;
  ordered_json object = ordered_json::object();
  for (const NumberRow& row : numberRows) {
    if ((entry.flags & row.presence) != 0) object[row.key] = host::u32{attributes.*row.value};
  }
  for (const RatioRow& row : ratioRows) {
    if (!isPresent(row, entry)) continue;
    object[row.key] = fractionInJson(fractionOf(attributes.*row.value, row.isSigned));
  }
  return object;
}

// The images that this one names, by their numbers. An independent image names its dependents by
// their places in the array, where place 0 is no dependent; a dependent image names others by their
// numbers in the file.
std::vector<host::i64> dependentsOf(const host::MpoEntry& entry) {
  const host::i64 first = entry.dependentChild != 0 ? 0 : 1;
  std::vector<host::i64> numbers;
  for (const host::i32 dependent : {entry.dependent1, entry.dependent2}) {
    if (dependent > 0) numbers.push_back(dependent + first);
  }
  return numbers;
}

std::string rolesInWords(const host::MpoEntry& entry) {
  std::string text;
  if (entry.representative != 0) text += ", representative";
  if (entry.dependentParent != 0) text += ", parent";
  if (entry.dependentChild != 0) text += ", child";
  const char* before = ", dependent images ";
  for (const host::i64 number : dependentsOf(entry)) {
    text += before + std::to_string(number);
    before = " and ";
  }
  return text;
}

std::string placeInWords(const ListedImage& image) {
  const std::string offset = "offset " + std::to_string(image.entry.fileOffset);
  if (image.entry.size == 0) return offset + ", length not told";
  return offset + ", " + std::to_string(image.entry.size) + " bytes" +
         (image.insideFile ? "" : ", not wholly in this file");
}

std::string imageInWords(const ListedImage& image) {
  const host::MpoEntry& entry = image.entry;
  std::string text = std::to_string(entry.image.width) + " x " +
                     std::to_string(entry.image.height) + " pixels, " + mpoImageKind(entry) +
                     rolesInWords(entry);
  text = factLine("Image " + std::to_string(image.number), text);
  text += attributeLine("Place", placeInWords(image));
  if (entry.imageNumber >= 0) {
    text += attributeLine("Individual number", std::to_string(host::i64{entry.imageNumber} + 1));
  }
  return text + attributesInWords(entry);
}

ordered_json imageInJson(const ListedImage& image) {
  const host::MpoEntry& entry = image.entry;
  const bool numbered = entry.imageNumber >= 0;
  return {{"number", image.number},
          {"width", host::u32{entry.image.width}},
          {"height", host::u32{entry.image.height}},
          {"offset", host::u32{entry.fileOffset}},
          {"bytes", host::u32{entry.size}},
          {"insideFile", image.insideFile},
          {"class", mpoImageKind(entry)},
          {"representative", entry.representative != 0},
          {"parent", entry.dependentParent != 0},
          {"child", entry.dependentChild != 0},
          {"dependents", dependentsOf(entry)},
          {"individualNumber",
           numbered ? ordered_json(host::i64{entry.imageNumber} + 1) : ordered_json(nullptr)},
          {"attributes", attributesInJson(entry)}};
}

}  // namespace

std::string listInWords(const std::string& name, const MpoFile& file) {
  std::string text = name + "\n";
  text += factLine("Kind", mpoKindName(file.list.kind));
  text += factLine("Images", std::to_string(file.images.size()));
  text += factLine("Frames", std::to_string(file.list.totalFrames));
  for (const ListedImage& image : file.images) text += imageInWords(image);
  return text;
}

ordered_json listInJson(const std::string& name, const MpoFile& file) {
  ordered_json images = ordered_json::array();
  for (const ListedImage& image : file.images) images.push_back(imageInJson(image));
  return {{"file", name},
          {"kind", mpoKindName(file.list.kind)},
          {"frames", host::u32{file.list.totalFrames}},
          {"images", images}};
}

}  // namespace fiohost

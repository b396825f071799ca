#include "fiohost/mpo_attributes.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

#include "fiohost/numbers.h"

namespace fiohost {
namespace {

using host::i64;
using host::MpoAttributes;
using host::MpoRational;
using host::u32;

constexpr double noLimit = std::numeric_limits<double>::infinity();
constexpr double halfTurn = 180;
constexpr double mostNumber = 0xFFFFFFFEU;  // all ones means unknown

constexpr MpoAttribute number(const char* key, const char* words, const char* option, u32 presence,
                              u32 MpoAttributes::*member, double least, AttributeUse use) {
  return {key, words, option, presence, member, nullptr, false, "", least, mostNumber, use};
}

constexpr MpoAttribute ratio(const char* key, const char* words, const char* option, u32 presence,
                             MpoRational MpoAttributes::*member, const char* unit, double most,
                             AttributeUse use) {
  return {key, words, option, presence, nullptr, member, false, unit, 0, most, use};
}

constexpr MpoAttribute signedRatio(const char* key, const char* words, const char* option,
                                   u32 presence, MpoRational MpoAttributes::*member,
                                   const char* unit, double most, AttributeUse use) {
  return {key, words, option, presence, nullptr, member, true, unit, -most, most, use};
}

constexpr AttributeUse panorama = AttributeUse::panorama;
constexpr AttributeUse viewpoints = AttributeUse::viewpoints;
constexpr AttributeUse every = AttributeUse::everyMultiFrame;

constexpr std::array attributes = {
    number("panOrientation", "Panorama orientation", "--pan-orientation",
           host::presencePanOrientation, &MpoAttributes::panOrientation, 0, panorama),
    ratio("panOverlapHorizontal", "Horizontal overlap", "--horizontal-overlap",
          host::presencePanOverlapHorizontal, &MpoAttributes::panOverlapHorizontal, "percent", 100,
          panorama),
    ratio("panOverlapVertical", "Vertical overlap", "--vertical-overlap",
          host::presencePanOverlapVertical, &MpoAttributes::panOverlapVertical, "percent", 100,
          panorama),
    number("baseViewpoint", "Base viewpoint", "--base-viewpoint", host::presenceBaseViewpoint,
           &MpoAttributes::baseViewpoint, 1, every),
    signedRatio("convergenceAngle", "Convergence angle", "--convergence",
                host::presenceConvergenceAngle, &MpoAttributes::convergenceAngle, "degrees",
                halfTurn, viewpoints),
    ratio("baselineLength", "Baseline length", "--baseline", host::presenceBaselineLength,
          &MpoAttributes::baselineLength, "metres", noLimit, viewpoints),
    signedRatio("verticalDivergence", "Vertical divergence", "--vertical-divergence",
                host::presenceVerticalDivergence, &MpoAttributes::verticalDivergence, "degrees",
                halfTurn, every),
    signedRatio("axisDistanceX", "Axis distance X", "--axis-x", host::presenceAxisDistanceX,
                &MpoAttributes::axisDistanceX, "metres", noLimit, every),
    signedRatio("axisDistanceY", "Axis distance Y", "--axis-y", host::presenceAxisDistanceY,
                &MpoAttributes::axisDistanceY, "metres", noLimit, every),
    signedRatio("axisDistanceZ", "Axis distance Z", "--axis-z", host::presenceAxisDistanceZ,
                &MpoAttributes::axisDistanceZ, "metres", noLimit, every),
    signedRatio("yawAngle", "Yaw angle", "--yaw", host::presenceYawAngle, &MpoAttributes::yawAngle,
                "degrees", halfTurn, every),
    signedRatio("pitchAngle", "Pitch angle", "--pitch", host::presencePitchAngle,
                &MpoAttributes::pitchAngle, "degrees", halfTurn, every),
    signedRatio("rollAngle", "Roll angle", "--roll", host::presenceRollAngle,
                &MpoAttributes::rollAngle, "degrees", halfTurn, every),
};

bool inRange(const MpoAttribute& attribute, double value) {
  return value >= attribute.least && value <= attribute.most;
}

// A signed word holds no more, and who needs the last bit of an unsigned one can shorten.
constexpr i64 mostInWord = 0x7FFFFFFF;

std::optional<MpoRational> parseFraction(const MpoAttribute& attribute, std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return std::nullopt;
  const std::optional<i64> numerator = parseInteger(text.substr(0, slash));
  const std::optional<i64> denominator = parseInteger(text.substr(slash + 1));
  if (!numerator || !denominator || *numerator > mostInWord || *numerator < -mostInWord ||
      *denominator < 1 || *denominator > mostInWord) {
    return std::nullopt;
  }
  const double value = static_cast<double>(*numerator) / static_cast<double>(*denominator);
  if (!inRange(attribute, value)) return std::nullopt;
  return MpoRational{static_cast<u32>(*numerator), static_cast<u32>(*denominator)};
}

std::optional<MpoRational> parseWholeNumber(const MpoAttribute& attribute, std::string_view text) {
  const std::optional<i64> given = parseInteger(text);
  if (!given || !inRange(attribute, static_cast<double>(*given))) return std::nullopt;
  return MpoRational{static_cast<u32>(*given), 1};
}

std::optional<MpoRational> parseOne(const MpoAttribute& attribute, std::string_view text) {
  if (text == "unknown") return unknownRatio;
  return attribute.number != nullptr ? parseWholeNumber(attribute, text)
                                     : parseFraction(attribute, text);
}

std::string rangeText(const MpoAttribute& attribute) {
  if (attribute.most == noLimit) return attribute.isSigned ? "" : " from 0";
  const auto limit = [](double value) { return std::to_string(static_cast<i64>(value)); };
  return " from " + limit(attribute.least) + " to " + limit(attribute.most);
}

}  // namespace

std::span<const MpoAttribute> mpoAttributes() { return attributes; }

bool isUnknown(const MpoRational& ratio) {
  return ratio.numerator == unknownRatio.numerator && ratio.denominator == unknownRatio.denominator;
}

std::optional<double> valueOf(const MpoRational& ratio, bool isSigned) {
  if (isUnknown(ratio) || ratio.denominator == 0) return std::nullopt;
  if (!isSigned) return static_cast<double>(ratio.numerator) / ratio.denominator;
  return static_cast<double>(static_cast<host::i32>(ratio.numerator)) /
         static_cast<host::i32>(ratio.denominator);
}

bool isInRange(const MpoAttribute& attribute, const MpoRational& value) {
  const std::optional<double> number = valueOf(value, attribute.isSigned);
  return number && inRange(attribute, *number);
}

std::optional<GivenAttribute> parseAttribute(const MpoAttribute& attribute,
                                             const std::string& text) {
  GivenAttribute given = {&attribute, {}};
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    const auto value = parseOne(attribute, std::string_view(text).substr(start, comma - start));
    if (!value) return std::nullopt;
    given.values.push_back(*value);
    start = comma + 1;
  }
  return given;
}

std::string attributeHelp(const MpoAttribute& attribute) {
  const bool isNumber = attribute.number != nullptr;
  const std::string text = std::string(isNumber ? "a number" : attribute.unit) +
                           rangeText(attribute) + (isNumber ? "" : ", NUM/DEN");
  return text + (attribute.use == AttributeUse::viewpoints
                     ? ", between neighbouring images, or one each with commas"
                     : ", for all images, or one each with commas");
}

void describe(const MpoAttribute& attribute, MpoRational value, host::MpoImageDesc& image) {
  // A packed record may lie anywhere, but a pointer to a member expects it at an even place.
  alignas(u32) MpoAttributes values = image.attributes;
  if (attribute.number != nullptr) {
    values.*attribute.number = value.numerator;
  } else {
    values.*attribute.ratio = value;
  }
  image.attributes = values;
  image.flags = image.flags | attribute.presence;
}

}  // namespace fiohost

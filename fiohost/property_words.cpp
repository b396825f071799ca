#include "fiohost/property_words.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <cstring>

namespace fiohost {
namespace {

using host::i32;
using host::u32;
using host::u64;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t mostBytesShown = 16;
constexpr std::size_t mostNumbersShown = 16;

enum class Form { bytes, text, unsignedNumber, signedNumber, rational, signedRational, real };

struct TiffTypeForm {
  const char* name;
  std::size_t size;
  Form form;
};

// TIFF 6.0, section 2.
constexpr std::array types = {TiffTypeForm{"", 1, Form::bytes},
                              TiffTypeForm{"BYTE", 1, Form::unsignedNumber},
                              TiffTypeForm{"ASCII", 1, Form::text},
                              TiffTypeForm{"SHORT", 2, Form::unsignedNumber},
                              TiffTypeForm{"LONG", 4, Form::unsignedNumber},
                              TiffTypeForm{"RATIONAL", 8, Form::rational},
                              TiffTypeForm{"SBYTE", 1, Form::signedNumber},
                              TiffTypeForm{"UNDEFINED", 1, Form::bytes},
                              TiffTypeForm{"SSHORT", 2, Form::signedNumber},
                              TiffTypeForm{"SLONG", 4, Form::signedNumber},
                              TiffTypeForm{"SRATIONAL", 8, Form::signedRational},
                              TiffTypeForm{"FLOAT", 4, Form::real},
                              TiffTypeForm{"DOUBLE", 8, Form::real}};

const TiffTypeForm& typeOf(const Property& property) {
  return types[property.tiffType < types.size() ? property.tiffType : 0];
}

u64 numberAt(const Bytes& bytes, std::size_t offset, std::size_t size) {
  u64 number = 0;
  const std::size_t count = std::min(size, sizeof number);
  for (std::size_t i = 0; i < count; ++i) number |= u64{bytes[offset + i]} << (8 * i);
  return number;
}

host::i64 signedAt(const Bytes& bytes, std::size_t offset, std::size_t size) {
  const unsigned spare = static_cast<unsigned>(64 - 8 * size);
  return static_cast<host::i64>(numberAt(bytes, offset, size) << spare) >> spare;
}

std::string realText(double number) {
  std::array<char, 40> text = {};
  std::snprintf(text.data(), text.size(), "%.10g", number);
  return text.data();
}

std::string fraction(host::i64 numerator, host::i64 denominator, bool exact) {
  if (exact || denominator == 0) {
    return std::to_string(numerator) + "/" + std::to_string(denominator);
  }
  return realText(static_cast<double>(numerator) / static_cast<double>(denominator));
}

std::string elementText(const Bytes& bytes, std::size_t at, const TiffTypeForm& type, bool exact) {
  switch (type.form) {
    case Form::signedNumber:
      return std::to_string(signedAt(bytes, at, type.size));
    case Form::rational:
      return fraction(static_cast<host::i64>(numberAt(bytes, at, 4)),
                      static_cast<host::i64>(numberAt(bytes, at + 4, 4)), exact);
    case Form::signedRational:
      return fraction(signedAt(bytes, at, 4), signedAt(bytes, at + 4, 4), exact);
    case Form::real:
      return realText(type.size == 4
                          ? std::bit_cast<float>(static_cast<u32>(numberAt(bytes, at, 4)))
                          : std::bit_cast<double>(numberAt(bytes, at, 8)));
    default:
      return std::to_string(numberAt(bytes, at, type.size));
  }
}

std::string numbersText(const Bytes& bytes, const TiffTypeForm& type, bool exact) {
  const std::size_t count = bytes.size() / type.size;
  const std::size_t shown = exact ? count : std::min(count, mostNumbersShown);
  std::string text;
  for (std::size_t index = 0; index < shown; ++index) {
    if (index != 0) text += ' ';
    text += elementText(bytes, index * type.size, type, exact);
  }
  if (shown < count) text += " ... (" + std::to_string(count) + " numbers)";
  return text;
}

std::string hexText(const Bytes& bytes) {
  std::string text;
  std::array<char, 3> digits = {};
  for (const std::uint8_t byte : bytes) {
    std::snprintf(digits.data(), digits.size(), "%02x", static_cast<unsigned>(byte));
    text += digits.data();
  }
  return text;
}

std::string byteCount(const Bytes& bytes) { return std::to_string(bytes.size()) + " bytes"; }

std::string bytesText(const Bytes& bytes, bool exact) {
  return exact || bytes.size() <= mostBytesShown ? hexText(bytes) : byteCount(bytes);
}

// Up to the NULs that fill it.
std::string plainText(const Bytes& bytes) {
  std::string text(bytes.begin(), bytes.end());
  text.resize(text.find_last_not_of('\0') + 1);
  return text;
}

// MS-DOS date and time, the date in the low half.
std::string dateTimeText(const Bytes& bytes) {
  const auto date = static_cast<unsigned>(numberAt(bytes, 0, 2));
  const auto time = static_cast<unsigned>(numberAt(bytes, 2, 2));
  std::array<char, 40> text = {};
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02u %02u:%02u:%02u", 1980 + (date >> 9),
                date >> 5 & 15, date & 31, time >> 11, time >> 5 & 63, (time & 31) * 2);
  return text.data();
}

bool isSummary(const Property& property) {
  return property.group == PropertyGroup::xmp || property.group == PropertyGroup::icc ||
         property.group == PropertyGroup::segment || property.id == host::fieldHeap;
}

const char* kindName(const Property& property) {
  switch (property.valueKind) {
    case host::kindText:
      return "text";
    case host::kindBlock:
      return "block";
    case host::kindDateTime:
      return "date";
    default:
      return "number";
  }
}

std::string hexTag(unsigned tag) {
  std::array<char, 12> text = {};
  std::snprintf(text.data(), text.size(), "0x%04X", tag);
  return text.data();
}

}  // namespace

std::string valueText(const Property& property, bool exact) {
  const Bytes& value = property.value;
  if (isSummary(property)) return byteCount(value);
  if (!exact && !property.formatted.empty()) return property.formatted;
  if (property.valueKind == host::kindText) return plainText(value);
  if (property.valueKind == host::kindDateTime) return dateTimeText(value);
  if (property.valueKind != host::kindBlock) {
    const bool isSigned = typeOf(property).form == Form::signedNumber;
    return isSigned ? std::to_string(signedAt(value, 0, value.size()))
                    : std::to_string(numberAt(value, 0, value.size()));
  }
  const TiffTypeForm& type = typeOf(property);
  if (type.form == Form::text) return plainText(value);
  return type.form == Form::bytes ? bytesText(value, exact) : numbersText(value, type, exact);
}

std::string originText(const Property& property) {
  if (property.group == PropertyGroup::segment && property.prefix.size() > 1) {
    return "APP" + std::to_string(property.prefix[1] & 0xF);
  }
  if (property.group == PropertyGroup::camera) return "camera-data heap";
  if (!property.tag) return std::string(groupName(property.group)) + " segment";
  if (property.group == PropertyGroup::iptc) {
    return "IPTC dataset 2:" + std::to_string(*property.tag);
  }
  const std::string directory = property.group == PropertyGroup::gps ? "GPS" : "EXIF";
  const std::string type = typeOf(property).name;
  return directory + " tag " + hexTag(*property.tag) + (type.empty() ? "" : ", " + type);
}

Json propertyInJson(const Property& property, bool exact) {
  // Member by member: a braced list is made of arrays first, and files have thousands of fields.
  Json::object_t members;
  members.reserve(9);
  members.emplace("group", groupName(property.group));
  members.emplace("id", property.id);
  members.emplace("name", property.name);
  members.emplace("tag", property.tag ? Json(*property.tag) : Json(nullptr));
  members.emplace("type", typeOf(property).name);
  members.emplace("kind", kindName(property));
  members.emplace("from", originText(property));
  members.emplace("value", valueText(property, exact));
  if (exact && !isSummary(property)) members.emplace("bytes", hexText(property.value));
  return members;
}

}  // namespace fiohost

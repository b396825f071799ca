#include "fiohost/tag_values.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <limits>
#include <numeric>
#include <optional>
#include <string_view>

#include "exif/directory_entry.h"
#include "fiohost/failure.h"
#include "fiohost/tag_forms.h"

namespace fiohost {
namespace {

using host::i64;
using host::u16;
using host::u64;
using Bytes = std::vector<std::uint8_t>;

// Datasets with longer values need the extended form, which the plug-in does not know.
constexpr std::size_t longestDataset = 32767;
constexpr std::size_t longestText = 65000;  // about what one segment holds

struct Range {
  i64 least;
  i64 most;
};

Range rangeOf(u16 type) {
  switch (type) {
    case exif::typeByte:
      return {0, 255};
    case exif::typeSByte:
      return {-128, 127};
    case exif::typeShort:
      return {0, 65535};
    case exif::typeSShort:
      return {-32768, 32767};
    case exif::typeSLong:
    case exif::typeSRational:
      return {std::numeric_limits<host::i32>::min(), std::numeric_limits<host::i32>::max()};
    default:
      return {0, std::numeric_limits<host::u32>::max()};
  }
}

void put(Bytes& bytes, i64 number, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(static_cast<u64>(number) >> (8 * i)));
  }
}

std::vector<std::string> words(const std::string& text) {
  std::vector<std::string> found;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(" ,;", at)) != std::string::npos) {
    const std::size_t end = std::min(text.find_first_of(" ,;", at), text.size());
    found.push_back(text.substr(at, end - at));
    at = end;
  }
  return found;
}

// The whole text as a decimal number; a plus sign may be there.
std::optional<i64> wholeNumber(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  i64 number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
  return number;
}

struct Fraction {
  i64 numerator;
  i64 denominator;
};

// "12.50" is 1250/100, made smaller.
std::optional<Fraction> decimalFraction(std::string_view text) {
  constexpr std::size_t mostDecimals = 9;
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::string_view decimals = text.substr(std::min(point + 1, text.size()));
  if (decimals.size() > mostDecimals || (point < text.size() && decimals.empty())) {
    return std::nullopt;
  }
  const bool allDigits = std::all_of(decimals.begin(), decimals.end(), [](unsigned char letter) {
    return std::isdigit(letter) != 0;
  });
  const auto number = wholeNumber(std::string(text.substr(0, point)) + std::string(decimals));
  if (!allDigits || !number) return std::nullopt;
  i64 denominator = 1;
  for (std::size_t i = 0; i < decimals.size(); ++i) denominator *= 10;
  const i64 divisor = std::gcd(*number, denominator);
  return Fraction{*number / divisor, denominator / divisor};
}

std::optional<Fraction> fractionOf(const std::string& text) {
  const std::size_t stroke = text.find('/');
  if (stroke == std::string::npos) return decimalFraction(text);
  const auto numerator = wholeNumber(std::string_view(text).substr(0, stroke));
  const auto denominator = wholeNumber(std::string_view(text).substr(stroke + 1));
  if (!numerator || !denominator) return std::nullopt;
  return Fraction{*numerator, *denominator};
}

bool isIn(const Range& range, i64 number) { return number >= range.least && number <= range.most; }

std::optional<Bytes> numberBytes(u16 type, const std::string& word) {
  const auto number = wholeNumber(word);
  if (!number || !isIn(rangeOf(type), *number)) return std::nullopt;
  Bytes bytes;
  put(bytes, *number, exif::elementSize(type));
  return bytes;
}

std::optional<Bytes> fractionBytes(u16 type, const std::string& word) {
  const auto fraction = fractionOf(word);
  const Range range = rangeOf(type);
  if (!fraction || !isIn(range, fraction->numerator) || !isIn(range, fraction->denominator)) {
    return std::nullopt;
  }
  Bytes bytes;
  put(bytes, fraction->numerator, 4);
  put(bytes, fraction->denominator, 4);
  return bytes;
}

bool isFractionType(u16 type) { return type == exif::typeRational || type == exif::typeSRational; }

std::string countWords(u16 count, const std::string& one, const std::string& several) {
  if (count == 1) return one;
  return (count == 0 ? "" : std::to_string(count) + " ") + several;
}

std::string numbersTaken(u16 type, u16 count) {
  if (isFractionType(type)) {
    const bool isSigned = type == exif::typeSRational;
    return countWords(count, "a number", "numbers") + " such as 1/250 or 0.004" +
           (isSigned ? ", perhaps with a minus sign" : "");
  }
  const Range range = rangeOf(type);
  return countWords(count, "a whole number", "whole numbers") + " from " +
         std::to_string(range.least) + " to " + std::to_string(range.most);
}

[[noreturn]] void refuse(const SettableTag& tag, const std::string& text,
                         const std::string& taken) {
  throw Failure("\"" + tag.label + "\" cannot be set to \"" + text + "\"", "it takes " + taken);
}

Bytes parseNumbers(const SettableTag& tag, u16 type, const std::string& text) {
  const u16 count = tag.definition.count;
  const std::vector<std::string> given = words(text);
  if (given.empty() || (count != 0 && given.size() != count)) {
    refuse(tag, text, numbersTaken(type, count));
  }
  Bytes all;
  for (const std::string& word : given) {
    const auto one = isFractionType(type) ? fractionBytes(type, word) : numberBytes(type, word);
    if (!one) refuse(tag, text, numbersTaken(type, count));
    all.insert(all.end(), one->begin(), one->end());
  }
  return all;
}

// A text with a character code in front (EXIF 2.32, UserComment, GPSProcessingMethod).
bool isComment(const SettableTag& tag) {
  if (tag.group == PropertyGroup::gps) {
    return tag.definition.tag == 0x1B || tag.definition.tag == 0x1C;
  }
  return tag.group == PropertyGroup::exif && tag.definition.tag == 0x9286;
}

Bytes commentBytes(const std::string& text) {
  constexpr std::size_t codeSize = 8;
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char letter) {
    return static_cast<unsigned char>(letter) < 128;
  });
  std::string coded =
      isPlain ? std::string("ASCII\0\0\0", codeSize) : std::string("UNICODE\0", codeSize);
  if (isPlain) {
    coded += text;
    return {coded.begin(), coded.end()};
  }
  const std::filesystem::path wide(std::u8string(text.begin(), text.end()));
  Bytes bytes(coded.begin(), coded.end());
  for (const char16_t unit : wide.u16string()) put(bytes, unit, 2);
  return bytes;
}

Bytes parseBytes(const SettableTag& tag, const std::string& text) {
  const u16 count = tag.definition.count;
  const std::string taken =
      countWords(count, "one byte", "bytes") + ", each two hexadecimal digits";
  std::string digits;
  for (const std::string& word : words(text)) digits += word;
  const bool allHex = std::all_of(digits.begin(), digits.end(),
                                  [](unsigned char digit) { return std::isxdigit(digit) != 0; });
  const std::size_t size = digits.size() / 2;
  if (!allHex || digits.size() % 2 != 0 || size == 0 || (count != 0 && size != count)) {
    refuse(tag, text, taken);
  }
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) {
    std::from_chars(digits.data() + 2 * i, digits.data() + 2 * i + 2, bytes[i], 16);
  }
  return bytes;
}

void checkForm(const SettableTag& tag, const std::string& text) {
  const TextForm* form = textFormOf(tag);
  if (form != nullptr && !hasForm(*form, text)) refuse(tag, text, form->words);
}

// Without a form of its own a text may be as long as the standard says, its NUL included.
Bytes parseText(const SettableTag& tag, const std::string& text) {
  checkForm(tag, text);
  const u16 count = tag.definition.count;
  const bool hasNul = tag.definition.type == exif::typeAscii;
  const std::size_t most = count != 0 ? std::size_t{count} - (hasNul ? 1 : 0) : longestText;
  if (text.size() > most) refuse(tag, text, "at most " + std::to_string(most) + " characters");
  Bytes bytes(text.begin(), text.end());
  if (hasNul) bytes.push_back(0);
  return bytes;
}

// The record version is a 16-bit number, everything else a text (IIM 4.2, chapter 6).
Bytes parseDataset(const SettableTag& tag, const std::string& text) {
  if (tag.definition.tag == 0) {
    const auto version = wholeNumber(text);
    if (!version || !isIn({0, 65535}, *version)) refuse(tag, text, "a whole number such as 4");
    return {static_cast<std::uint8_t>(*version >> 8), static_cast<std::uint8_t>(*version)};
  }
  checkForm(tag, text);
  if (text.empty() || text.size() > longestDataset) {
    refuse(tag, text, "a text of 1 to " + std::to_string(longestDataset) + " bytes");
  }
  return {text.begin(), text.end()};
}

// Where the standard leaves a choice, what is there, else the wider one.
u16 typeFor(const SettableTag& tag, u16 presentType) {
  if (tag.definition.type != 0) return tag.definition.type;
  const bool fits = presentType == exif::typeShort || presentType == exif::typeLong;
  return fits ? presentType : u16{exif::typeLong};
}

}  // namespace

TagValue parseTagValue(const SettableTag& tag, u16 presentType, const std::string& text) {
  if (tag.group == PropertyGroup::iptc) return {0, parseDataset(tag, text)};
  const u16 type = typeFor(tag, presentType);
  if (tag.definition.kind == host::kindText) return {type, parseText(tag, text)};
  if (isComment(tag)) return {type, commentBytes(text)};
  if (type == exif::typeUndefined) return {type, parseBytes(tag, text)};
  return {type, parseNumbers(tag, type, text)};
}

}  // namespace fiohost

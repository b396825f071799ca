#include "fiohost/heap_values.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>

#include "fiohost/failure.h"
#include "fiohost/numbers.h"
#include "fiohost/property_words.h"

namespace fiohost {
namespace {

using host::i64;
using host::u16;
using host::u32;

// Field ids of the items of every record that the plug-in knows.
constexpr u16 firstItem = 5009;
constexpr u16 lastItem = 5084;

struct Range {
  i64 least;
  i64 most;
};

// Whether a 32-bit field is signed is the heap's matter: it takes both.
Range rangeOf(u16 kind) {
  if (kind == host::kindNumber16) return {-32768, 32767};
  if (kind == host::kindNumber16Unsigned) return {0, 65535};
  return {std::numeric_limits<host::i32>::min(), std::numeric_limits<u32>::max()};
}

[[noreturn]] void refuse(const Property& item, const std::string& text, const std::string& advice) {
  throw Failure("\"" + item.name + "\" cannot be set to \"" + text + "\"", advice);
}

u32 parseNumber(const Property& item, const std::string& text) {
  const Range range = rangeOf(item.valueKind);
  const std::optional<i64> number = parseInteger(text);
  if (!number || *number < range.least || *number > range.most) {
    refuse(item, text,
           "it takes a whole number from " + std::to_string(range.least) + " to " +
               std::to_string(range.most));
  }
  const bool isShort =
      item.valueKind == host::kindNumber16 || item.valueKind == host::kindNumber16Unsigned;
  return isShort ? static_cast<u16>(*number) : static_cast<u32>(*number);
}

u32 parseReal(const Property& item, const std::string& text) {
  if (text.starts_with("0x") || text.starts_with("0X")) return parseNumber(item, text);
  const char* end = text.data() + text.size();
  float number = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || !std::isfinite(number)) {
    refuse(item, text, "it takes a number such as 2.5, or 32 bits such as 0x40200000");
  }
  return std::bit_cast<u32>(number);
}

bool isWholeDate(const std::string& text) {
  constexpr std::string_view form = "dddd-dd-dd dd:dd:dd";
  return std::equal(text.begin(), text.end(), form.begin(), form.end(),
                    [](char given, char wanted) {
                      return wanted == 'd' ? given >= '0' && given <= '9' : given == wanted;
                    });
}

// MS-DOS date and time begin with 1980 and count two seconds as one; the plug-in's clock ends with
// 31 bits of seconds.
u32 parseDate(const Property& item, const std::string& text) {
  constexpr unsigned firstYear = 1980;
  constexpr unsigned lastYear = 2037;
  std::array<unsigned, 6> part = {};
  const bool read =
      isWholeDate(text) && std::sscanf(text.c_str(), "%u-%u-%u %u:%u:%u", &part[0], &part[1],
                                       &part[2], &part[3], &part[4], &part[5]) == 6;
  const std::chrono::year_month_day day(std::chrono::year(static_cast<int>(part[0])),
                                        std::chrono::month(part[1]), std::chrono::day(part[2]));
  if (!read || !day.ok() || part[0] < firstYear || part[0] > lastYear || part[3] > 23 ||
      part[4] > 59 || part[5] > 59) {
    refuse(item, text, "it takes a date from 1980 to 2037 as \"YYYY-MM-DD HH:MM:SS\"");
  }
  return (part[0] - firstYear) << 9 | part[1] << 5 | part[2] |
         (part[3] << 11 | part[4] << 5 | part[5] / 2) << 16;
}

std::string hexText(u32 number) {
  std::array<char, 12> text = {};
  std::snprintf(text.data(), text.size(), "0x%08X", number);
  return text.data();
}

// A number that a camera means: what else lies in such an item are whole numbers, whose bits make
// reals next to nothing.
std::optional<std::string> realText(u32 bits) {
  const float number = std::bit_cast<float>(bits);
  if (number != 0 && !std::isnormal(number)) return std::nullopt;
  std::array<char, 40> text = {};
  std::snprintf(text.data(), text.size(), "%.9g", static_cast<double>(number));
  return text.data();
}

std::optional<std::string> readable(const Property& item) {
  const u32 number = heapValueOf(item).number;
  switch (item.valueKind) {
    case host::kindDateTime:
      return valueText(item, false);
    case host::kindNumber32Alt:
      return realText(number);
    case host::kindNumber16:
      return std::to_string(static_cast<std::int16_t>(number));
    case host::kindNumber32:
      if (number > std::numeric_limits<host::i32>::max()) {
        return std::to_string(static_cast<host::i32>(number));
      }
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

const char* kindName(u16 kind) {
  if (kind == host::kindText) return "text";
  if (kind == host::kindDateTime) return "date";
  return kind == host::kindNumber32Alt ? "real" : "number";
}

std::string rawText(const Property& item) {
  const HeapValue value = heapValueOf(item);
  if (item.valueKind == host::kindText) return value.text;
  const bool inBits =
      item.valueKind == host::kindNumber32Alt || item.valueKind == host::kindDateTime;
  return inBits ? hexText(value.number) : std::to_string(value.number);
}

}  // namespace

bool isHeapItem(u16 fieldId) { return fieldId >= firstItem && fieldId <= lastItem; }

std::vector<Property> heapItems(const Session& session, const FileData& fileData) {
  std::vector<Property> items = readProperties(session, fileData);
  std::erase_if(items, [](const Property& property) { return !isHeapItem(property.id); });
  return items;
}

HeapValue heapValueOf(const Property& item) {
  HeapValue value;
  if (item.valueKind == host::kindText) {
    value.text.assign(item.value.begin(), std::find(item.value.begin(), item.value.end(), 0));
    return value;
  }
  for (std::size_t at = item.value.size(); at-- > 0;) {
    value.number = value.number << 8 | item.value[at];
  }
  return value;
}

HeapValue parseHeapValue(const Property& item, const std::string& text) {
  switch (item.valueKind) {
    case host::kindText:
      return {0, text};
    case host::kindNumber32Alt:
      return {parseReal(item, text), ""};
    case host::kindDateTime:
      return {parseDate(item, text), ""};
    default:
      return {parseNumber(item, text), ""};
  }
}

u32 secondsOf(const HeapValue& date) {
  using namespace std::chrono;
  const u32 packed = date.number;
  const u32 clock = packed >> 16;
  const sys_days days =
      year(1980 + static_cast<int>(packed >> 9 & 127)) / month(packed >> 5 & 15) / day(packed & 31);
  const auto seconds = duration_cast<std::chrono::seconds>(days.time_since_epoch()).count();
  return static_cast<u32>(seconds) + (clock >> 11) * 3600 + (clock >> 5 & 63) * 60 +
         (clock & 31) * 2;
}

std::string heapItemText(const Property& item) {
  const std::optional<std::string> words = readable(item);
  return rawText(item) + (words ? "   (" + *words + ")" : "");
}

Json heapItemInJson(const Property& item) {
  const HeapValue value = heapValueOf(item);
  const std::optional<std::string> words = readable(item);
  return {{"name", item.name},
          {"id", item.id},
          {"kind", kindName(item.valueKind)},
          {"value", item.valueKind == host::kindText ? Json(value.text) : Json(value.number)},
          {"readable", words ? Json(*words) : Json(nullptr)}};
}

}  // namespace fiohost

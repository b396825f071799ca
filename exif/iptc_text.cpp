#include "exif/iptc_text.h"

#include <cctype>
#include <cstdio>
#include <cstring>

#include "exif/number_scan.h"
#include "exif/tag_tables.h"
#include "property/field_block.h"

namespace exif {
namespace {

using host::i32;
using host::PropertyField;
using host::u32;
using host::u64;
using host::u8;
using Bytes = std::span<const u8>;

constexpr host::u16 recordVersion = 0;  // dataset

bool isRecordVersion(const PropertyField& field) noexcept {
  const TagTable table = iptcTable();
  for (std::size_t row = 0; row < table.size(); ++row) {
    if (table[row].tag == recordVersion) return field.fieldId == host::fieldIptcFirst + row;
  }
  return false;
}

bool isBlank(const char* text) noexcept {
  while (std::isspace(static_cast<unsigned char>(*text)) != 0) ++text;
  return *text == '\0';
}

// A version number is kept as a zero byte and one byte per hexadecimal digit: the program's own
// form, which is not the 16-bit number of IIM.
void setRecordVersion(PropertyField& field, const char* text) noexcept {
  if (isBlank(text)) return;
  constexpr std::size_t mostDigits = 8;
  u8 bytes[1 + mostDigits] = {};
  const auto number = static_cast<u32>(NumberScan(text).decimal().value_or(0));
  std::size_t digits = 0;
  while (digits < mostDigits && (number >> (4 * digits)) != 0) ++digits;
  for (std::size_t digit = 0; digit < digits; ++digit) {
    bytes[1 + digit] = static_cast<u8>(number >> (4 * (digits - 1 - digit)) & 0xF);
  }
  property::giveBlock(field, {Bytes(bytes).first(1 + digits)});
}

void setText(PropertyField& field, const char* text) noexcept {
  const bool isVersion = isRecordVersion(field);
  const bool isText = field.valueKind == host::kindText;
  property::dropBlock(field);
  if (isVersion) {
    setRecordVersion(field, text);
  } else if (isText) {
    property::giveBlock(field, {{reinterpret_cast<const u8*>(text), std::strlen(text) + 1}});
  }
}

void printRecordVersion(const PropertyField& field, char* buffer) noexcept {
  u32 version = 0;
  for (const u8 digit : property::blockOf(field)) version = version * 16 + digit;
  std::snprintf(buffer, iptcNumberText, "%d.0", static_cast<i32>(version));
}

void getText(const PropertyField& field, char** text) noexcept {
  if (isRecordVersion(field)) return printRecordVersion(field, *text);
  if (property::ownsBlock(field) && field.valueKind == host::kindText) {
    *text = reinterpret_cast<char*>(field.data);
  } else {
    **text = '\0';
  }
}

}  // namespace

int convertFieldText(std::span<PropertyField> fields, std::size_t index, TextDirection direction,
                     char** text) noexcept {
  if (index >= fields.size() || text == nullptr || *text == nullptr) return 0;
  if (direction == TextDirection::textToField) {
    setText(fields[index], *text);
  } else {
    getText(fields[index], text);
  }
  return 1;
}

}  // namespace exif

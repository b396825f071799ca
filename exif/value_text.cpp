#include "exif/value_text.h"

#include <array>

#include "exif/directory_entry.h"
#include "exif/number_scan.h"
#include "platform/byte_reader.h"
#include "property/field_block.h"

namespace exif {
namespace {

using host::i32;
using host::PropertyField;
using host::u32;
using host::u8;
using platform::ByteReader;
using Bytes = std::span<const u8>;

constexpr std::string_view ellipsis = "...";

std::string_view charactersOf(Bytes bytes) noexcept {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Pieces up to the limit. A separator belongs to the piece in front of it.
class Pieces {
 public:
  explicit Pieces(DisplayText& text) noexcept : text_(text) {}

  // False once the text has ended.
  bool add(const char* format, i32 number, const char* separator) noexcept {
    DisplayText piece;
    piece.print(format, number);
    piece.append(separator);
    const bool fits = text_.size() + piece.size() < rawTextLimit;
    text_.append(fits ? piece.view() : ellipsis);
    return fits;
  }

 private:
  DisplayText& text_;
};

const char* separatorIf(bool wanted) noexcept { return wanted ? "; " : ""; }

int printBytes(Bytes bytes, DisplayText& text) noexcept {
  Pieces pieces(text);
  for (const u8 byte : bytes) {
    if (!pieces.add("%02x", byte, " ")) break;
  }
  return 1;
}

int printCharacters(Bytes bytes, DisplayText& text) noexcept {
  if (bytes.size() <= DisplayText::capacity) {
    text.append(charactersOf(bytes));
    return 1;
  }
  text.append(charactersOf(bytes.first(rawTextLimit)));
  if (text.size() == rawTextLimit) text.append(ellipsis);
  return 1;
}

int printShorts(const ByteReader& values, bool isSigned, DisplayText& text) noexcept {
  Pieces pieces(text);
  const host::u64 count = values.size() / 2;
  for (host::u64 index = 0; index < count; ++index) {
    const host::u16 value = *values.u16(index * 2);
    const i32 shown = isSigned ? static_cast<std::int16_t>(value) : i32{value};
    if (!pieces.add("%d", shown, separatorIf(index + 1 < count))) break;
  }
  return 1;
}

// Kept: four values are taken in one step, and the first of them alone is told.
int printLongs(const ByteReader& values, DisplayText& text) noexcept {
  constexpr host::u64 step = 4;
  Pieces pieces(text);
  const host::u64 count = values.size() / 4;
  for (host::u64 index = 0; index < count; index += step) {
    const auto value = static_cast<i32>(*values.u32(index * 4));
    if (!pieces.add("%d", value, separatorIf(index + 1 < count))) break;
  }
  return 1;
}

int printFractions(const ByteReader& values, DisplayText& text) noexcept {
  Pieces pieces(text);
  const host::u64 count = values.size() / 8;
  for (host::u64 index = 0; index < count; ++index) {
    const auto numerator = static_cast<i32>(*values.u32(index * 8));
    const auto denominator = static_cast<i32>(*values.u32(index * 8 + 4));
    if (!pieces.add("%d", numerator, "/")) break;
    if (!pieces.add("%d", denominator, separatorIf(index + 1 < count))) break;
  }
  return 1;
}

int printBlock(const PropertyField& field, DisplayText& text) noexcept {
  if (!property::ownsBlock(field)) return 0;
  const Bytes payload = property::payloadOf(field);
  const ByteReader values(payload, platform::ByteOrder::little);
  switch (field.sourceGroup) {
    case typeByte:
    case typeSByte:
    case typeUndefined:
      return printBytes(payload, text);
    case typeAscii:
      return printCharacters(payload, text);
    case typeShort:
    case typeSShort:
      return printShorts(values, field.sourceGroup == typeSShort, text);
    case typeLong:
    case typeSLong:
      return printLongs(values, text);
    case typeRational:
    case typeSRational:
      return printFractions(values, text);
    default:
      return 0;
  }
}

int printNumber(const PropertyField& field, DisplayText& text) noexcept {
  const auto value = static_cast<u32>(field.data);
  switch (field.sourceGroup) {
    case typeByte:
      text.print("%d", i32{static_cast<u8>(value)});
      return 1;
    case typeSByte:
      text.print("%d", i32{static_cast<std::int8_t>(value)});
      return 1;
    case typeShort:
      text.print("%d", i32{static_cast<host::u16>(value)});
      return 1;
    case typeSShort:
      text.print("%d", i32{static_cast<std::int16_t>(value)});
      return 1;
    case typeLong:
    case typeSLong:
      text.print("%d", static_cast<i32>(value));
      return 1;
    default:
      return 0;
  }
}

// A text without data leaves the caller's text as it was.
int copyText(const PropertyField& field, DisplayText& text) noexcept {
  if (field.data == 0) return 1;
  text.clear();
  text.append(charactersOf(property::blockOf(field)));
  return 1;
}

Bytes bytesOf(std::string_view text) noexcept {
  return {reinterpret_cast<const u8*>(text.data()), text.size()};
}

void storeText(PropertyField& field, std::string_view text) noexcept {
  constexpr u8 terminator[] = {0};
  constexpr std::size_t spareZeros = 2;
  if (field.data == 0) return;
  property::dropBlock(field);
  property::giveBlock(field, {bytesOf(text), terminator}, spareZeros);
}

void storeBlock(PropertyField& field, std::string_view text) noexcept {
  const auto length = static_cast<u32>(text.size());
  std::array<u8, sizeof length> prefix = {};
  std::memcpy(prefix.data(), &length, sizeof length);
  property::dropBlock(field);
  property::giveBlock(field, {prefix, bytesOf(text)});
}

}  // namespace

bool hasShownKind(const PropertyField& field) noexcept {
  return field.valueKind == host::kindText || field.valueKind == host::kindNumber32 ||
         field.valueKind == host::kindNumber16 || field.valueKind == host::kindBlock;
}

int fieldToText(const PropertyField& field, DisplayText& text) noexcept {
  if (field.valueKind == host::kindText) return copyText(field, text);
  text.clear();
  switch (field.valueKind) {
    case host::kindNumber32:
    case host::kindNumber16:
      return printNumber(field, text);
    case host::kindBlock:
      return printBlock(field, text);
    default:
      return 1;
  }
}

int textToField(PropertyField& field, const DisplayText& text) noexcept {
  switch (field.valueKind) {
    case host::kindText:
      storeText(field, text.view());
      break;
    case host::kindNumber32:
    case host::kindNumber16:
      field.data = static_cast<u32>(NumberScan(text.c_str()).decimal().value_or(0));
      field.dataSize = 0;
      break;
    case host::kindBlock:
      storeBlock(field, text.view());
      break;
    default:
      field.dataSize = 0;
  }
  return 1;
}

}  // namespace exif

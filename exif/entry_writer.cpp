#include "exif/entry_writer.h"

#include <algorithm>

#include "property/property_record.h"

namespace exif {
namespace {

using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;
using platform::ByteReader;
using Bytes = std::span<const u8>;

constexpr u64 inlineBytes = 4;
constexpr u64 prefixSize = 4;

std::size_t within(std::span<u8> tiff, u64 directorySize) noexcept {
  return static_cast<std::size_t>(std::min<u64>(directorySize, tiff.size()));
}

// The value's bytes behind the length prefix, which counts no more than the block holds.
Bytes blockValue(const PropertyField& field) noexcept {
  const Bytes block = property::dataBlockOf(field);
  const u64 length = ByteReader(block, ByteOrder::little).u32(0).value_or(0);
  if (block.empty()) return {};
  const Bytes value = block.subspan(prefixSize);
  return value.first(static_cast<std::size_t>(std::min<u64>(length, value.size())));
}

// The bytes of a text or a block.
Bytes bytesOf(const PropertyField& field) noexcept {
  return field.valueKind == host::kindBlock ? blockValue(field) : Bytes(property::blockOf(field));
}

bool holdsNumber(const PropertyField& field) noexcept {
  return field.valueKind != host::kindText && field.valueKind != host::kindBlock;
}

u32 numberOf(const PropertyField& field) noexcept {
  const bool is16Bits =
      field.valueKind == host::kindNumber16 || field.valueKind == host::kindNumber16Unsigned;
  return static_cast<u32>(is16Bits ? field.data & 0xFFFF : field.data);
}

u32 wordOf(Bytes value) noexcept {
  u32 word = 0;
  for (std::size_t index = 0; index < value.size(); ++index) word |= u32{value[index]} << 8 * index;
  return word;
}

}  // namespace

TiffWriter::TiffWriter(std::span<u8> tiff, u64 directorySize) noexcept
    : directories(tiff.first(within(tiff, directorySize)), ByteOrder::little),
      values(tiff.subspan(within(tiff, directorySize)), ByteOrder::little),
      valuesAt_(directorySize) {}

void TiffWriter::entry(u16 tag, TiffType type, u32 count, u32 valueOrOffset) noexcept {
  directories.u16(tag);
  directories.u16(type);
  directories.u32(count);
  directories.u32(valueOrOffset);
}

platform::ByteWriter::Slot TiffWriter::pointerEntry(u16 tag) noexcept {
  directories.u16(tag);
  directories.u16(typeLong);
  directories.u32(1);
  return directories.slot32();
}

bool writeFieldEntry(TiffWriter& out, u16 tag, u16 type, const PropertyField& field) noexcept {
  const u16 used = isKnownType(type) ? type : field.sourceGroup;
  if (!isKnownType(used)) return false;
  const Bytes value = bytesOf(field);
  const u64 size = holdsNumber(field) ? field.dataSize : value.size();
  const u32 count = std::max(static_cast<u32>(size / elementSize(used)), u32{1});
  const auto tiffType = static_cast<TiffType>(used);
  if (holdsNumber(field)) {
    out.entry(tag, tiffType, count, numberOf(field));
  } else if (value.size() <= inlineBytes) {
    out.entry(tag, tiffType, count, wordOf(value));
  } else {
    out.entry(tag, tiffType, count, out.valueOffset());
    out.values.bytes(value);
  }
  return true;
}

u64 valueBytesOf(const PropertyField& field) noexcept {
  const u64 prefix = field.valueKind == host::kindBlock ? prefixSize : 0;
  return field.dataSize > inlineBytes + prefix ? field.dataSize - prefix : 0;
}

}  // namespace exif

#include "exif/directory_entry.h"

namespace exif {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u64;
using platform::ByteOrder;
using platform::ByteReader;

constexpr u32 elementSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
constexpr u64 valueOffset = 8;

bool isByteType(u16 type) noexcept {
  return type == typeByte || type == typeAscii || type == typeSByte || type == typeUndefined;
}

bool isShortType(u16 type) noexcept { return type == typeShort || type == typeSShort; }

u32 readValueWord(const ByteReader& entry, u16 type, i32 count) noexcept {
  if (isByteType(type) && count < 5) return *entry.as(ByteOrder::little).u32(valueOffset);
  if (entry.order() == ByteOrder::big && isShortType(type) && count < 3) {
    return u32{*entry.u16(valueOffset)} | u32{*entry.u16(valueOffset + 2)} << 16;
  }
  return *entry.u32(valueOffset);
}

}  // namespace

u32 elementSize(u16 type) noexcept {
  return type < std::size(elementSizes) ? elementSizes[type] : 0;
}

u16 readEntryCount(const ByteReader& tiff, u64 offset) noexcept {
  return tiff.u16(offset).value_or(0);
}

std::optional<DirectoryEntry> readEntry(const ByteReader& tiff, u64 offset) noexcept {
  const std::optional<ByteReader> entry = tiff.sub(offset, entrySize);
  if (!entry) return std::nullopt;
  const u16 type = *entry->u16(2);
  const auto count = static_cast<i32>(*entry->u32(4));
  return DirectoryEntry{*entry->u16(0), type, count, readValueWord(*entry, type, count)};
}

}  // namespace exif

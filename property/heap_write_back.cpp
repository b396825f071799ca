#include "property/heap_write_back.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <optional>

#include "property/heap_date.h"
#include "property/heap_edit.h"
#include "property/heap_errors.h"
#include "property/heap_parser.h"
#include "property/heap_serialiser.h"
#include "property/property_record.h"

namespace property {
namespace {

using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr u32 prefixSize = 4;
constexpr u64 mostSegmentPayload = 65533;  // T.81, B.1.1.4: the length word counts itself

std::string_view textOf(const PropertyField& field) noexcept {
  const auto* text = reinterpret_cast<const char*>(field.data);
  const SIZE_T real = GlobalSize(reinterpret_cast<HGLOBAL>(field.data));
  const char* end = std::find(text, text + (real != 0 ? real : field.dataSize), '\0');
  return {text, static_cast<std::size_t>(end - text)};
}

// The month index is taken with a mask of 14 and without subtracting 1: kept, the host relies on
// it.
std::tm unpackDateTime(u16 date, u16 time) noexcept {
  std::tm unpacked = {};
  unpacked.tm_sec = (time & 31) * 2;
  unpacked.tm_min = time >> 5 & 63;
  unpacked.tm_hour = time >> 11;
  unpacked.tm_mday = date & 31;
  unpacked.tm_mon = date >> 5 & 14;
  unpacked.tm_year = (date >> 9) + 80;
  unpacked.tm_isdst = -1;
  return unpacked;
}

// None when no local time has that date.
std::optional<HeapDateText> dateTextOf(HMODULE resources, u64 packed) noexcept {
  std::tm stored = unpackDateTime(static_cast<u16>(packed), static_cast<u16>(packed >> 16));
  const __time32_t seconds = _mktime32(&stored);
  const std::tm* time = seconds != -1 ? _localtime32(&seconds) : nullptr;
  if (time == nullptr) return std::nullopt;
  return printHeapDate(resources, *time);
}

// How a field of that kind is written; none for kinds that no item has.
std::optional<HeapFormat> writtenFormatOf(u16 kind) noexcept {
  switch (kind) {
    case host::kindText:
      return HeapFormat::packedText;
    case host::kindNumber32:
      return HeapFormat::signed32;
    case host::kindNumber32Alt:
      return HeapFormat::real32;
    case host::kindNumber32Other:
      return HeapFormat::unsigned32;
    case host::kindNumber16:
      return HeapFormat::signed16;
    case host::kindNumber16Unsigned:
      return HeapFormat::unsigned16;
    case host::kindDateTime:
      return HeapFormat::date;
    default:
      return std::nullopt;
  }
}

bool takeField(ParsedHeap& heap, const PropertyField& field) noexcept {
  const auto item = heapItemOfField(field.fieldId);
  const auto format = writtenFormatOf(field.valueKind);
  if (!item || !format) return true;
  if (*format == HeapFormat::packedText) {
    return field.data == 0 || editHeapItem(heap, *item, {.format = *format, .text = textOf(field)});
  }
  if (*format != HeapFormat::date) {
    return editHeapItem(heap, *item, {.format = *format, .number = static_cast<u32>(field.data)});
  }
  const auto date = dateTextOf(heap.resources(), field.data);
  return date && editHeapItem(heap, *item, {.format = *format, .text = date->characters});
}

bool takeFields(ParsedHeap& heap, std::span<const PropertyField> fields) noexcept {
  for (const PropertyField& field : fields) {
    if (!takeField(heap, field)) return false;
  }
  return true;
}

// A whole segment keeps its head (marker and big-endian length); any other block begins with
// the heap's length.
void writePrefix(const PropertyField& field, u64 length, u8* prefix) noexcept {
  if (field.sourceGroup != host::groupRawSegment) {
    const auto number = static_cast<u32>(length);
    std::memcpy(prefix, &number, sizeof number);
    return;
  }
  const u64 segmentLength = length + 2;
  prefix[0] = 0xFF;
  prefix[1] = 0xE0;
  prefix[2] = static_cast<u8>(segmentLength >> 8);
  prefix[3] = static_cast<u8>(segmentLength);
}

bool storeHeap(const ParsedHeap& heap, PropertyField& field) noexcept {
  const u64 length = serialisedHeapLength(heap);
  if (field.sourceGroup == host::groupRawSegment && length > mostSegmentPayload) return false;
  const auto size = static_cast<std::size_t>(length + prefixSize);
  platform::OwnedGlobal block(platform::fixedZeroed, size);
  if (!block) {
    reportHeapMemory(HeapMemory::writtenHeap);
    return false;
  }
  auto* bytes = static_cast<u8*>(block.get());
  writePrefix(field, length, bytes);
  serialiseHeap(heap, {bytes + prefixSize, static_cast<std::size_t>(length)});
  if (size > dataBlockOf(field).size()) {
    const platform::OwnedGlobal old(reinterpret_cast<HGLOBAL>(field.data));
    field.data = reinterpret_cast<u64>(block.release());
  } else {
    std::memcpy(reinterpret_cast<u8*>(field.data), bytes, size);
  }
  field.dataSize = static_cast<u32>(size);
  return true;
}

}  // namespace

bool writeHeapBack(HMODULE resources, HGLOBAL property) noexcept {
  if (property == nullptr) return true;
  const PropertyRecord record(property);
  if (record.header() == nullptr) return false;
  const std::span<PropertyField> fields = record.fields();
  const auto heapField = std::find_if(fields.begin(), fields.end(), [](const PropertyField& field) {
    return field.fieldId == host::fieldHeap;
  });
  if (heapField == fields.end()) return true;
  const std::span<const u8> block = dataBlockOf(*heapField);
  if (block.empty()) return false;
  auto heap = parseHeap(resources, block.subspan(prefixSize));
  if (!heap || !takeFields(*heap, fields)) return false;
  return !heap->modified() || storeHeap(*heap, *heapField);
}

}  // namespace property

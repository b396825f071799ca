#include "property/heap_expansion.h"

#include <algorithm>
#include <cstring>

#include "host/kfioutil.h"
#include "property/heap_errors.h"
#include "property/heap_item_value.h"
#include "property/heap_parser.h"
#include "property/property_record.h"

namespace property {
namespace {

using host::i32;
using host::PropertyField;
using host::PropertyHeader;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr u32 prefixSize = 4;
constexpr std::size_t textTail = 2;  // NULs behind a text
constexpr u16 heapFieldName = 2800;

// Items that the host groups with fields of other origin.
constexpr u16 descriptionString = 2839;
constexpr u16 ownerString = 2870;
constexpr u16 descriptionGroup = 102;
constexpr u16 ownerGroup = 100;

u16 sourceGroupOf(u16 itemString) noexcept {
  if (itemString == descriptionString) return descriptionGroup;
  return itemString == ownerString ? ownerGroup : u16{0};
}

// MS-DOS date and time. Years count from 1980 in 7 bits, which is what adding 48 to a count from
// 1900 leaves.
u16 packDate(const std::tm& time) noexcept {
  return static_cast<u16>(((time.tm_mon + 1) << 5 & 0x1E0) | (time.tm_year + 48) << 9 |
                          time.tm_mday);
}

u16 packTime(const std::tm& time) noexcept {
  return static_cast<u16>(time.tm_hour << 11 | time.tm_min << 5 | time.tm_sec / 2);
}

HGLOBAL handleIn(HGLOBAL* slot) noexcept {
  HGLOBAL handle = nullptr;
  std::memcpy(&handle, slot, sizeof handle);  // the slot lies unaligned in a packed record
  return handle;
}

u32 countFields(const ParsedHeap& heap) noexcept {
  u32 count = 1;
  for (const HeapRecord& record : heap.records()) count += expandableItems(record.row, record.tag);
  return count;
}

// Grows the block behind the slot to hold that many fields and one more.
bool growRecord(HGLOBAL* slot, std::size_t fields) noexcept {
  const std::size_t size = sizeof(PropertyHeader) + (fields + 1) * sizeof(PropertyField);
  const HGLOBAL handle = handleIn(slot);
  const HGLOBAL grown = handle != nullptr ? GlobalReAlloc(handle, size, platform::movableZeroed)
                                          : GlobalAlloc(platform::movableZeroed, size);
  if (grown == nullptr) return false;
  std::memcpy(slot, &grown, sizeof grown);
  return true;
}

// Which kind of field an item becomes; none for what is not shown.
std::optional<host::ValueKind> fieldKindOf(HeapFormat format) noexcept {
  switch (format) {
    case HeapFormat::signed16:
      return host::kindNumber16;
    case HeapFormat::unsigned16:
      return host::kindNumber16Unsigned;
    case HeapFormat::signed32:
    case HeapFormat::unsigned32:
      return host::kindNumber32;
    case HeapFormat::real32:
      return host::kindNumber32Alt;
    case HeapFormat::text:
    case HeapFormat::packedText:
      return host::kindText;
    case HeapFormat::date:
      return host::kindDateTime;
    default:
      return std::nullopt;
  }
}

std::optional<u32> packedTime(HeapValue value, u32 number) noexcept {
  const auto time = heapTime(value, number);
  if (!time) return std::nullopt;
  return u32{packTime(*time)} << 16 | packDate(*time);
}

std::optional<u32> numberOf(HeapValue value, u32 number, host::ValueKind kind) noexcept {
  if (kind == host::kindDateTime) return packedTime(value, number);
  if (kind == host::kindNumber16 || kind == host::kindNumber16Unsigned) {
    return heapElement16(value, number);
  }
  return heapElement32(value, number);
}

// Writes the fields of a heap behind those of a record that has room for them.
class HeapFields {
 public:
  HeapFields(const ParsedHeap& heap, HGLOBAL record, std::size_t existing) noexcept
      : heap_(heap), lock_(record) {
    if (lock_) header()->fieldCount = static_cast<i32>(existing);
  }

  explicit operator bool() const noexcept { return static_cast<bool>(lock_); }
  bool addHeap(std::span<const u8> payload) noexcept;
  bool addItems() noexcept;
  void finish() noexcept {
    header()->recordSize = static_cast<u32>(
        sizeof(PropertyHeader) + static_cast<u64>(header()->fieldCount) * sizeof(PropertyField));
  }

 private:
  [[nodiscard]] PropertyHeader* header() const noexcept {
    return static_cast<PropertyHeader*>(lock_.address());
  }
  // An item that the value does not hold whole makes no field.
  bool addItem(HeapValue value, const HeapItem& item) noexcept;
  bool addText(const HeapItem& item, std::string_view text) noexcept;
  [[nodiscard]] PropertyField describe(u16 fieldId, u16 name, host::ValueKind kind) const noexcept;
  [[nodiscard]] PropertyField describe(const HeapItem& item, host::ValueKind kind) const noexcept;
  void append(const PropertyField& field) noexcept;

  const ParsedHeap& heap_;
  platform::LockedGlobal lock_;
};

PropertyField HeapFields::describe(u16 fieldId, u16 name, host::ValueKind kind) const noexcept {
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = kind;
  field.fieldId = fieldId;
  char text[sizeof field.name + 1] = {};
  LoadStringA(heap_.resources(), name, text, sizeof text);
  std::memcpy(field.name, text, sizeof field.name);
  return field;
}

PropertyField HeapFields::describe(const HeapItem& item, host::ValueKind kind) const noexcept {
  PropertyField field = describe(item.fieldId(), item.nameString(), kind);
  field.sourceGroup = sourceGroupOf(item.string());
  return field;
}

void HeapFields::append(const PropertyField& field) noexcept {
  PropertyHeader* head = header();
  auto* first = reinterpret_cast<PropertyField*>(head + 1);
  first[head->fieldCount] = field;
  ++head->fieldCount;
}

bool HeapFields::addHeap(std::span<const u8> payload) noexcept {
  platform::OwnedGlobal block(platform::fixedZeroed, payload.size() + prefixSize);
  if (!block) {
    reportHeapMemory(HeapMemory::heapField);
    return false;
  }
  const auto length = static_cast<u32>(payload.size());
  auto* bytes = static_cast<u8*>(block.get());
  std::memcpy(bytes, &length, sizeof length);
  std::memcpy(bytes + prefixSize, payload.data(), payload.size());
  PropertyField field = describe(host::fieldHeap, heapFieldName, host::kindBlock);
  field.dataSize = length + prefixSize;
  field.data = reinterpret_cast<u64>(block.release());
  append(field);
  return true;
}

bool HeapFields::addItems() noexcept {
  for (i32 index = 0; index < static_cast<i32>(heap_.records().size()); ++index) {
    const HeapRecord& record = heap_.record(index);
    const u32 count = expandableItems(record.row, record.tag);
    for (u32 item = 0; item < count; ++item) {
      if (!addItem(heap_.value(index), {record.row, item})) return false;
    }
  }
  return true;
}

bool HeapFields::addItem(HeapValue value, const HeapItem& item) noexcept {
  const auto kind = fieldKindOf(item.format());
  if (!kind) return true;
  if (*kind == host::kindText) {
    const auto text = heapText(value, item.format(), item.item);
    return !text || addText(item, *text);
  }
  if (const auto number = numberOf(value, item.item, *kind)) {
    PropertyField field = describe(item, *kind);
    field.data = *number;
    append(field);
  }
  return true;
}

bool HeapFields::addText(const HeapItem& item, std::string_view text) noexcept {
  platform::OwnedGlobal block(platform::fixedZeroed, text.size() + textTail);
  if (!block) {
    reportHeapMemory(HeapMemory::textField);
    return false;
  }
  std::copy(text.begin(), text.end(), static_cast<char*>(block.get()));
  PropertyField field = describe(item, host::kindText);
  field.dataSize = static_cast<u32>(text.size());
  field.data = reinterpret_cast<u64>(block.release());
  append(field);
  return true;
}

bool reserveFields(HGLOBAL* slot, u32 needed) noexcept {
  if (Prop_ReAllocFieldSpace(slot, static_cast<int>(needed)) != 0) return true;
  reportHeapMemory(HeapMemory::fieldRoom);
  return false;
}

bool addFields(const ParsedHeap& heap, std::span<const u8> payload, HGLOBAL* slot) noexcept {
  const u32 needed = countFields(heap);
  if (!reserveFields(slot, needed)) return false;
  const std::size_t existing = PropertyRecord(handleIn(slot)).fields().size();
  if (!growRecord(slot, existing + needed)) {
    reportHeapMemory(HeapMemory::propertyRecord);
    return false;
  }
  HeapFields fields(heap, handleIn(slot), existing);
  if (!fields || !fields.addHeap(payload) || !fields.addItems()) return false;
  fields.finish();
  return true;
}

}  // namespace

int expandHeap(HMODULE resources, std::span<const u8> payload, u16 length, HGLOBAL* slot) noexcept {
  if (payload.size() < length) return 0;
  const std::span<const u8> bytes = payload.first(length);
  const auto heap = parseHeap(resources, bytes);
  if (!heap) return 0;
  const HGLOBAL before = handleIn(slot);
  const std::size_t fieldsBefore = PropertyRecord(before).fields().size();
  if (addFields(*heap, bytes, slot)) return 1;
  dropFieldsFrom(slot, static_cast<i32>(fieldsBefore), before == nullptr);
  return 0;
}

}  // namespace property

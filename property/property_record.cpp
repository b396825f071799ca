#include "property/property_record.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "host/kfioutil.h"

namespace property {
namespace {

using host::PropertyField;
using host::PropertyHeader;
using host::u16;
using host::u32;
using host::u8;

constexpr u32 prefixSize = 4;

std::uint32_t countBetween(Fields fields, u16 first, u16 last) noexcept {
  const auto inRange = [=](const PropertyField& field) {
    return field.fieldId >= first && field.fieldId <= last;
  };
  return static_cast<std::uint32_t>(std::count_if(fields.begin(), fields.end(), inRange));
}

void copyPieces(u8* target, std::uint64_t room,
                std::initializer_list<std::span<const u8>> pieces) noexcept {
  for (const std::span<const u8> piece : pieces) {
    const std::size_t length =
        static_cast<std::size_t>(std::min<std::uint64_t>(room, piece.size()));
    if (length != 0) std::memcpy(target, piece.data(), length);
    target += length;
    room -= length;
  }
}

PropertyField describeField(const BlockField& field, HGLOBAL block) noexcept {
  PropertyField descriptor = {};
  descriptor.descriptorSize = sizeof descriptor;
  descriptor.valueKind = host::kindBlock;
  descriptor.fieldId = field.fieldId;
  descriptor.sourceGroup = field.sourceGroup;
  descriptor.dataSize = static_cast<u32>(field.dataSize);
  descriptor.data = reinterpret_cast<host::u64>(block);
  const std::size_t nameLength = std::min(field.name.size(), sizeof descriptor.name);
  if (nameLength != 0) std::memcpy(descriptor.name, field.name.data(), nameLength);
  return descriptor;
}

}  // namespace

HGLOBAL* propertySlot(host::FileDataRecord& record) noexcept {
  return reinterpret_cast<HGLOBAL*>(reinterpret_cast<u8*>(&record) +
                                    offsetof(host::FileDataRecord, propertyRecord));
}

HGLOBAL propertyRecordOf(const host::FileDataRecord& record) noexcept {
  return reinterpret_cast<HGLOBAL>(record.propertyRecord);
}

std::span<PropertyField> PropertyRecord::fields() const noexcept {
  const PropertyHeader* head = header();
  if (head == nullptr || head->fieldCount < 1) return {};
  const std::size_t room = (lock_.size() - sizeof *head) / sizeof(PropertyField);
  auto* first = reinterpret_cast<PropertyField*>(static_cast<u8*>(lock_.address()) + sizeof *head);
  return {first, std::min(room, static_cast<std::size_t>(head->fieldCount))};
}

std::span<u8> dataBlockOf(const PropertyField& field) noexcept {
  if (field.valueKind != host::kindBlock) return {};
  const std::span<u8> block = blockOf(field);
  return block.size() >= prefixSize ? block : std::span<u8>{};
}

int findField(HGLOBAL record, u16 fieldId, u8** value, u32* size) noexcept {
  const PropertyRecord locked(record);
  for (const PropertyField& field : locked.fields()) {
    if (field.fieldId != fieldId) continue;
    const std::span<u8> block = dataBlockOf(field);
    if (value != nullptr) *value = block.empty() ? nullptr : block.data() + prefixSize;
    if (size != nullptr) *size = block.empty() ? 0 : static_cast<u32>(block.size()) - prefixSize;
    return 1;
  }
  return 0;
}

std::uint32_t countExifFields(Fields fields) noexcept {
  return countBetween(fields, host::fieldExifFirst, host::fieldExifLast);
}

std::uint32_t countGpsFields(Fields fields) noexcept {
  return countBetween(fields, host::fieldGpsFirst, host::fieldGpsLast);
}

std::uint32_t countIptcFields(Fields fields) noexcept {
  return countBetween(fields, host::fieldIptcFirst, host::fieldIptcLast);
}

void addBlockField(HGLOBAL* slot, const BlockField& field,
                   std::initializer_list<std::span<const u8>> pieces) noexcept {
  if (field.dataSize > std::numeric_limits<u32>::max()) return;
  if (Prop_ReAllocFieldSpace(slot, 1) == 0) return;
  platform::OwnedGlobal block(platform::fixedZeroed, static_cast<std::size_t>(field.blockSize));
  if (!block) return;
  copyPieces(static_cast<u8*>(block.get()), field.blockSize, pieces);
  const PropertyField descriptor = describeField(field, block.get());
  HGLOBAL record = nullptr;
  std::memcpy(&record, slot, sizeof record);  // the slot lies unaligned in a packed record
  if (Prop_AppendFieldData(record, &descriptor) != 0) static_cast<void>(block.release());
}

void dropFieldsFrom(HGLOBAL* slot, host::i32 keepCount, bool madeRecord) noexcept {
  HGLOBAL handle = nullptr;
  std::memcpy(&handle, slot, sizeof handle);
  if (handle == nullptr) return;
  {
    const PropertyRecord record(handle);
    const std::span<PropertyField> fields = record.fields();
    const auto kept = static_cast<std::size_t>(madeRecord ? 0 : std::max(keepCount, 0));
    for (std::size_t index = kept; index < fields.size(); ++index) {
      if (ownsBlock(fields[index])) GlobalFree(reinterpret_cast<HGLOBAL>(fields[index].data));
      fields[index] = {};
    }
    if (PropertyHeader* head = record.header(); head != nullptr && fields.size() > kept) {
      head->fieldCount = static_cast<host::i32>(kept);
      head->recordSize = static_cast<u32>(sizeof *head + kept * sizeof(PropertyField));
    }
  }
  if (!madeRecord) return;
  GlobalFree(handle);
  handle = nullptr;
  std::memcpy(slot, &handle, sizeof handle);
}

}  // namespace property

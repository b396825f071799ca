// Storage of property records: room for descriptors, appending one, freeing a record.
//
// A record's block is larger than the record: the spare bytes behind it, which the block's size
// tells, keep the cost of appending fields one by one linear.
#include <algorithm>
#include <cstring>
#include <limits>

#include "host/kfioutil.h"
#include "host/property_record.h"
#include "platform/global_memory.h"

namespace kFioUtil {
namespace {

using host::i32;
using host::PropertyField;
using host::PropertyHeader;
using host::u32;
using host::u64;
using platform::LockedGlobal;

constexpr u64 recordBytes(u64 fields) noexcept {
  return sizeof(PropertyHeader) + fields * sizeof(PropertyField);
}

// A record's size is a 32-bit number, which limits the fields that it can describe.
constexpr u64 maxFields =
    (std::numeric_limits<u32>::max() - sizeof(PropertyHeader)) / sizeof(PropertyField);

// A count below 1 means that the record holds no fields.
u64 countFields(const PropertyHeader& header) noexcept {
  return header.fieldCount > 0 ? static_cast<u64>(header.fieldCount) : 0;
}

PropertyField* fieldsOf(PropertyHeader* header) noexcept {
  return reinterpret_cast<PropertyField*>(header + 1);
}

// The scan keeps its state in this field, which is the first of every record.
void startRecord(PropertyHeader* header) noexcept {
  header->recordSize = static_cast<u32>(recordBytes(1));
  header->fieldCount = 1;
  *fieldsOf(header) = PropertyField{};
  fieldsOf(header)->descriptorSize = sizeof(PropertyField);
  fieldsOf(header)->fieldId = host::fieldHeader;
}

int createRecord(HGLOBAL* slot, u64 spareFields) noexcept {
  if (spareFields + 1 > maxFields) return 0;
  platform::OwnedGlobal block(platform::movableZeroed, recordBytes(spareFields + 1));
  LockedGlobal record(block.get());
  auto* header = record.as<PropertyHeader>();
  if (header == nullptr) return 0;
  startRecord(header);
  record.unlock();
  *slot = block.release();
  return 1;
}

// Grows by half when that is more than what is needed now. A locked block may move, as
// GlobalReAlloc lets it.
bool growBlock(HGLOBAL* slot, u64 size, u64 needed) noexcept {
  const u64 generous = std::max(needed, size + size / 2);
  HGLOBAL grown = GlobalReAlloc(*slot, generous, platform::movableZeroed);
  if (grown == nullptr) grown = GlobalReAlloc(*slot, needed, platform::movableZeroed);
  if (grown == nullptr) return false;
  *slot = grown;
  return true;
}

// Readers write their descriptors straight behind the last field, so what a rejected entry left
// there must not shine through.
int clearRoom(HGLOBAL handle, u64 used, u64 needed) noexcept {
  LockedGlobal record(handle);
  if (!record || record.size() < needed) return 0;
  std::memset(static_cast<char*>(record.address()) + used, 0, needed - used);
  return 1;
}

int reserveFields(HGLOBAL* slot, u64 count) noexcept {
  LockedGlobal record(*slot);
  const auto* header = record.as<PropertyHeader>();
  if (header == nullptr) return 0;
  const u64 fields = countFields(*header);
  const u64 size = record.size();
  record.unlock();
  if (fields + count > maxFields) return 0;
  const u64 needed = recordBytes(fields + count);
  if (size < needed && !growBlock(slot, size, needed)) return 0;
  return clearRoom(*slot, recordBytes(fields), needed);
}

int appendField(HGLOBAL handle, const void* descriptor) noexcept {
  LockedGlobal record(handle);
  auto* header = record.as<PropertyHeader>();
  if (header == nullptr) return 0;
  const u64 fields = countFields(*header);
  if (fields >= maxFields || record.size() < recordBytes(fields + 1)) return 0;
  std::memcpy(fieldsOf(header) + fields, descriptor, sizeof(PropertyField));
  header->fieldCount = static_cast<i32>(fields + 1);
  header->recordSize = static_cast<u32>(recordBytes(fields + 1));
  return 1;
}

// Text and byte blocks are fixed blocks, whose address is their handle. Every other kind holds its
// value in the descriptor itself.
void freeDataBlock(const PropertyField& field) noexcept {
  if (field.valueKind != host::kindText && field.valueKind != host::kindBlock) return;
  if (field.data != 0) GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
}

void freeDataBlocks(HGLOBAL handle) noexcept {
  LockedGlobal record(handle);
  auto* header = record.as<PropertyHeader>();
  if (header == nullptr) return;
  const u64 room = (record.size() - sizeof(PropertyHeader)) / sizeof(PropertyField);
  const u64 fields = std::min(countFields(*header), room);
  for (u64 i = 0; i < fields; ++i) freeDataBlock(fieldsOf(header)[i]);
}

}  // namespace
}  // namespace kFioUtil

extern "C" int Prop_ReAllocFieldSpace(HGLOBAL* slot, int count) {
  if (slot == nullptr || count < 0) return 0;
  const auto fields = static_cast<host::u64>(count);
  HGLOBAL record = nullptr;
  std::memcpy(&record, slot, sizeof record);  // the slot may lie unaligned in a packed record
  const int result = record == nullptr ? kFioUtil::createRecord(&record, fields)
                                       : kFioUtil::reserveFields(&record, fields);
  std::memcpy(slot, &record, sizeof record);
  return result;
}

// The room must have been reserved: the handle that is passed cannot change.
extern "C" int Prop_AppendFieldData(HGLOBAL record, const void* descriptor88) {
  return descriptor88 != nullptr ? kFioUtil::appendField(record, descriptor88) : 0;
}

extern "C" void kfioFreeProperty(HGLOBAL record) {
  if (record == nullptr) return;
  kFioUtil::freeDataBlocks(record);
  GlobalFree(record);
}

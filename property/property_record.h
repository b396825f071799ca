// Access to the property record: view, find, count and add fields.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

#include "host/file_data.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "property/field_block.h"

namespace property {

// The place in a file-data record where the property record's handle lies. Companions take its
// address because the handle may change while fields are added.
[[nodiscard]] HGLOBAL* propertySlot(host::FileDataRecord& record) noexcept;
[[nodiscard]] HGLOBAL propertyRecordOf(const host::FileDataRecord& record) noexcept;

// A property record, locked while this object lives.
class PropertyRecord {
 public:
  explicit PropertyRecord(HGLOBAL handle) noexcept : lock_(handle) {}

  // The fields that the block really holds, whatever its count says; none for an absent record or a
  // count below 1.
  [[nodiscard]] std::span<host::PropertyField> fields() const noexcept;
  // Ends this object with the record still locked.
  void leaveLocked() noexcept { lock_.abandon(); }
  // Null for an absent record.
  [[nodiscard]] host::PropertyHeader* header() const noexcept {
    return lock_.as<host::PropertyHeader>();
  }

 private:
  platform::LockedGlobal lock_;
};

using Fields = std::span<const host::PropertyField>;

// The data block of a block field; empty when there is none or its size word is below the prefix.
[[nodiscard]] std::span<host::u8> dataBlockOf(const host::PropertyField& field) noexcept;

// Looks the first field with that id up. Its value starts behind the 4-byte prefix.
// Returns 1 and fills the outs (either may be null), or 0 and leaves them alone.
int findField(HGLOBAL record, host::u16 fieldId, host::u8** value, host::u32* size) noexcept;

[[nodiscard]] std::uint32_t countExifFields(Fields fields) noexcept;
[[nodiscard]] std::uint32_t countGpsFields(Fields fields) noexcept;
[[nodiscard]] std::uint32_t countIptcFields(Fields fields) noexcept;

// What a new block field is.
struct BlockField {
  host::u16 fieldId = 0;
  host::u16 sourceGroup = 0;
  std::span<const host::u8> name = {};  // cut to the name's 61 characters
  std::uint64_t dataSize = 0;           // bytes, the prefix included
  std::uint64_t blockSize = 0;          // bytes to allocate, at least dataSize
};

// Adds a field whose zeroed block starts with the pieces, one after the other, as far as the block
// reaches. Nothing is added, and nothing reported, when space or memory cannot be had: the picture
// is worth more than one of its fields.
void addBlockField(HGLOBAL* slot, const BlockField& field,
                   std::initializer_list<std::span<const host::u8>> pieces) noexcept;

// Takes back every field behind the first keepCount, with its data blocks, and the record itself
// when madeRecord says that it did not exist before.
void dropFieldsFrom(HGLOBAL* slot, host::i32 keepCount, bool madeRecord) noexcept;

}  // namespace property

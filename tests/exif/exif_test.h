// What the tests of the readers share: editable tag tables, a property record and its fields.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "exif/tag_tables.h"
#include "platform/byte_reader.h"
#include "tests/plugin/plugin.h"
#include "tests/support/tiff_builder.h"

namespace test {

using support::Bytes;
using support::TiffBuilder;
using support::TiffDirectory;
using FileOrder = support::ByteOrder;

inline constexpr host::u16 unusedTag = 0xFFFE;

// One of the library's tables, emptied while this object lives; the test fills the rows it needs.
class EditedTable {
 public:
  explicit EditedTable(exif::TagTable table)
      : rows_(const_cast<host::TagDefinition*>(table.data())), saved_(table.begin(), table.end()) {
    for (std::size_t row = 0; row < saved_.size(); ++row) {
      rows_[row] = {unusedTag, 0, 0, 0, 0, host::noLabel, {}};
    }
  }
  EditedTable(const EditedTable&) = delete;
  EditedTable& operator=(const EditedTable&) = delete;
  ~EditedTable() { std::copy(saved_.begin(), saved_.end(), rows_); }

  void set(std::size_t row, host::u16 tag, host::u16 kind, host::u16 fieldId,
           host::u32 label = host::noLabel, host::u16 type = 0) {
    rows_[row] = {tag, type, 0, kind, fieldId, label, {}};
  }

 private:
  host::TagDefinition* rows_;
  std::vector<host::TagDefinition> saved_;
};

// The smallest writable row: no label, and the type that entries are written with.
inline void defineWritten(EditedTable& table, std::size_t row, host::u16 tag, host::u16 fieldId,
                          host::u16 type) {
  table.set(row, tag, host::kindBlock, fieldId, host::noLabel, type);
}

// A field with the bytes of its block, as far as its size word says and the block has them.
struct StoredField {
  host::PropertyField descriptor;
  Bytes block;

  [[nodiscard]] host::u16 id() const { return descriptor.fieldId; }
  [[nodiscard]] host::u32 size() const { return descriptor.dataSize; }
  [[nodiscard]] host::u64 number() const { return descriptor.data; }
  [[nodiscard]] std::string name() const { return {descriptor.name, strnlen(descriptor.name, 61)}; }
  [[nodiscard]] std::string text() const { return {block.begin(), block.end()}; }
  // The value behind the prefix of a byte block, whose length word is checked.
  [[nodiscard]] Bytes payload() const {
    EXPECT_GE(block.size(), 4u);
    if (block.size() < 4) return {};
    host::u32 length = 0;
    std::memcpy(&length, block.data(), sizeof length);
    EXPECT_EQ(length, block.size() - 4);
    return {block.begin() + 4, block.end()};
  }
};

// Every field of a record, the header field first.
inline std::vector<StoredField> storedFields(HGLOBAL record) {
  std::vector<StoredField> found;
  platform::LockedGlobal lock(record);
  if (!lock) return found;
  const auto* header = static_cast<const host::PropertyHeader*>(lock.address());
  const auto* first = reinterpret_cast<const host::PropertyField*>(header + 1);
  EXPECT_LE(sizeof *header + sizeof *first * static_cast<std::size_t>(header->fieldCount),
            lock.size());
  for (int index = 0; index < header->fieldCount; ++index) {
    const host::PropertyField& field = first[index];
    EXPECT_EQ(field.descriptorSize, 88u);
    StoredField stored{field, {}};
    const bool block = field.valueKind == host::kindBlock || field.valueKind == host::kindText;
    if (block && field.data != 0) {
      const auto* data = reinterpret_cast<const host::u8*>(field.data);
      const std::size_t real = GlobalSize(reinterpret_cast<HGLOBAL>(field.data));
      stored.block.assign(data, data + std::min<std::size_t>(field.dataSize, real));
    }
    found.push_back(stored);
  }
  return found;
}

// A property record that the readers fill; made by the first reservation.
class PropertySlot {
 public:
  PropertySlot() = default;
  PropertySlot(const PropertySlot&) = delete;
  PropertySlot& operator=(const PropertySlot&) = delete;
  ~PropertySlot() { doubles::freeProperty(handle_); }

  HGLOBAL* address() { return &handle_; }
  // Appends a field as a host does; a text's or block's bytes are given as they lie in the block.
  void add(host::PropertyField field, const Bytes& block = {}) {
    field.descriptorSize = sizeof field;
    if (!block.empty()) {
      HGLOBAL memory = GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, block.size());
      std::memcpy(memory, block.data(), block.size());
      field.data = reinterpret_cast<host::u64>(memory);
    }
    ASSERT_EQ(doubles::reserveFields(&handle_, 1), 1);
    ASSERT_EQ(doubles::appendField(handle_, &field), 1);
  }
  void addText(host::u16 id, std::string_view text, host::u16 group = 0) {
    host::PropertyField field = {};
    field.valueKind = host::kindText;
    field.fieldId = id;
    field.sourceGroup = group;
    field.dataSize = static_cast<host::u32>(text.size());
    add(field, support::bytesOf(text));
  }
  // A block field's prefix is put in front.
  void addBlock(host::u16 id, const Bytes& value, host::u16 group = 0) {
    host::PropertyField field = {};
    field.valueKind = host::kindBlock;
    field.fieldId = id;
    field.sourceGroup = group;
    field.dataSize = static_cast<host::u32>(value.size() + 4);
    Bytes block(4);
    const auto length = static_cast<host::u32>(value.size());
    std::memcpy(block.data(), &length, sizeof length);
    add(field, support::joined(block, value));
  }
  void addNumber(host::u16 id, host::u16 kind, host::u64 number, host::u16 group = 0,
                 host::u32 dataSize = 0) {
    host::PropertyField field = {};
    field.valueKind = kind;
    field.fieldId = id;
    field.sourceGroup = group;
    field.dataSize = dataSize;
    field.data = number;
    add(field);
  }
  [[nodiscard]] HGLOBAL handle() const { return handle_; }
  [[nodiscard]] bool unlocked() const {
    return handle_ == nullptr || (GlobalFlags(handle_) & GMEM_LOCKCOUNT) == 0;
  }

  // The fields behind the header field.
  [[nodiscard]] std::vector<StoredField> fields() const {
    std::vector<StoredField> found = storedFields(handle_);
    if (!found.empty()) found.erase(found.begin());
    return found;
  }
  [[nodiscard]] std::vector<int> ids() const {
    std::vector<int> ids;
    for (const StoredField& field : fields()) ids.push_back(field.id());
    return ids;
  }

 private:
  HGLOBAL handle_ = nullptr;
};

class ReaderTest : public testing::Test {
 protected:
  void SetUp() override { the().reset(); }
  void TearDown() override { EXPECT_TRUE(slot_.unlocked()); }

  EditedTable exif_{exif::exifTable()};
  EditedTable gps_{exif::gpsTable()};
  EditedTable iptc_{exif::iptcTable()};
  PropertySlot slot_;
};

// The APP1 payload of a TIFF structure.
inline Bytes exifPayload(const Bytes& tiff) {
  return support::joined({'E', 'x', 'i', 'f', 0, 0}, tiff);
}

inline platform::ByteReader readerOf(const Bytes& tiff, FileOrder order = FileOrder::little) {
  return {tiff, order == FileOrder::big ? platform::ByteOrder::big : platform::ByteOrder::little};
}

inline Bytes bytesOfNumbers(FileOrder order, unsigned width, std::vector<host::u64> numbers) {
  Bytes bytes;
  for (const host::u64 number : numbers) {
    for (unsigned i = 0; i < width; ++i) {
      const unsigned shift = 8 * (order == FileOrder::big ? width - 1 - i : i);
      bytes.push_back(static_cast<host::u8>(number >> shift));
    }
  }
  return bytes;
}

inline constexpr FileOrder bothOrders[] = {FileOrder::little, FileOrder::big};

}  // namespace test

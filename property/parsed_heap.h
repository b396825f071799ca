// A camera-data heap in memory: the tree of its records, and one store with all their values.
#pragma once

#include "property/growing_block.h"
#include "property/heap_definitions.h"

namespace property {

inline constexpr std::size_t heapHeaderSize = 26;
// Where the header's items lie: byte order, length, type, subtype, version, two reserved words.
[[nodiscard]] constexpr std::size_t heapHeaderItemOffset(host::u32 item) noexcept {
  return item == 0 ? 0 : 4 * std::size_t{item} - 2;
}
using HeapHeader = std::span<const host::u8, heapHeaderSize>;

// What a file may ask for.
inline constexpr std::size_t heapMostRecords = 65535;
inline constexpr host::u8 heapMostLevels = 16;            // blocks inside one another
inline constexpr std::size_t heapMostValueBytes = 65535;  // a heap fits one APP0 segment

inline constexpr host::i32 noHeapRecord = -1;

struct HeapRecord {
  host::i32 parent;
  host::i32 firstChild;
  host::i32 lastChild;
  host::i32 nextSibling;
  host::i32 row;  // of the definition table, or heapUnknownRow
  host::u16 tag;
  host::u8 level;    // of the block that the record lies in: 1 for the top block, 0 for the header
  host::u32 size;    // bytes of value data
  host::u32 offset;  // of the value data in the store
  std::array<host::u8, 8> entryValue;  // the value of a record whose tag has location bits
};

// Values are kept in the machine's byte order, whatever order the file has. Record 0 is the
// header: its value is the header's bytes. Records stay in the order in which they were added.
class ParsedHeap {
 public:
  // resources: the library with the texts of the heap.
  explicit ParsedHeap(HMODULE resources) noexcept : resources_(resources) {}

  // A heap of that header and nothing else: header holds the bytes as they stand in a file.
  // False when memory cannot be had, which is reported.
  [[nodiscard]] bool start(HeapHeader header) noexcept;
  // The header of a heap that comes from nowhere.
  [[nodiscard]] static HeapHeader newHeader() noexcept;

  [[nodiscard]] HMODULE resources() const noexcept { return resources_; }
  [[nodiscard]] bool bigEndian() const noexcept { return bigEndian_; }
  void setBigEndian(bool bigEndian) noexcept { bigEndian_ = bigEndian; }
  [[nodiscard]] bool modified() const noexcept { return modified_; }
  void setModified() noexcept { modified_ = true; }

  [[nodiscard]] std::span<const HeapRecord> records() const noexcept { return records_.elements(); }
  [[nodiscard]] const HeapRecord& record(host::i32 index) const noexcept {
    return records_.elements()[static_cast<std::size_t>(index)];
  }

  // Adds a record without a value as the last child of parent. Negative when the heap holds all the
  // records or levels that it may, or memory cannot be had (only that is reported).
  [[nodiscard]] host::i32 addRecord(host::i32 parent, host::u16 tag, host::i32 row) noexcept;
  // Gives a record with value data its value, of size zeros. False as for addRecord.
  [[nodiscard]] bool addValue(host::i32 index, std::size_t size) noexcept;
  // Makes a part of a record's value longer or shorter; what lies behind it moves. The new length
  // of the part is to be filled. False as for addRecord, with nothing changed.
  [[nodiscard]] bool resizeValuePart(host::i32 index, std::size_t position, std::size_t oldLength,
                                     std::size_t newLength) noexcept;

  // The value of a record: value data, or the 8 bytes of its entry. Empty for a sub-heap. Valid
  // until a record or a value is added or resized.
  [[nodiscard]] std::span<const host::u8> value(host::i32 index) const noexcept;
  [[nodiscard]] std::span<host::u8> value(host::i32 index) noexcept;
  [[nodiscard]] std::size_t valueBytes() const noexcept { return values_.size(); }

 private:
  bool growValues(std::size_t size) noexcept;
  void moveLaterValues(host::i32 index, std::ptrdiff_t distance) noexcept;
  HeapRecord& at(host::i32 index) noexcept {
    return records_.elements()[static_cast<std::size_t>(index)];
  }

  HMODULE resources_;
  bool bigEndian_ = false;
  bool modified_ = false;
  GrowingBlock<HeapRecord> records_;
  GrowingBlock<host::u8> values_;
};

// Turns a value of the tag's type from a big-endian file's byte order into the machine's, or back:
// all its whole elements. Bytes and texts stay.
void turnHeapValue(std::span<host::u8> value, host::u16 tag) noexcept;
// The numbers of the header.
void turnHeapHeader(std::span<host::u8> header) noexcept;

}  // namespace property

// The records of a camera-data heap (CIFF) that are known by name, item by item: one table for
// reading, showing and writing. A heap is a tree of tagged records in an APP0 segment.
#pragma once

#include <array>
#include <optional>
#include <span>

#include "host/types.h"

namespace property {

// How an item of a record is kept. The characters are those of the table and of the label lists.
enum class HeapFormat : host::u8 {
  bytes2 = 2,  // that many characters, without a NUL
  bytes4 = 4,
  signed16 = '(',
  signed32 = ')',
  unsigned16 = '*',
  unsigned32 = '+',
  real32 = ',',      // a 32-bit number or the bits of a floating-point number
  text = '-',        // the first NUL-terminated text of the value
  packedText = '.',  // the n-th of several NUL-terminated texts
  date = '/',        // seconds since 1970
  skipped = 0x7F,
};

// A tag's parts (CIFF: data location, data type, record id).
inline constexpr host::u16 heapLocationMask = 0xC000;  // 0: the value lies in the block
inline constexpr host::u16 heapTypeMask = 0x3800;
inline constexpr host::u16 heapIdMask = 0x3FFF;

enum HeapType : host::u16 {
  heapTypeBytes = 0x0000,
  heapTypeText = 0x0800,
  heapType16 = 0x1000,
  heapType32 = 0x1800,
  heapTypeSubHeap = 0x2800,
  heapTypeSubHeapAlt = 0x3000,
};

[[nodiscard]] constexpr host::u16 heapTypeOf(host::u16 tag) noexcept { return tag & heapTypeMask; }
[[nodiscard]] constexpr bool liesInEntry(host::u16 tag) noexcept {
  return (tag & heapLocationMask) != 0;
}
[[nodiscard]] constexpr bool hasSubHeapType(host::u16 tag) noexcept {
  return heapTypeOf(tag) == heapTypeSubHeap || heapTypeOf(tag) == heapTypeSubHeapAlt;
}
// A block of further records. With location bits such a tag is only 8 bytes.
[[nodiscard]] constexpr bool isSubHeap(host::u16 tag) noexcept {
  return hasSubHeapType(tag) && !liesInEntry(tag);
}
[[nodiscard]] constexpr bool hasValueData(host::u16 tag) noexcept {
  return !liesInEntry(tag) && !hasSubHeapType(tag);
}

inline constexpr std::size_t heapMostItems = 8;

struct HeapRow {
  host::u16 kind;  // 0: its items become fields
  host::u16 tag;
  host::u16 parentRow;  // 0: the record lies in the top block
  host::u16 itemCount;
  host::u16 baseString;  // the record's name
  std::array<host::u8, heapMostItems> formats;
};

inline constexpr host::i32 heapHeaderRow = 0;
inline constexpr host::i32 heapUnknownRow = -1;

[[nodiscard]] std::span<const HeapRow> heapRows() noexcept;
// row: an index of heapRows().
[[nodiscard]] const HeapRow& heapRow(host::i32 row) noexcept;

// The first row of kind 0 with the tag's record id, or heapUnknownRow.
[[nodiscard]] host::i32 findHeapRow(host::u16 tag) noexcept;

// One item of one row.
struct HeapItem {
  host::i32 row;
  host::u32 item;  // from 0, below the row's item count

  [[nodiscard]] HeapFormat format() const noexcept;
  // By which labels and source groups are chosen.
  [[nodiscard]] host::u16 string() const noexcept;
  // The text under which the item is shown: its own, or its record's.
  [[nodiscard]] host::u16 nameString() const noexcept;
  [[nodiscard]] host::u16 fieldId() const noexcept;
};

// Items of a record that become fields: none for an unknown record, the header and sub-heaps.
[[nodiscard]] host::u32 expandableItems(host::i32 row, host::u16 tag) noexcept;

[[nodiscard]] std::optional<HeapItem> heapItemOfField(host::u16 fieldId) noexcept;

// A text that stands for a value.
struct HeapLabel {
  host::u32 mask;
  host::u32 match;  // applies when (value & mask) is this; texts as their little-endian number
  host::u16 string;
};

struct HeapLabelList {
  host::u16 itemString;  // HeapItem::string()
  HeapFormat format;
  host::u16 captionString;
  std::span<const HeapLabel> labels;
};

[[nodiscard]] std::span<const HeapLabelList> heapLabelLists() noexcept;
// The labels of an item; none for most.
[[nodiscard]] std::span<const HeapLabel> heapLabelsOf(host::u16 itemString) noexcept;

}  // namespace property

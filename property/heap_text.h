// The values of a camera-data heap as text, as a list shows them and as an editor takes them.
#pragma once

#include <optional>
#include <string>

#include "property/parsed_heap.h"

namespace property {

enum class HeapTextUse { display, edit };

// By which icon a list shows an item.
enum class HeapTextKind { text, binary, time };

struct HeapItemText {
  host::u16 nameString;
  HeapTextKind kind;
  std::string text;
};

// The string with the name of a record.
[[nodiscard]] host::u16 heapRecordName(const HeapRecord& record) noexcept;

// Rows that a record is listed with, items without text included: those of its definition, or as
// many elements as an unknown record has. None for a sub-heap.
[[nodiscard]] host::u32 heapRowCount(const ParsedHeap& heap, host::i32 index) noexcept;

// The texts of the labels that apply to an item's value, one behind the other: "" for most. Each
// begins with a blank. number: the value, texts as their little-endian number.
[[nodiscard]] std::string heapLabels(HMODULE resources, const HeapItem& item, host::u32 number);

// The text of one row; for display with the labels that apply to the value. None for an item that
// is skipped or lies beyond its value. Dates are the locale's for display, as of readHeapDate() for
// editing.
[[nodiscard]] std::optional<HeapItemText> formatHeapRow(const ParsedHeap& heap, host::i32 index,
                                                        host::u32 row, HeapTextUse use);

}  // namespace property

// Changing one item of a camera-data heap.
#pragma once

#include <string_view>

#include "property/parsed_heap.h"

namespace property {

// The width and meaning in which an item is written; it need not be the item's own format.
struct HeapEdit {
  HeapFormat format;
  host::u32 number = 0;
  std::string_view text = {};  // of the text formats; dates as of readHeapDate()
};

// Writes the item, of the first record of its row; a missing record is made as the last child of
// its parent, which is made in its turn. An item that does not lie inside the record's value is
// left alone, except that a text makes its value longer or shorter. Marks the heap as modified.
// False, with the heap to be thrown away, when it would grow past its limits or memory cannot be
// had (only that is reported), or a date is none.
[[nodiscard]] bool editHeapItem(ParsedHeap& heap, const HeapItem& item,
                                const HeapEdit& edit) noexcept;

}  // namespace property

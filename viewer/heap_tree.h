// What the tree-list shows of a camera-data heap: its records as a tree, the values of one as rows.
#pragma once

#include <string>
#include <vector>

#include "property/parsed_heap.h"

namespace viewer {

struct TreeNode {
  host::i32 record;    // of the heap
  std::size_t parent;  // index of a node that comes earlier; the root's own for the root
  std::string name;
};

// Every record is a node, depth first and siblings in their order; the header is the root.
[[nodiscard]] std::vector<TreeNode> heapTree(const property::ParsedHeap& heap);

// The images of the list, by their places in its image list.
enum class ListIcon : int { text = 0, binary = 1, time = 2 };

struct ListRow {
  std::string name;
  std::string value;
  ListIcon icon;
};

// The values of a record with the labels that apply; none for a sub-heap.
[[nodiscard]] std::vector<ListRow> heapListRows(const property::ParsedHeap& heap, host::i32 record);

// The whole heap for the clipboard: each record's name, its rows below it, deeper records further
// in. A line is "name" or "name, tab, value".
[[nodiscard]] std::string heapAsText(const property::ParsedHeap& heap);

// The bytes of a heap that was changed, in a movable block that the caller owns; length receives
// their number. Null and 0 for a heap as it was read; null too when memory cannot be had, which is
// reported.
[[nodiscard]] HGLOBAL serialiseEditedHeap(const property::ParsedHeap& heap,
                                          host::u32& length) noexcept;

}  // namespace viewer

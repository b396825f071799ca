#include "viewer/heap_tree.h"

#include "frame/resource_text.h"
#include "property/heap_errors.h"
#include "property/heap_serialiser.h"
#include "property/heap_text.h"

namespace viewer {
namespace {

using host::i32;
using host::u32;
using host::u8;
using property::HeapTextKind;
using property::ParsedHeap;

constexpr const char* lineEnd = "\r\n";

ListIcon iconOf(HeapTextKind kind) noexcept {
  switch (kind) {
    case HeapTextKind::text:
      return ListIcon::text;
    case HeapTextKind::time:
      return ListIcon::time;
    default:
      return ListIcon::binary;
  }
}

TreeNode nodeOf(const ParsedHeap& heap, i32 record, std::size_t parent) {
  const UINT name = property::heapRecordName(heap.record(record));
  return {record, parent, frame::resourceText(heap.resources(), name)};
}

// The record that follows in depth-first order, and the node under which it hangs; negative at the
// end. The way back up goes by the nodes, whose parents are known.
struct Step {
  i32 record;
  std::size_t parent;
};

Step stepOn(const ParsedHeap& heap, const std::vector<TreeNode>& nodes) {
  std::size_t node = nodes.size() - 1;
  const i32 child = heap.record(nodes[node].record).firstChild;
  if (child != property::noHeapRecord) return {child, node};
  while (node != 0) {
    const i32 sibling = heap.record(nodes[node].record).nextSibling;
    if (sibling != property::noHeapRecord) return {sibling, nodes[node].parent};
    node = nodes[node].parent;
  }
  return {property::noHeapRecord, 0};
}

}  // namespace

std::vector<TreeNode> heapTree(const ParsedHeap& heap) {
  std::vector<TreeNode> nodes = {nodeOf(heap, 0, 0)};
  for (Step next = stepOn(heap, nodes); next.record != property::noHeapRecord;
       next = stepOn(heap, nodes)) {
    nodes.push_back(nodeOf(heap, next.record, next.parent));
  }
  return nodes;
}

std::vector<ListRow> heapListRows(const ParsedHeap& heap, i32 record) {
  std::vector<ListRow> rows;
  const u32 count = property::heapRowCount(heap, record);
  for (u32 row = 0; row < count; ++row) {
    auto text = property::formatHeapRow(heap, record, row, property::HeapTextUse::display);
    if (!text) continue;
    rows.push_back({frame::resourceText(heap.resources(), text->nameString), std::move(text->text),
                    iconOf(text->kind)});
  }
  return rows;
}

std::string heapAsText(const ParsedHeap& heap) {
  std::string text;
  for (const TreeNode& node : heapTree(heap)) {
    const std::string indent(2 * std::size_t{heap.record(node.record).level}, ' ');
    text += indent + node.name + lineEnd;
    for (const ListRow& row : heapListRows(heap, node.record)) {
      text += indent + "  " + row.name + "\t" + row.value + lineEnd;
    }
  }
  return text;
}

HGLOBAL serialiseEditedHeap(const ParsedHeap& heap, u32& length) noexcept {
  length = 0;
  if (!heap.modified()) return nullptr;
  const host::u64 size = property::serialisedHeapLength(heap);
  platform::OwnedGlobal block(platform::movableZeroed, size);
  platform::LockedGlobal lock(block.get());
  if (!lock) {
    property::reportHeapMemory(property::HeapMemory::writtenHeap);
    return nullptr;
  }
  property::serialiseHeap(heap, {static_cast<u8*>(lock.address()), size});
  length = static_cast<u32>(size);
  lock.unlock();
  return block.release();
}

}  // namespace viewer

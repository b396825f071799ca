#include "property/heap_edit.h"

#include "property/heap_date.h"
#include "property/heap_item_value.h"

namespace property {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

// A sub-heap's tag with location bits is no block that could hold records.
i32 findRecordOf(const ParsedHeap& heap, i32 row) noexcept {
  const auto records = heap.records();
  const auto found = std::find_if(records.begin(), records.end(), [row](const HeapRecord& record) {
    return record.row == row && isSubHeap(record.tag) == hasSubHeapType(record.tag);
  });
  return found == records.end() ? noHeapRecord : static_cast<i32>(found - records.begin());
}

std::size_t newValueSize(const HeapRow& row) noexcept {
  switch (heapTypeOf(row.tag)) {
    case heapTypeBytes:
    case heapTypeText:
      return sizeof(u16);
    case heapType16:
      return sizeof(u16) * row.itemCount;
    default:
      return sizeof(u32) * row.itemCount;
  }
}

// Ends at the header, whose record there always is.
i32 findOrAddRecord(ParsedHeap& heap, i32 row) noexcept {
  const i32 found = findRecordOf(heap, row);
  if (found != noHeapRecord) return found;
  const HeapRow& definition = heapRow(row);
  const i32 parent = findOrAddRecord(heap, definition.parentRow);
  if (parent == noHeapRecord) return noHeapRecord;
  const i32 added = heap.addRecord(parent, definition.tag, row);
  if (added == noHeapRecord || !hasValueData(definition.tag)) return added;
  return heap.addValue(added, newValueSize(definition)) ? added : noHeapRecord;
}

bool isText(HeapFormat format) noexcept {
  return format == HeapFormat::text || format == HeapFormat::packedText;
}

std::size_t widthOf(HeapFormat format) noexcept {
  return format == HeapFormat::signed16 || format == HeapFormat::unsigned16 ? sizeof(u16)
                                                                            : sizeof(u32);
}

void putNumber(std::span<u8> value, u64 offset, std::size_t width, u32 number) noexcept {
  if (offset + width <= value.size()) std::memcpy(value.data() + offset, &number, width);
}

// Cuts the text to the place or fills the place with zeros.
void putText(std::span<u8> place, std::string_view text) noexcept {
  const std::size_t length = std::min(place.size(), text.size());
  std::copy_n(text.begin(), length, place.begin());
  std::fill(place.begin() + static_cast<std::ptrdiff_t>(length), place.end(), u8{0});
}

constexpr u32 byteOrderItem = 0;
constexpr std::size_t headerItemWidth = 4;

void editByteOrder(ParsedHeap& heap, const HeapEdit& edit) noexcept {
  const char first = isText(edit.format) ? (edit.text.empty() ? '\0' : edit.text.front())
                                         : static_cast<char>(edit.number);
  heap.setBigEndian(first != 'I');
  putText(heap.value(heapHeaderRow).first(2), heap.bigEndian() ? "MM" : "II");
}

void editHeader(ParsedHeap& heap, u32 item, const HeapEdit& edit) noexcept {
  if (item == byteOrderItem) return editByteOrder(heap, edit);
  const std::span<u8> place =
      heap.value(heapHeaderRow).subspan(heapHeaderItemOffset(item), headerItemWidth);
  if (isText(edit.format)) return putText(place, edit.text);
  putNumber(place, 0, widthOf(edit.format), edit.number);
}

// A text that filled its value up to the end without a NUL stays so while its length does.
bool editText(ParsedHeap& heap, i32 index, u32 number, std::string_view text) noexcept {
  if (!hasValueData(heap.record(index).tag)) {
    putText(heap.value(index), text);
    return true;
  }
  const auto part = findHeapText(heap.value(index), number);
  if (!part) return true;
  if (part->length != text.size()) {
    const std::size_t oldLength = part->length + (part->terminated ? 1 : 0);
    if (!heap.resizeValuePart(index, part->position, oldLength, text.size() + 1)) return false;
    heap.value(index)[part->position + text.size()] = 0;
  }
  putText(heap.value(index).subspan(part->position, text.size()), text);
  return true;
}

bool editValue(ParsedHeap& heap, const HeapItem& item, const HeapEdit& edit) noexcept {
  if (item.row == heapHeaderRow) {
    editHeader(heap, item.item, edit);
    return true;
  }
  const i32 index = findOrAddRecord(heap, item.row);
  if (index == noHeapRecord) return false;
  if (isText(edit.format)) return editText(heap, index, item.item, edit.text);
  const std::size_t width = widthOf(edit.format);
  putNumber(heap.value(index), u64{item.item} * width, width, edit.number);
  return true;
}

}  // namespace

bool editHeapItem(ParsedHeap& heap, const HeapItem& item, const HeapEdit& edit) noexcept {
  HeapEdit number = edit;
  if (edit.format == HeapFormat::date) {
    const auto seconds = readHeapDate(heap.resources(), edit.text);
    if (!seconds) return false;
    number.number = *seconds;
  }
  if (!editValue(heap, item, number)) return false;
  heap.setModified();
  return true;
}

}  // namespace property

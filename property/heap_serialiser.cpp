#include "property/heap_serialiser.h"

namespace property {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr u64 countSize = 2;
constexpr u64 entrySize = 10;
constexpr u64 tableOffsetSize = 4;

u64 blockLength(const ParsedHeap& heap, i32 parent) noexcept;

// Bytes that a record takes in front of its block's table.
u64 valueLength(const ParsedHeap& heap, i32 index) noexcept {
  const HeapRecord& record = heap.record(index);
  if (isSubHeap(record.tag)) return blockLength(heap, index);
  return hasValueData(record.tag) ? (u64{record.size} + 1) / 2 * 2 : 0;
}

struct BlockParts {
  u64 values = 0;
  u64 entries = 0;
};

BlockParts measureBlock(const ParsedHeap& heap, i32 parent) noexcept {
  BlockParts parts;
  for (i32 child = heap.record(parent).firstChild; child != noHeapRecord;
       child = heap.record(child).nextSibling) {
    parts.values += valueLength(heap, child);
    ++parts.entries;
  }
  return parts;
}

u64 blockLength(const ParsedHeap& heap, i32 parent) noexcept {
  const BlockParts parts = measureBlock(heap, parent);
  return parts.values + countSize + parts.entries * entrySize + tableOffsetSize;
}

class HeapSerialiser {
 public:
  HeapSerialiser(const ParsedHeap& heap, std::span<u8> target) noexcept
      : heap_(heap), target_(target) {}

  void writeHeader() noexcept {
    const std::span<u8> header = target_.first(heapHeaderSize);
    copyTo(0, heap_.value(0));
    if (heap_.bigEndian()) turnHeapHeader(header);
  }

  void writeBlock(u64 start, i32 parent) noexcept {
    const BlockParts parts = measureBlock(heap_, parent);
    const u64 table = start + parts.values;
    put(table, parts.entries, countSize);
    u64 position = start;
    u64 entry = table + countSize;
    for (i32 child = heap_.record(parent).firstChild; child != noHeapRecord;
         child = heap_.record(child).nextSibling, entry += entrySize) {
      position += writeRecord(child, {start, position, entry});
    }
    put(entry, parts.values, tableOffsetSize);
  }

 private:
  struct Place {
    u64 block;
    u64 value;
    u64 entry;
  };

  // Returns how many bytes the value takes.
  u64 writeRecord(i32 index, const Place& place) noexcept {
    const HeapRecord& record = heap_.record(index);
    put(place.entry, record.tag, sizeof(u16));
    if (liesInEntry(record.tag)) {
      copyValue(place.entry + sizeof(u16), index);
      return 0;
    }
    const u64 length = valueLength(heap_, index);
    put(place.entry + 2, length, sizeof(u32));
    put(place.entry + 6, place.value - place.block, sizeof(u32));
    if (isSubHeap(record.tag)) {
      writeBlock(place.value, index);
    } else {
      copyValue(place.value, index);
    }
    return length;
  }

  void copyValue(u64 position, i32 index) noexcept {
    const std::span<const u8> value = heap_.value(index);
    copyTo(position, value);
    if (!heap_.bigEndian()) return;
    turnHeapValue(target_.subspan(static_cast<std::size_t>(position), value.size()),
                  heap_.record(index).tag);
  }

  void copyTo(u64 position, std::span<const u8> bytes) noexcept {
    std::copy(bytes.begin(), bytes.end(), target_.begin() + static_cast<std::ptrdiff_t>(position));
  }

  void put(u64 position, u64 number, u64 width) noexcept {
    for (u64 i = 0; i < width; ++i) {
      const u64 place = heap_.bigEndian() ? width - 1 - i : i;
      target_[static_cast<std::size_t>(position + place)] = static_cast<u8>(number >> (8 * i));
    }
  }

  const ParsedHeap& heap_;
  std::span<u8> target_;
};

}  // namespace

u64 serialisedHeapLength(const ParsedHeap& heap) noexcept {
  return heapHeaderSize + blockLength(heap, 0);
}

void serialiseHeap(const ParsedHeap& heap, std::span<u8> target) noexcept {
  HeapSerialiser serialiser(heap, target);
  serialiser.writeHeader();
  serialiser.writeBlock(heapHeaderSize, 0);
}

}  // namespace property

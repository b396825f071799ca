#include "property/heap_parser.h"

#include "platform/byte_reader.h"

namespace property {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;
using platform::ByteReader;

constexpr u64 tableOffsetSize = 4;
constexpr u64 countSize = 2;
constexpr u64 entrySize = 10;

// Where a block lies in the payload. What it refers to may lie behind its end.
struct Block {
  u64 start;
  u64 length;
};

struct Entry {
  u16 tag;
  u32 size;
  u32 offset;                 // from the block's start
  std::span<const u8> value;  // the 8 bytes of size and offset
};

class HeapParser {
 public:
  HeapParser(ParsedHeap& heap, std::span<const u8> payload) noexcept
      : heap_(heap), payload_(payload, heap.bigEndian() ? ByteOrder::big : ByteOrder::little) {}

  bool parse() noexcept {
    return parseBlock({heapHeaderSize, payload_.size() - heapHeaderSize}, 0);
  }

 private:
  bool parseBlock(const Block& block, i32 parent) noexcept;
  bool parseEntry(const Block& block, u64 position, i32 parent) noexcept;
  [[nodiscard]] std::optional<Entry> readEntry(u64 position) const noexcept;
  bool takeValue(const Block& block, const Entry& entry, i32 index) noexcept;

  ParsedHeap& heap_;
  ByteReader payload_;
};

bool HeapParser::parseBlock(const Block& block, i32 parent) noexcept {
  if (block.length < countSize + tableOffsetSize) return false;
  const auto tableOffset = payload_.u32(block.start + block.length - tableOffsetSize);
  if (!tableOffset) return false;
  const u64 table = block.start + *tableOffset;
  const auto count = payload_.u16(table);
  if (!count) return false;
  for (u64 entry = 0; entry < *count; ++entry) {
    if (!parseEntry(block, table + countSize + entry * entrySize, parent)) return false;
  }
  return true;
}

std::optional<Entry> HeapParser::readEntry(u64 position) const noexcept {
  const auto bytes = payload_.sub(position, entrySize);
  if (!bytes) return std::nullopt;
  return Entry{*bytes->u16(0), *bytes->u32(2), *bytes->u32(6), bytes->bytes().subspan(2)};
}

bool HeapParser::parseEntry(const Block& block, u64 position, i32 parent) noexcept {
  const auto entry = readEntry(position);
  if (!entry) return false;
  // Each is compared alone: a value may run past its block, though not past the payload.
  const bool outside = entry->offset > block.length || entry->size > block.length;
  if (!liesInEntry(entry->tag) && outside) return false;
  const i32 index = heap_.addRecord(parent, entry->tag, findHeapRow(entry->tag));
  if (index < 0 || !takeValue(block, *entry, index)) return false;
  return !isSubHeap(entry->tag) || parseBlock({block.start + entry->offset, entry->size}, index);
}

bool HeapParser::takeValue(const Block& block, const Entry& entry, i32 index) noexcept {
  std::span<const u8> bytes = entry.value;
  if (!liesInEntry(entry.tag)) {
    const auto inPayload = payload_.bytes(block.start + entry.offset, entry.size);
    if (!inPayload) return false;
    if (isSubHeap(entry.tag)) return true;
    bytes = *inPayload;
    if (!heap_.addValue(index, bytes.size())) return false;
  }
  const std::span<u8> value = heap_.value(index);
  std::copy(bytes.begin(), bytes.end(), value.begin());
  if (heap_.bigEndian()) turnHeapValue(value, entry.tag);
  return true;
}

}  // namespace

std::optional<ParsedHeap> parseHeap(HMODULE resources, std::span<const u8> payload) noexcept {
  if (payload.size() < heapHeaderSize) return std::nullopt;
  std::optional<ParsedHeap> heap(std::in_place, resources);
  if (!heap->start(payload.first<heapHeaderSize>())) return std::nullopt;
  if (!HeapParser(*heap, payload).parse()) return std::nullopt;
  return heap;
}

}  // namespace property

#include "property/parsed_heap.h"

#include "property/heap_errors.h"

namespace property {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u8;

constexpr std::size_t recordStep = 8;
constexpr std::size_t valueStep = 80;

constexpr u8 templateHeader[heapHeaderSize] = {'I', 'I', 26,  0,   0,   0, 'H', 'E', 'A',
                                               'P', 'J', 'P', 'G', 'M', 1, 0,   1,   0,
                                               0,   0,   0,   0,   0,   0, 0,   0};

// Length, version and the two reserved words.
constexpr std::size_t headerNumbers[] = {2, 14, 18, 22};

void turnElements(std::span<u8> bytes, std::size_t width) noexcept {
  for (std::size_t first = 0; first + width <= bytes.size(); first += width) {
    const std::span<u8> element = bytes.subspan(first, width);
    std::reverse(element.begin(), element.end());
  }
}

}  // namespace

void turnHeapValue(std::span<u8> value, u16 tag) noexcept {
  if (heapTypeOf(tag) == heapType16) turnElements(value, sizeof(u16));
  if (heapTypeOf(tag) == heapType32) turnElements(value, sizeof(u32));
}

void turnHeapHeader(std::span<u8> header) noexcept {
  for (const std::size_t offset : headerNumbers) {
    turnElements(header.subspan(offset, sizeof(u32)), sizeof(u32));
  }
}

HeapHeader ParsedHeap::newHeader() noexcept { return templateHeader; }

bool ParsedHeap::start(HeapHeader header) noexcept {
  bigEndian_ = header[0] == 'M';
  const i32 index = addRecord(noHeapRecord, 0, heapHeaderRow);
  if (index < 0 || !addValue(index, header.size())) return false;
  std::copy(header.begin(), header.end(), value(index).begin());
  if (bigEndian_) turnHeapHeader(value(index));
  return true;
}

i32 ParsedHeap::addRecord(i32 parent, u16 tag, i32 row) noexcept {
  const u8 level = parent == noHeapRecord ? u8{0} : static_cast<u8>(record(parent).level + 1);
  if (isSubHeap(tag) && level >= heapMostLevels) return noHeapRecord;
  const std::size_t count = records_.size();
  if (count >= heapMostRecords) return noHeapRecord;
  // A heap of many records grows by more than one step at a time, or copying would be its main
  // work.
  const std::size_t step = std::max(recordStep, records_.capacity() / 2 / recordStep * recordStep);
  if (!records_.resize(count + 1, step)) {
    reportHeapMemory(HeapMemory::records);
    return noHeapRecord;
  }
  const auto index = static_cast<i32>(count);
  at(index) = {parent, noHeapRecord, noHeapRecord, noHeapRecord, row, tag, level, 0, 0, {}};
  if (parent == noHeapRecord) return index;
  const i32 previous = std::exchange(at(parent).lastChild, index);
  (previous == noHeapRecord ? at(parent).firstChild : at(previous).nextSibling) = index;
  return index;
}

bool ParsedHeap::growValues(std::size_t size) noexcept {
  if (size > heapMostValueBytes) return false;
  if (values_.resize(size, valueStep)) return true;
  reportHeapMemory(HeapMemory::values);
  return false;
}

bool ParsedHeap::addValue(i32 index, std::size_t size) noexcept {
  const std::size_t offset = values_.size();
  if (!growValues(offset + size)) return false;
  at(index).offset = static_cast<u32>(offset);
  at(index).size = static_cast<u32>(size);
  return true;
}

bool ParsedHeap::resizeValuePart(i32 index, std::size_t position, std::size_t oldLength,
                                 std::size_t newLength) noexcept {
  const std::size_t oldTotal = values_.size();
  const std::size_t newTotal = oldTotal - oldLength + newLength;
  if (newTotal > oldTotal && !growValues(newTotal)) return false;
  const std::size_t part = at(index).offset + position;
  const std::size_t behind = oldTotal - part - oldLength;
  if (behind != 0) {
    u8* first = values_.elements().data() + part;
    std::memmove(first + newLength, first + oldLength, behind);
  }
  if (newTotal < oldTotal) static_cast<void>(values_.resize(newTotal, valueStep));
  at(index).size = static_cast<u32>(at(index).size - oldLength + newLength);
  moveLaterValues(index,
                  static_cast<std::ptrdiff_t>(newLength) - static_cast<std::ptrdiff_t>(oldLength));
  return true;
}

// Values lie in the store in the order of their records.
void ParsedHeap::moveLaterValues(i32 index, std::ptrdiff_t distance) noexcept {
  for (HeapRecord& later : records_.elements().subspan(static_cast<std::size_t>(index) + 1)) {
    if (hasValueData(later.tag)) later.offset = static_cast<u32>(later.offset + distance);
  }
}

std::span<const u8> ParsedHeap::value(i32 index) const noexcept {
  const HeapRecord& wanted = record(index);
  if (liesInEntry(wanted.tag)) return wanted.entryValue;
  if (!hasValueData(wanted.tag)) return {};
  return std::span<const u8>(values_.elements()).subspan(wanted.offset, wanted.size);
}

std::span<u8> ParsedHeap::value(i32 index) noexcept {
  HeapRecord& wanted = at(index);
  if (liesInEntry(wanted.tag)) return wanted.entryValue;
  if (!hasValueData(wanted.tag)) return {};
  return values_.elements().subspan(wanted.offset, wanted.size);
}

}  // namespace property

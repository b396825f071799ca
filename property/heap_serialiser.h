// From the records of a camera-data heap back to its bytes.
#pragma once

#include "property/parsed_heap.h"

namespace property {

// Bytes that the heap takes, the header included.
[[nodiscard]] host::u64 serialisedHeapLength(const ParsedHeap& heap) noexcept;

// target: as long as serialisedHeapLength() says, zeroed. In every block the values lie in the
// order of the records, each at an even offset, then the record table and its offset (CIFF).
void serialiseHeap(const ParsedHeap& heap, std::span<host::u8> target) noexcept;

}  // namespace property

// From the bytes of a camera-data heap to its records.
#pragma once

#include <optional>

#include "property/parsed_heap.h"

namespace property {

// payload: the whole heap, from its byte-order mark to the offset of the top block's record table.
// None when a value, a block or a record table is not inside the payload, or the heap has too many
// records, levels or bytes (silent), or memory cannot be had (reported). The header's own length is
// not read: the top block begins at byte 26 (CIFF heaps of JPEG files).
[[nodiscard]] std::optional<ParsedHeap> parseHeap(HMODULE resources,
                                                  std::span<const host::u8> payload) noexcept;

}  // namespace property

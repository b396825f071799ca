// One item out of the value of a record: an element, a text, a time.
#pragma once

#include <ctime>
#include <optional>
#include <string_view>

#include "property/parsed_heap.h"

namespace property {

using HeapValue = std::span<const host::u8>;

// The n-th element of that width; none when it does not lie inside the value whole.
[[nodiscard]] std::optional<host::u16> heapElement16(HeapValue value, host::u32 number) noexcept;
[[nodiscard]] std::optional<host::u32> heapElement32(HeapValue value, host::u32 number) noexcept;

// Where a text lies in a value.
struct HeapTextPart {
  std::size_t position;
  std::size_t length;  // without the NUL
  bool terminated;     // by a NUL inside the value
};

// The n-th of the texts packed in a value; the last may end with the value. None when the value
// ends before it.
[[nodiscard]] std::optional<HeapTextPart> findHeapText(HeapValue value, host::u32 number) noexcept;
// The text of an item in the text formats.
[[nodiscard]] std::optional<std::string_view> heapText(HeapValue value, HeapFormat format,
                                                       host::u32 number) noexcept;

// The time of an item, as the camera's clock showed it. None for a value that is too short or a
// time before 1970.
[[nodiscard]] std::optional<std::tm> heapTime(HeapValue value, host::u32 number) noexcept;

}  // namespace property

// The time of a camera-data heap as text, in the format of the resource library: six numbers,
// month, day, year, hour, minute, second.
#pragma once

#include <ctime>
#include <optional>
#include <string_view>

#include "host/types.h"

namespace property {

inline constexpr std::size_t heapDateCapacity = 128;
struct HeapDateText {
  char characters[heapDateCapacity];  // NUL-terminated
};

[[nodiscard]] HeapDateText printHeapDate(HMODULE resources, const std::tm& time) noexcept;

// The seconds of that local time. None for fewer than six numbers or a time that has none.
[[nodiscard]] std::optional<host::u32> readHeapDate(HMODULE resources,
                                                    std::string_view text) noexcept;

}  // namespace property

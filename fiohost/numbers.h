// Numbers as a user writes them.
#pragma once

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <vector>

#include "host/types.h"

namespace fiohost {

// A whole text that is a decimal number or, with 0x in front, a hexadecimal one; else none.
[[nodiscard]] inline std::optional<host::i64> parseInteger(std::string_view text) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  const char* end = text.data() + text.size();
  host::i64 number = 0;
  const auto [stop, error] =
      std::from_chars(text.data() + (hex ? 2 : 0), end, number, hex ? 16 : 10);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

// Numbers from 1 with commas between them, in the order given; else none.
[[nodiscard]] inline std::optional<std::vector<host::u32>> parseNumbers(std::string_view text) {
  std::vector<host::u32> numbers;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    const auto number = parseInteger(text.substr(start, comma - start));
    if (!number || *number < 1 || *number > 0xFFFFFFFF) return std::nullopt;
    numbers.push_back(static_cast<host::u32>(*number));
    start = comma + 1;
  }
  return numbers;
}

}  // namespace fiohost

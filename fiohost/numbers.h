// Numbers as a user writes them.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

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

}  // namespace fiohost

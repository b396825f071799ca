// Names in the order that people expect: "img9" before "img10", upper and lower case alike.
#pragma once

#include <string_view>

namespace fiohost::view {

// Runs of digits compare by their value; letters of A to Z without their case. Names that differ
// only in case or leading zeros still have an order.
[[nodiscard]] bool naturalLess(std::string_view a, std::string_view b);

}  // namespace fiohost::view

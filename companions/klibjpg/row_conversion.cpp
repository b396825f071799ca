#include "companions/klibjpg/row_conversion.h"

#include <cstring>

namespace klibjpg {

void invertInk(host::u8* target, const host::u8* source, std::size_t count) noexcept {
  // Eight amounts at a time: one subtraction from 255 is one complement.
  std::size_t at = 0;
  for (host::u64 eight; at + sizeof(eight) <= count; at += sizeof(eight)) {
    std::memcpy(&eight, source + at, sizeof(eight));
    eight = ~eight;
    std::memcpy(target + at, &eight, sizeof(eight));
  }
  for (; at < count; ++at) target[at] = static_cast<host::u8>(255 - source[at]);
}

}  // namespace klibjpg

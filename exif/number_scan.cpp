#include "exif/number_scan.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace exif {

using host::i32;
using host::u32;

std::optional<i32> NumberScan::decimal() noexcept {
  char* end = nullptr;
  const long long number = std::strtoll(rest_, &end, 10);
  if (end == rest_) return std::nullopt;
  rest_ = end;
  return static_cast<i32>(std::clamp<long long>(number, std::numeric_limits<i32>::min(),
                                                std::numeric_limits<i32>::max()));
}

std::optional<u32> NumberScan::hexadecimal() noexcept {
  char* end = nullptr;
  const unsigned long long number = std::strtoull(rest_, &end, 16);
  if (end == rest_) return std::nullopt;
  rest_ = end;
  return static_cast<u32>(std::min<unsigned long long>(number, std::numeric_limits<u32>::max()));
}

}  // namespace exif

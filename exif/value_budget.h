// How much one metadata segment may store.
#pragma once

#include "host/types.h"

namespace exif {

// A directory may name the same bytes tens of thousands of times, so that a small file asks for
// any amount of memory. No real segment comes near this.
inline constexpr host::u64 mostBytesOfSegment = host::u64{64} << 20;

// Counts the values stored from one segment. Once one did not fit, no later one is stored.
class ValueBudget {
 public:
  [[nodiscard]] bool take(host::u64 bytes) noexcept {
    if (bytes > left_) exhausted_ = true;
    if (exhausted_) return false;
    left_ -= bytes;
    return true;
  }

 private:
  host::u64 left_ = mostBytesOfSegment;
  bool exhausted_ = false;
};

}  // namespace exif

// Numbers in texts, as scanf reads them, in the 32 bits that a host's long has. Whatever the text
// is, the result is defined: what lies beyond the range becomes its end.
#pragma once

#include <optional>

#include "host/types.h"

namespace exif {

class NumberScan {
 public:
  // text: NUL-terminated; must outlive this object.
  explicit NumberScan(const char* text) noexcept : rest_(text) {}

  // White space, a sign and digits. None, with nothing consumed, when no digit is there.
  [[nodiscard]] std::optional<host::i32> decimal() noexcept;
  [[nodiscard]] std::optional<host::u32> hexadecimal() noexcept;
  // Any one character; does nothing at the end.
  void skipCharacter() noexcept {
    if (*rest_ != '\0') ++rest_;
  }

 private:
  const char* rest_;
};

}  // namespace exif

// Texts of the resource library.
#pragma once

#include <string>

#include "platform/system.h"

namespace frame {

// A string by its number; empty when the library has none.
[[nodiscard]] inline std::string resourceText(HMODULE resources, UINT id) {
  char text[260] = {};
  LoadStringA(resources, id, text, sizeof text);
  return text;
}

}  // namespace frame

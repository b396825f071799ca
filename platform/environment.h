// Environment variables as text.
#pragma once

#include <string>

#include "platform/system.h"

namespace platform {

// The value of a variable as it is now; empty when it is not set.
[[nodiscard]] inline std::string environmentValue(const char* name) {
  const DWORD needed = GetEnvironmentVariableA(name, nullptr, 0);
  if (needed == 0) return {};
  std::string value(needed, '\0');
  const DWORD length = GetEnvironmentVariableA(name, value.data(), needed);
  value.resize(length < needed ? length : 0);
  return value;
}

}  // namespace platform

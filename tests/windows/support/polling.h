// Waiting for what another thread or process does: by looking again, never by a fixed sleep.
#pragma once

#include <chrono>

#include "platform/system.h"

namespace test {

// Far more than a loaded machine needs. Reaching it is a failure.
inline constexpr std::chrono::milliseconds patience{20000};

// True as soon as the condition holds, false when it did not hold in time.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition, std::chrono::milliseconds limit = patience) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return condition();
    Sleep(5);
  }
  return true;
}

}  // namespace test

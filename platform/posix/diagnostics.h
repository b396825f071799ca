// What the process holds at the moment, for leak checks, and a way to make allocations fail.
#pragma once

#include <cstddef>

namespace platform::posix {

struct LiveCounts {
  std::size_t blocks = 0;  // global memory, fixed and movable
  std::size_t locks = 0;   // locks on movable blocks, all together
  std::size_t files = 0;
  std::size_t mappings = 0;
  std::size_t views = 0;

  bool operator==(const LiveCounts&) const = default;
};

[[nodiscard]] LiveCounts liveCounts() noexcept;

// Asked before every allocation and reallocation of global memory with its size in bytes; false
// makes it fail as if there were no memory. Null removes it. May be called from several threads.
using AllocationFilter = bool (*)(std::size_t size);
void setAllocationFilter(AllocationFilter filter) noexcept;

}  // namespace platform::posix

// What global memory tells diagnostics.
#pragma once

#include <cstddef>

namespace platform::posix {

struct LiveBlocks {
  std::size_t blocks = 0;
  std::size_t locks = 0;
};

[[nodiscard]] LiveBlocks liveBlocks();

}  // namespace platform::posix

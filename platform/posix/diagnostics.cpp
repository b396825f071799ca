#include "platform/posix/diagnostics.h"

#include "platform/posix/live_blocks.h"
#include "platform/posix/objects.h"

namespace platform::posix {

LiveCounts liveCounts() noexcept {
  const LiveBlocks memory = liveBlocks();
  LiveCounts live;
  live.blocks = memory.blocks;
  live.locks = memory.locks;
  Objects::instance().count(live);
  return live;
}

}  // namespace platform::posix

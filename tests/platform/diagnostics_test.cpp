#include "platform/posix/diagnostics.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/global_memory.h"
#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

using platform::posix::LiveCounts;
using platform::posix::liveCounts;

LiveCounts since(const LiveCounts& before) {
  const LiveCounts now = liveCounts();
  return {now.blocks - before.blocks, now.locks - before.locks, now.files - before.files,
          now.mappings - before.mappings, now.views - before.views};
}

TEST(Diagnostics, BlocksAndLocksAreCounted) {
  const LiveCounts before = liveCounts();
  {
    const platform::OwnedGlobal fixed(GMEM_FIXED, 10);
    const platform::OwnedGlobal movable(GMEM_MOVEABLE, 10);
    const platform::LockedGlobal first(movable.get());
    const platform::LockedGlobal second(movable.get());
    const platform::LockedGlobal third(fixed.get());  // a fixed block has no lock count
    EXPECT_EQ(since(before), (LiveCounts{2, 2, 0, 0, 0}));
  }
  EXPECT_EQ(since(before), LiveCounts{});
}

TEST(Diagnostics, FreedBlockTakesItsLocksAlong) {
  const LiveCounts before = liveCounts();
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 10);
  GlobalLock(block);
  GlobalFree(block);
  EXPECT_EQ(since(before), LiveCounts{});
}

TEST(Diagnostics, FilesMappingsAndViewsAreCounted) {
  const TemporaryFolder folder;
  const LiveCounts before = liveCounts();
  const std::string path = folder.write("ten", "0123456789");
  {
    const OwnedHandle file = openForReading(path);
    const OwnedHandle mapping(
        CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    const void* view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
    EXPECT_EQ(since(before), (LiveCounts{0, 0, 1, 1, 1}));
    UnmapViewOfFile(view);
    EXPECT_EQ(since(before), (LiveCounts{0, 0, 1, 1, 0}));
  }
  EXPECT_EQ(since(before), LiveCounts{});
}

std::vector<std::size_t> askedSizes;

bool refuseAbove100(std::size_t size) {
  askedSizes.push_back(size);
  return size <= 100;
}

TEST(Diagnostics, FilterRefusesAllocations) {
  askedSizes.clear();
  platform::posix::setAllocationFilter(refuseAbove100);
  HGLOBAL small = GlobalAlloc(GMEM_MOVEABLE, 100);
  HGLOBAL large = GlobalAlloc(GMEM_FIXED, 101);
  HGLOBAL grown = GlobalReAlloc(small, 200, GMEM_MOVEABLE);
  platform::posix::setAllocationFilter(nullptr);
  EXPECT_NE(small, nullptr);
  EXPECT_EQ(large, nullptr);
  EXPECT_EQ(grown, nullptr);
  EXPECT_EQ(lastError(), 8u);
  EXPECT_EQ(GlobalSize(small), 100u);
  EXPECT_EQ(askedSizes, (std::vector<std::size_t>{100, 101, 200}));
  EXPECT_EQ(GlobalReAlloc(small, 200, GMEM_MOVEABLE), small);
  GlobalFree(small);
}

}  // namespace

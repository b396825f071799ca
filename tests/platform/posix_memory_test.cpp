#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "platform/global_memory.h"
#include "tests/platform/file_handle.h"

namespace {

TEST(PosixMemory, FreedAndForeignFixedBlocksAreRecognised) {
  HGLOBAL block = GlobalAlloc(GMEM_FIXED, 100);
  HGLOBAL freed = block;
  ASSERT_EQ(GlobalFree(block), nullptr);
  char foreign[16] = "not ours";
  for (HGLOBAL each : {freed, static_cast<HGLOBAL>(foreign), reinterpret_cast<HGLOBAL>(0x12345678),
                       INVALID_HANDLE_VALUE}) {
    EXPECT_EQ(GlobalLock(each), nullptr);
    EXPECT_EQ(lastError(), 6u);
    EXPECT_FALSE(GlobalUnlock(each));
    EXPECT_EQ(GlobalSize(each), 0u);
    EXPECT_EQ(GlobalFlags(each), GMEM_INVALID_HANDLE);
    EXPECT_EQ(GlobalReAlloc(each, 10, GMEM_MOVEABLE), nullptr);
    EXPECT_EQ(GlobalFree(each), each);
  }
  EXPECT_STREQ(foreign, "not ours");
}

TEST(PosixMemory, AddressInsideABlockIsNoHandle) {
  const platform::OwnedGlobal fixed(GMEM_FIXED, 100);
  const platform::OwnedGlobal movable(GMEM_MOVEABLE, 100);
  const platform::LockedGlobal locked(movable.get());
  EXPECT_EQ(GlobalFlags(static_cast<char*>(fixed.get()) + 16), GMEM_INVALID_HANDLE);
  EXPECT_EQ(GlobalFlags(locked.address()), GMEM_INVALID_HANDLE);
}

TEST(PosixMemory, BlocksThatMayNotMoveOnlyShrink) {
  const platform::OwnedGlobal fixed(GMEM_FIXED, 100);
  EXPECT_EQ(GlobalReAlloc(fixed.get(), 101, 0), nullptr);
  EXPECT_EQ(lastError(), 8u);
  EXPECT_EQ(GlobalReAlloc(fixed.get(), 50, 0), fixed.get());
  EXPECT_EQ(GlobalSize(fixed.get()), 50u);

  const platform::OwnedGlobal movable(GMEM_MOVEABLE, 100);
  {
    const platform::LockedGlobal locked(movable.get());
    EXPECT_EQ(GlobalReAlloc(movable.get(), 101, 0), nullptr);
    EXPECT_EQ(GlobalReAlloc(movable.get(), 0, 0), nullptr);  // nor is it discarded
  }
  EXPECT_EQ(GlobalReAlloc(movable.get(), 101, 0), movable.get());
}

TEST(PosixMemory, ReallocationAlwaysMoves) {
  const platform::OwnedGlobal block(GMEM_MOVEABLE, 100);
  const void* before = GlobalLock(block.get());
  GlobalUnlock(block.get());
  ASSERT_EQ(GlobalReAlloc(block.get(), 101, GMEM_MOVEABLE), block.get());
  EXPECT_NE(GlobalLock(block.get()), before);
  GlobalUnlock(block.get());
}

TEST(PosixMemory, MovableHandlesAreUsedOnce) {
  HGLOBAL first = GlobalAlloc(GMEM_MOVEABLE, 100);
  GlobalFree(first);
  for (int i = 0; i < 100; ++i) {
    const platform::OwnedGlobal later(GMEM_MOVEABLE, 100);
    EXPECT_NE(later.get(), first);
  }
}

TEST(PosixMemory, ThreadsUseBlocksTogether) {
  const platform::OwnedGlobal shared(GMEM_MOVEABLE, 100);
  const auto work = [&shared] {
    for (int i = 1; i < 500; ++i) {
      const platform::LockedGlobal locked(shared.get());
      platform::OwnedGlobal own(GMEM_MOVEABLE | GMEM_ZEROINIT, static_cast<std::size_t>(i));
      ASSERT_EQ(GlobalReAlloc(own.get(), 1000, GMEM_MOVEABLE), own.get());
      ASSERT_EQ(GlobalSize(own.get()), 1000u);
    }
  };
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(GlobalFlags(shared.get()) & GMEM_LOCKCOUNT, 0u);
}

}  // namespace

#include "platform/global_memory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

using platform::LockedGlobal;
using platform::OwnedGlobal;

std::uint8_t* bytesOf(void* address) { return static_cast<std::uint8_t*>(address); }

bool allAre(const void* address, std::size_t count, std::uint8_t value) {
  const auto* bytes = static_cast<const std::uint8_t*>(address);
  return std::all_of(bytes, bytes + count, [value](std::uint8_t byte) { return byte == value; });
}

TEST(GlobalMemory, FixedBlockIsItsAddress) {
  const OwnedGlobal block(GMEM_FIXED, 100);
  ASSERT_TRUE(block);
  EXPECT_EQ(GlobalLock(block.get()), block.get());
  EXPECT_TRUE(GlobalUnlock(block.get()));
  EXPECT_TRUE(GlobalUnlock(block.get()));  // has no count that could run out
  EXPECT_EQ(GlobalFlags(block.get()), 0u);
  EXPECT_EQ(GlobalSize(block.get()), 100u);
}

TEST(GlobalMemory, MovableHandleIsNotItsAddress) {
  const OwnedGlobal block(GMEM_MOVEABLE, 100);
  const LockedGlobal locked(block.get());
  ASSERT_TRUE(locked);
  EXPECT_NE(locked.address(), block.get());
  EXPECT_EQ(locked.size(), 100u);
}

TEST(GlobalMemory, AddressesAreMultiplesOf16) {
  for (const UINT flags : {UINT{GMEM_FIXED}, UINT{GMEM_MOVEABLE}}) {
    for (const std::size_t size : {1u, 17u, 1000u, 1000000u}) {
      const OwnedGlobal block(flags, size);
      const LockedGlobal locked(block.get());
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(locked.address()) % 16, 0u) << size;
    }
  }
}

TEST(GlobalMemory, ZeroedBlocksAreZero) {
  const OwnedGlobal fixed(platform::fixedZeroed, 5000);
  const OwnedGlobal movable(platform::movableZeroed, 5000);
  EXPECT_TRUE(allAre(fixed.get(), 5000, 0));
  EXPECT_TRUE(allAre(LockedGlobal(movable.get()).address(), 5000, 0));
}

TEST(GlobalMemory, LocksAreCounted) {
  const OwnedGlobal block(GMEM_MOVEABLE, 10);
  void* first = GlobalLock(block.get());
  EXPECT_EQ(GlobalLock(block.get()), first);
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 2u);
  EXPECT_TRUE(GlobalUnlock(block.get()));
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 1u);
  SetLastError(ERROR_INVALID_PARAMETER);
  EXPECT_FALSE(GlobalUnlock(block.get()));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(NO_ERROR));
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 0u);
}

TEST(GlobalMemory, UnlockingTooOftenIsToldAndChangesNothing) {
  const OwnedGlobal block(GMEM_MOVEABLE, 10);
  EXPECT_FALSE(GlobalUnlock(block.get()));
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_LOCKED));
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 0u);
}

TEST(GlobalMemory, LockCountEndsAt255) {
  const OwnedGlobal block(GMEM_MOVEABLE, 10);
  for (int i = 0; i < 300; ++i) GlobalLock(block.get());
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 255u);
}

TEST(GlobalMemory, GrowingKeepsTheContentAndZeroesTheRest) {
  OwnedGlobal block(GMEM_MOVEABLE, 100);
  std::memset(LockedGlobal(block.get()).address(), 7, 100);
  EXPECT_EQ(GlobalReAlloc(block.get(), 100000, GMEM_MOVEABLE | GMEM_ZEROINIT), block.get());
  EXPECT_EQ(GlobalSize(block.get()), 100000u);
  const LockedGlobal locked(block.get());
  EXPECT_TRUE(allAre(locked.address(), 100, 7));
  EXPECT_TRUE(allAre(bytesOf(locked.address()) + 100, 99900, 0));
}

TEST(GlobalMemory, ShrinkingAndGrowingAgainZeroesWhatWasCut) {
  OwnedGlobal block(GMEM_MOVEABLE, 100);
  std::memset(LockedGlobal(block.get()).address(), 7, 100);
  ASSERT_EQ(GlobalReAlloc(block.get(), 40, GMEM_MOVEABLE), block.get());
  EXPECT_EQ(GlobalSize(block.get()), 40u);
  ASSERT_EQ(GlobalReAlloc(block.get(), 100, GMEM_MOVEABLE | GMEM_ZEROINIT), block.get());
  const LockedGlobal locked(block.get());
  EXPECT_TRUE(allAre(locked.address(), 40, 7));
  EXPECT_TRUE(allAre(bytesOf(locked.address()) + 40, 60, 0));
}

TEST(GlobalMemory, LockedBlockGrowsWhenItMayMove) {
  OwnedGlobal block(GMEM_MOVEABLE, 100);
  std::memset(GlobalLock(block.get()), 9, 100);
  EXPECT_EQ(GlobalReAlloc(block.get(), 1000000, GMEM_MOVEABLE | GMEM_ZEROINIT), block.get());
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 1u);
  const LockedGlobal again(block.get());
  EXPECT_TRUE(allAre(again.address(), 100, 9));
  EXPECT_TRUE(allAre(bytesOf(again.address()) + 100, 999900, 0));
  GlobalUnlock(block.get());
}

TEST(GlobalMemory, FixedBlockGrowsWhenItMayMove) {
  HGLOBAL block = GlobalAlloc(GMEM_FIXED, 16);
  std::memset(block, 5, 16);
  HGLOBAL moved = GlobalReAlloc(block, 1000000, GMEM_MOVEABLE | GMEM_ZEROINIT);
  ASSERT_NE(moved, nullptr);
  EXPECT_EQ(GlobalLock(moved), moved);
  EXPECT_TRUE(allAre(moved, 16, 5));
  EXPECT_TRUE(allAre(bytesOf(moved) + 16, 999984, 0));
  EXPECT_EQ(GlobalFree(moved), nullptr);
}

TEST(GlobalMemory, BlockThatIsTooLargeIsRefused) {
  constexpr SIZE_T tooLarge = SIZE_T{1} << 60;
  EXPECT_EQ(GlobalAlloc(GMEM_FIXED, tooLarge), nullptr);
  EXPECT_EQ(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, tooLarge), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
}

TEST(GlobalMemory, BlockThatCannotGrowStaysAsItWas) {
  OwnedGlobal block(GMEM_MOVEABLE, 100);
  std::memset(LockedGlobal(block.get()).address(), 7, 100);
  EXPECT_EQ(GlobalReAlloc(block.get(), SIZE_T{1} << 60, GMEM_MOVEABLE), nullptr);
  EXPECT_EQ(GlobalSize(block.get()), 100u);
  EXPECT_TRUE(allAre(LockedGlobal(block.get()).address(), 100, 7));
}

TEST(GlobalMemory, MovableBlockWithoutBytesCannotBeLocked) {
  OwnedGlobal block(GMEM_MOVEABLE, 0);
  ASSERT_TRUE(block);
  EXPECT_EQ(GlobalSize(block.get()), 0u);
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_DISCARDED, GMEM_DISCARDED);
  EXPECT_EQ(GlobalLock(block.get()), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_DISCARDED));
  ASSERT_EQ(GlobalReAlloc(block.get(), 10, GMEM_MOVEABLE | GMEM_ZEROINIT), block.get());
  EXPECT_TRUE(allAre(LockedGlobal(block.get()).address(), 10, 0));
}

TEST(GlobalMemory, FixedBlockWithoutBytesHasAnAddress) {
  const OwnedGlobal block(GMEM_FIXED, 0);
  EXPECT_TRUE(block);
}

TEST(GlobalMemory, MovableBlockOfNoSizeIsDiscarded) {
  OwnedGlobal block(GMEM_MOVEABLE, 100);
  EXPECT_EQ(GlobalReAlloc(block.get(), 0, GMEM_MOVEABLE), block.get());
  EXPECT_EQ(GlobalSize(block.get()), 0u);
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_DISCARDED, GMEM_DISCARDED);
}

TEST(GlobalMemory, FreeingAnswersNull) {
  EXPECT_EQ(GlobalFree(GlobalAlloc(GMEM_FIXED, 1)), nullptr);
  EXPECT_EQ(GlobalFree(GlobalAlloc(GMEM_MOVEABLE, 1)), nullptr);
  EXPECT_EQ(GlobalFree(nullptr), nullptr);
}

TEST(GlobalMemory, FreedMovableHandleIsRecognised) {
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 100);
  ASSERT_EQ(GlobalFree(block), nullptr);
  EXPECT_EQ(GlobalLock(block), nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
  EXPECT_EQ(GlobalSize(block), 0u);
  EXPECT_EQ(GlobalFlags(block), static_cast<UINT>(GMEM_INVALID_HANDLE));
  EXPECT_FALSE(GlobalUnlock(block));
  EXPECT_EQ(GlobalReAlloc(block, 10, GMEM_MOVEABLE), nullptr);
  EXPECT_EQ(GlobalFree(block), block);
}

TEST(GlobalMemory, LockedBlockIsFreed) {
  HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 100);
  GlobalLock(block);
  EXPECT_EQ(GlobalFree(block), nullptr);
  EXPECT_EQ(GlobalFlags(block), static_cast<UINT>(GMEM_INVALID_HANDLE));
}

TEST(GlobalMemory, NullIsNoBlock) {
  EXPECT_EQ(GlobalLock(nullptr), nullptr);
  EXPECT_EQ(GlobalSize(nullptr), 0u);
  EXPECT_FALSE(GlobalUnlock(nullptr));
}

struct Record {
  std::uint32_t first;
  std::uint32_t second;
};

TEST(LockedGlobal, GivesARecordOnlyWhenTheBlockHoldsOne) {
  const OwnedGlobal large(platform::movableZeroed, sizeof(Record));
  const OwnedGlobal small(platform::movableZeroed, sizeof(Record) - 1);
  EXPECT_NE(LockedGlobal(large.get()).as<Record>(), nullptr);
  EXPECT_EQ(LockedGlobal(small.get()).as<Record>(), nullptr);
  EXPECT_EQ(LockedGlobal(nullptr).as<Record>(), nullptr);
}

TEST(LockedGlobal, UnlocksOnceWhenItGoes) {
  const OwnedGlobal block(GMEM_MOVEABLE, 10);
  {
    LockedGlobal locked(block.get());
    const LockedGlobal taken(std::move(locked));
    EXPECT_TRUE(taken);
    EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 1u);
  }
  EXPECT_EQ(GlobalFlags(block.get()) & GMEM_LOCKCOUNT, 0u);
}

TEST(OwnedGlobal, FreesWhatItStillOwns) {
  HGLOBAL kept = nullptr;
  HGLOBAL freed = nullptr;
  {
    OwnedGlobal released(GMEM_MOVEABLE, 10);
    const OwnedGlobal owned(GMEM_MOVEABLE, 10);
    kept = released.release();
    freed = owned.get();
  }
  EXPECT_EQ(GlobalFlags(freed), static_cast<UINT>(GMEM_INVALID_HANDLE));
  EXPECT_EQ(GlobalFlags(kept), 0u);
  GlobalFree(kept);
}

}  // namespace

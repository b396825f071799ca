#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "platform/posix/diagnostics.h"
#include "platform/posix/errors.h"
#include "platform/posix/live_blocks.h"

namespace platform::posix {
namespace {

// More than any machine has, and little enough for every allocator to refuse it in good order.
constexpr SIZE_T largestSize = SIZE_T{1} << 38;

std::atomic<AllocationFilter> allocationFilter = nullptr;

struct ReleaseBytes {
  void operator()(void* bytes) const noexcept { std::free(bytes); }
};
using Bytes = std::unique_ptr<void, ReleaseBytes>;

bool mayAllocate(SIZE_T size) {
  const AllocationFilter filter = allocationFilter.load();
  return size <= largestSize && (filter == nullptr || filter(size));
}

// Null when there is no memory. A block without bytes has an address as well.
Bytes allocateBytes(SIZE_T size, bool zeroed) {
  if (!mayAllocate(size)) return nullptr;
  const SIZE_T atLeastOne = size != 0 ? size : 1;
  return Bytes(zeroed ? std::calloc(1, atLeastOne) : std::malloc(atLeastOne));
}

struct Block {
  Bytes bytes;  // null when a movable block is discarded: it has a handle but no bytes
  SIZE_T size = 0;
  UINT locks = 0;
  bool movable = false;
};

// The blocks by handle. A fixed block's handle is its address, a multiple of 16. A movable block's
// handle is a number that is used once and ends in 8, so that it is never an address of a block.
class Blocks {
 public:
  static Blocks& instance() {
    static Blocks& blocks = *new Blocks;  // outlives every caller, static objects included
    return blocks;
  }

  HGLOBAL allocate(UINT flags, SIZE_T size);
  HGLOBAL reallocate(HGLOBAL handle, SIZE_T size, UINT flags);
  void* lock(HGLOBAL handle);
  BOOL unlock(HGLOBAL handle);
  SIZE_T size(HGLOBAL handle);
  UINT flags(HGLOBAL handle);
  HGLOBAL free(HGLOBAL handle);
  LiveBlocks live();

 private:
  using Guard = std::lock_guard<std::mutex>;
  using Entry = std::unordered_map<HGLOBAL, Block>::iterator;

  // The entry of a handle; blocks_.end(), with the last error set, for any other value.
  Entry find(HGLOBAL handle) {
    const Entry entry = blocks_.find(handle);
    if (entry == blocks_.end()) SetLastError(ERROR_INVALID_HANDLE);
    return entry;
  }
  HGLOBAL discard(HGLOBAL handle, Block& block);
  HGLOBAL resize(Entry entry, Bytes bytes, SIZE_T size);

  std::mutex mutex_;
  std::unordered_map<HGLOBAL, Block> blocks_;
  UINT_PTR nextHandle_ = 0x10008;
};

HGLOBAL Blocks::allocate(UINT flags, SIZE_T size) {
  Block block;
  block.size = size;
  block.movable = (flags & GMEM_MOVEABLE) != 0;
  if (!block.movable || size != 0) {
    block.bytes = allocateBytes(size, (flags & GMEM_ZEROINIT) != 0);
    if (block.bytes == nullptr) return failWith(ERROR_NOT_ENOUGH_MEMORY, HGLOBAL{});
  }
  const Guard guard(mutex_);
  HGLOBAL handle = block.bytes.get();
  if (block.movable) {
    handle = reinterpret_cast<HGLOBAL>(nextHandle_);
    nextHandle_ += 16;
  }
  blocks_.emplace(handle, std::move(block));
  return handle;
}

HGLOBAL Blocks::discard(HGLOBAL handle, Block& block) {
  if (block.locks != 0) return failWith(ERROR_INVALID_PARAMETER, HGLOBAL{});
  block.bytes.reset();
  block.size = 0;
  return handle;
}

HGLOBAL Blocks::resize(Entry entry, Bytes bytes, SIZE_T size) {
  Block& block = entry->second;
  if (block.bytes != nullptr) {
    std::memcpy(bytes.get(), block.bytes.get(), std::min(block.size, size));
  }
  block.size = size;
  block.bytes.swap(bytes);
  if (block.movable) return entry->first;
  auto node = blocks_.extract(entry);
  node.key() = node.mapped().bytes.get();
  return blocks_.insert(std::move(node)).position->first;
}

HGLOBAL Blocks::reallocate(HGLOBAL handle, SIZE_T size, UINT flags) {
  const Guard guard(mutex_);
  const Entry entry = find(handle);
  if (entry == blocks_.end()) return nullptr;
  Block& block = entry->second;
  if (block.movable && size == 0) return discard(handle, block);

  const bool mayMove = (flags & GMEM_MOVEABLE) != 0 || (block.movable && block.locks == 0);
  if (!mayMove) {
    if (size > block.size) return failWith(ERROR_NOT_ENOUGH_MEMORY, HGLOBAL{});
    block.size = size;
    return handle;
  }
  // Always a new place: an address kept across a reallocation is a mistake that should show.
  Bytes bytes = allocateBytes(size, (flags & GMEM_ZEROINIT) != 0);
  if (bytes == nullptr) return failWith(ERROR_NOT_ENOUGH_MEMORY, HGLOBAL{});
  return resize(entry, std::move(bytes), size);
}

void* Blocks::lock(HGLOBAL handle) {
  const Guard guard(mutex_);
  const Entry entry = find(handle);
  if (entry == blocks_.end()) return nullptr;
  Block& block = entry->second;
  if (block.bytes == nullptr) return failWith<void*>(ERROR_DISCARDED, nullptr);
  if (block.movable && block.locks < GMEM_LOCKCOUNT) ++block.locks;
  return block.bytes.get();
}

BOOL Blocks::unlock(HGLOBAL handle) {
  const Guard guard(mutex_);
  const Entry entry = find(handle);
  if (entry == blocks_.end()) return FALSE;
  Block& block = entry->second;
  if (!block.movable) return TRUE;
  if (block.locks == 0) return failWith(ERROR_NOT_LOCKED, FALSE);
  if (--block.locks != 0) return TRUE;
  return failWith(NO_ERROR, FALSE);
}

SIZE_T Blocks::size(HGLOBAL handle) {
  const Guard guard(mutex_);
  const Entry entry = find(handle);
  return entry != blocks_.end() ? entry->second.size : 0;
}

UINT Blocks::flags(HGLOBAL handle) {
  const Guard guard(mutex_);
  const Entry entry = find(handle);
  if (entry == blocks_.end()) return GMEM_INVALID_HANDLE;
  return entry->second.locks | (entry->second.bytes == nullptr ? GMEM_DISCARDED : 0);
}

HGLOBAL Blocks::free(HGLOBAL handle) {
  if (handle == nullptr) return nullptr;
  decltype(blocks_)::node_type released;  // its memory goes when the lock is free again
  const Guard guard(mutex_);
  const Entry entry = find(handle);
  if (entry == blocks_.end()) return handle;
  released = blocks_.extract(entry);
  return nullptr;
}

LiveBlocks Blocks::live() {
  const Guard guard(mutex_);
  LiveBlocks live{blocks_.size(), 0};
  for (const auto& [handle, block] : blocks_) live.locks += block.locks;
  return live;
}

}  // namespace

LiveBlocks liveBlocks() { return Blocks::instance().live(); }

void setAllocationFilter(AllocationFilter filter) noexcept { allocationFilter.store(filter); }

}  // namespace platform::posix

using namespace platform::posix;

HGLOBAL GlobalAlloc(UINT flags, SIZE_T size) noexcept {
  return guarded(HGLOBAL{}, [=] { return Blocks::instance().allocate(flags, size); });
}

HGLOBAL GlobalReAlloc(HGLOBAL block, SIZE_T size, UINT flags) noexcept {
  return guarded(HGLOBAL{}, [=] { return Blocks::instance().reallocate(block, size, flags); });
}

LPVOID GlobalLock(HGLOBAL block) noexcept { return Blocks::instance().lock(block); }

BOOL GlobalUnlock(HGLOBAL block) noexcept { return Blocks::instance().unlock(block); }

SIZE_T GlobalSize(HGLOBAL block) noexcept { return Blocks::instance().size(block); }

UINT GlobalFlags(HGLOBAL block) noexcept { return Blocks::instance().flags(block); }

HGLOBAL GlobalFree(HGLOBAL block) noexcept { return Blocks::instance().free(block); }

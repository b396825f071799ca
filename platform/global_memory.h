// Owner types for the system's global memory: records travel by handle and are locked while used.
#pragma once

#include <cstddef>
#include <utility>

#include "platform/system.h"

namespace platform {

inline constexpr UINT movableZeroed = GMEM_MOVEABLE | GMEM_ZEROINIT;  // records that cross the edge
inline constexpr UINT fixedZeroed = GMEM_FIXED | GMEM_ZEROINIT;       // scratch and data blocks

// A lock on a block that somebody else owns. False when the handle is null or cannot be locked.
class LockedGlobal {
 public:
  LockedGlobal() = default;
  explicit LockedGlobal(HGLOBAL handle) noexcept
      : handle_(handle), address_(handle != nullptr ? GlobalLock(handle) : nullptr) {}
  LockedGlobal(LockedGlobal&& other) noexcept
      : handle_(std::exchange(other.handle_, nullptr)),
        address_(std::exchange(other.address_, nullptr)) {}
  LockedGlobal& operator=(LockedGlobal&& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(address_, other.address_);
    return *this;
  }
  ~LockedGlobal() { unlock(); }

  void unlock() noexcept {
    if (address_ != nullptr) GlobalUnlock(handle_);
    address_ = nullptr;
  }

  // Gives the lock up without taking it back.
  void abandon() noexcept { address_ = nullptr; }

  explicit operator bool() const noexcept { return address_ != nullptr; }
  [[nodiscard]] void* address() const noexcept { return address_; }
  // Bytes that the block really has.
  [[nodiscard]] std::size_t size() const noexcept { return GlobalSize(handle_); }
  // The block as a record, or null when it is too small to be one.
  template <typename Record>
  [[nodiscard]] Record* as() const noexcept {
    return address_ != nullptr && size() >= sizeof(Record) ? static_cast<Record*>(address_)
                                                           : nullptr;
  }

 private:
  HGLOBAL handle_ = nullptr;
  void* address_ = nullptr;
};

// A block that this code owns until it is released to somebody else.
class OwnedGlobal {
 public:
  OwnedGlobal() = default;
  OwnedGlobal(UINT flags, std::size_t size) noexcept : handle_(GlobalAlloc(flags, size)) {}
  // Takes over a block that was received.
  explicit OwnedGlobal(HGLOBAL received) noexcept : handle_(received) {}
  OwnedGlobal(OwnedGlobal&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  OwnedGlobal& operator=(OwnedGlobal&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OwnedGlobal() { reset(); }

  void reset() noexcept {
    if (handle_ != nullptr) GlobalFree(handle_);
    handle_ = nullptr;
  }

  explicit operator bool() const noexcept { return handle_ != nullptr; }
  [[nodiscard]] HGLOBAL get() const noexcept { return handle_; }
  [[nodiscard]] HGLOBAL release() noexcept { return std::exchange(handle_, nullptr); }

 private:
  HGLOBAL handle_ = nullptr;
};

}  // namespace platform

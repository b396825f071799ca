// An array in a fixed global block that grows in steps, without exceptions.
#pragma once

#include <algorithm>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

#include "platform/global_memory.h"

namespace property {

template <typename Element>
class GrowingBlock {
  static_assert(std::is_trivially_copyable_v<Element>);

 public:
  GrowingBlock() = default;
  GrowingBlock(GrowingBlock&& other) noexcept
      : block_(std::move(other.block_)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)) {}
  GrowingBlock& operator=(GrowingBlock&&) = delete;

  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] std::size_t capacity() const noexcept { return capacity_; }
  [[nodiscard]] std::span<Element> elements() const noexcept {
    return {static_cast<Element*>(block_.get()), size_};
  }

  // Makes the array that long; new elements are zero. The capacity becomes a multiple of step.
  // False, with nothing changed, without memory.
  [[nodiscard]] bool resize(std::size_t size, std::size_t step) noexcept {
    if (size > capacity_ && !reserve((size + step - 1) / step * step)) return false;
    if (size > size_) {
      std::memset(static_cast<void*>(elements().data() + size_), 0,
                  (size - size_) * sizeof(Element));
    }
    size_ = size;
    return true;
  }

 private:
  bool reserve(std::size_t capacity) noexcept {
    platform::OwnedGlobal grown(platform::fixedZeroed, capacity * sizeof(Element));
    if (!grown) return false;
    if (size_ != 0) std::memcpy(grown.get(), block_.get(), size_ * sizeof(Element));
    block_ = std::move(grown);
    capacity_ = capacity;
    return true;
  }

  platform::OwnedGlobal block_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace property

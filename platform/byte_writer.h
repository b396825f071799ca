// The writing twin of the byte reader: numbers in a chosen order, and slots filled in later.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "platform/byte_reader.h"

namespace platform {

// Fills a block that somebody else keeps, from its first byte on. What does not fit is counted but
// not written, so a writer without a block tells how large one must be: size and content come from
// the same code.
class ByteWriter {
 public:
  // A 32-bit place whose value is known later.
  struct Slot {
    std::size_t position;
  };

  ByteWriter(std::span<std::uint8_t> block, ByteOrder order) noexcept
      : block_(block), order_(order) {}

  void u8(std::uint8_t value) noexcept { number(value, sizeof value); }
  void u16(std::uint16_t value) noexcept { number(value, sizeof value); }
  void u32(std::uint32_t value) noexcept { number(value, sizeof value); }
  void bytes(std::span<const std::uint8_t> values) noexcept {
    if (fits(size_, values.size()) && !values.empty()) {
      std::memcpy(block_.data() + size_, values.data(), values.size());
    }
    size_ += values.size();
  }
  void zeros(std::size_t count) noexcept {
    if (fits(size_, count) && count != 0) std::memset(block_.data() + size_, 0, count);
    size_ += count;
  }

  [[nodiscard]] Slot slot32() noexcept {
    const Slot slot{size_};
    u32(0);
    return slot;
  }
  void patch(Slot slot, std::uint32_t value) noexcept { store(slot.position, value, sizeof value); }

  // Bytes asked to be written so far.
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  // True when all of them were.
  [[nodiscard]] bool complete() const noexcept { return size_ <= block_.size(); }

 private:
  [[nodiscard]] bool fits(std::size_t position, std::size_t count) const noexcept {
    return position <= block_.size() && count <= block_.size() - position;
  }
  void number(std::uint32_t value, std::size_t count) noexcept {
    store(size_, value, count);
    size_ += count;
  }
  void store(std::size_t position, std::uint32_t value, std::size_t count) noexcept {
    if (!fits(position, count)) return;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t at = order_ == ByteOrder::big ? count - 1 - i : i;
      block_[position + at] = static_cast<std::uint8_t>(value >> (8 * i));
    }
  }

  std::span<std::uint8_t> block_;
  ByteOrder order_;
  std::size_t size_ = 0;
};

}  // namespace platform

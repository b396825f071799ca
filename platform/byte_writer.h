// The writing twin of the byte reader: numbers in a chosen order, and slots filled in later.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "platform/byte_reader.h"

namespace platform {

// Fills a block that somebody else keeps, from its first byte on. What does not fit is counted but
// not written, so a writer without a block tells how large one must be: size and content come from
// the same code.
class ByteWriter {
 public:
  // A place whose value is known later.
  struct Slot {
    std::size_t position;
    std::size_t width;  // bytes; of a value only the lowest so many are kept
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
  // The characters alone, without a NUL.
  void text(std::string_view characters) noexcept {
    bytes({reinterpret_cast<const std::uint8_t*>(characters.data()), characters.size()});
  }
  void zeros(std::size_t count) noexcept {
    if (fits(size_, count) && count != 0) std::memset(block_.data() + size_, 0, count);
    size_ += count;
  }

  // The next so many bytes for somebody else to fill; empty when they do not fit.
  [[nodiscard]] std::span<std::uint8_t> room(std::size_t count) noexcept {
    const std::size_t position = size_;
    size_ += count;
    return fits(position, count) ? block_.subspan(position, count) : std::span<std::uint8_t>{};
  }

  [[nodiscard]] Slot slot8() noexcept { return slot(1); }
  [[nodiscard]] Slot slot16() noexcept { return slot(2); }
  [[nodiscard]] Slot slot32() noexcept { return slot(4); }
  void patch(Slot slot, std::uint32_t value) noexcept { store(slot.position, value, slot.width); }

  // Bytes asked to be written so far.
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  // True when all of them were.
  [[nodiscard]] bool complete() const noexcept { return size_ <= block_.size(); }

 private:
  [[nodiscard]] bool fits(std::size_t position, std::size_t count) const noexcept {
    return position <= block_.size() && count <= block_.size() - position;
  }
  [[nodiscard]] Slot slot(std::size_t width) noexcept {
    const Slot slot{size_, width};
    number(0, width);
    return slot;
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

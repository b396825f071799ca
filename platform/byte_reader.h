// The bounds-checked window through which all file bytes are read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace platform {

enum class ByteOrder { little, big };

// A window over bytes that somebody else keeps. Offsets count from the window's first byte and may
// come straight from a file: what does not lie inside the window whole is absent, and a sub-reader
// cannot leave its parent.
class ByteReader {
 public:
  ByteReader(std::span<const std::uint8_t> bytes, ByteOrder order) noexcept
      : bytes_(bytes), order_(order) {}

  [[nodiscard]] std::size_t size() const noexcept { return bytes_.size(); }
  [[nodiscard]] ByteOrder order() const noexcept { return order_; }
  // The same bytes in another order, for values whose order does not follow the file's.
  [[nodiscard]] ByteReader as(ByteOrder order) const noexcept { return {bytes_, order}; }

  [[nodiscard]] bool contains(std::uint64_t offset, std::uint64_t length) const noexcept {
    return offset <= bytes_.size() && length <= bytes_.size() - offset;
  }
  [[nodiscard]] std::optional<std::uint8_t> u8(std::uint64_t offset) const noexcept {
    return number<std::uint8_t>(offset);
  }
  [[nodiscard]] std::optional<std::uint16_t> u16(std::uint64_t offset) const noexcept {
    return number<std::uint16_t>(offset);
  }
  [[nodiscard]] std::optional<std::uint32_t> u32(std::uint64_t offset) const noexcept {
    return number<std::uint32_t>(offset);
  }
  [[nodiscard]] std::optional<std::span<const std::uint8_t>> bytes(
      std::uint64_t offset, std::uint64_t length) const noexcept {
    if (!contains(offset, length)) return std::nullopt;
    return bytes_.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
  }
  [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return bytes_; }
  [[nodiscard]] std::optional<ByteReader> sub(std::uint64_t offset,
                                              std::uint64_t length) const noexcept {
    const auto part = bytes(offset, length);
    if (!part) return std::nullopt;
    return ByteReader(*part, order_);
  }

 private:
  template <typename Number>
  [[nodiscard]] std::optional<Number> number(std::uint64_t offset) const noexcept {
    if (!contains(offset, sizeof(Number))) return std::nullopt;
    const std::size_t first = static_cast<std::size_t>(offset);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
      const std::size_t at = order_ == ByteOrder::big ? i : sizeof(Number) - 1 - i;
      value = value << 8 | bytes_[first + at];
    }
    return static_cast<Number>(value);
  }

  std::span<const std::uint8_t> bytes_;
  ByteOrder order_;
};

}  // namespace platform

// A text of at most 256 bytes, the room that every value of a list has.
#pragma once

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace exif {

class DisplayText {
 public:
  static constexpr std::size_t capacity = 256;

  DisplayText() = default;
  explicit DisplayText(std::string_view text) noexcept { append(text); }

  // Ends with a NUL, which does not count.
  [[nodiscard]] const char* c_str() const noexcept { return bytes_.data(); }
  // Up to the first NUL.
  [[nodiscard]] std::string_view view() const noexcept { return bytes_.data(); }
  [[nodiscard]] std::size_t size() const noexcept { return std::strlen(bytes_.data()); }
  [[nodiscard]] bool empty() const noexcept { return bytes_[0] == '\0'; }

  void clear() noexcept { bytes_.fill('\0'); }
  // What does not fit is left out.
  void append(std::string_view text) noexcept {
    const std::size_t length = size();
    std::copy_n(text.data(), std::min(text.size(), capacity - length), bytes_.data() + length);
  }
  // Appends as printf does.
  [[gnu::format(printf, 2, 3)]] void print(const char* format, ...) noexcept {
    const std::size_t length = size();
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(bytes_.data() + length, bytes_.size() - length, format, values);
    va_end(values);
  }

 private:
  std::array<char, capacity + 1> bytes_ = {};
};

}  // namespace exif

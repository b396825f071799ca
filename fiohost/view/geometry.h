// Places and sizes in pixels of a window or a picture; x to the right, y downwards.
#pragma once

namespace fiohost::view {

struct Extent {
  int width = 0;
  int height = 0;

  [[nodiscard]] bool empty() const noexcept { return width <= 0 || height <= 0; }
  friend bool operator==(const Extent&, const Extent&) = default;
};

struct Place {
  int x = 0;
  int y = 0;

  friend bool operator==(const Place&, const Place&) = default;
};

struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  [[nodiscard]] bool contains(const Place& place) const noexcept {
    return place.x >= left && place.x < left + width && place.y >= top && place.y < top + height;
  }
  [[nodiscard]] Extent extent() const noexcept { return {width, height}; }
  friend bool operator==(const Box&, const Box&) = default;
};

// A length drawn for 96 dots per inch, at another resolution.
[[nodiscard]] constexpr int scaledLength(int length, int dpi) noexcept {
  constexpr int plain = 96;
  return (length * dpi + plain / 2) / plain;
}

}  // namespace fiohost::view

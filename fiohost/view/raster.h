// A decoded picture in memory, as screens take it.
#pragma once

#include <cstdint>
#include <vector>

#include "fiohost/view/geometry.h"

namespace fiohost::view {

// A pixel is 0x00RRGGBB, which in memory is the blue, green, red, 0 of a 32-bit DIB.
using Pixel = std::uint32_t;

[[nodiscard]] constexpr Pixel pixelOf(unsigned red, unsigned green, unsigned blue) noexcept {
  return red << 16 | green << 8 | blue;
}
[[nodiscard]] constexpr unsigned redOf(Pixel pixel) noexcept { return pixel >> 16 & 0xFF; }
[[nodiscard]] constexpr unsigned greenOf(Pixel pixel) noexcept { return pixel >> 8 & 0xFF; }
[[nodiscard]] constexpr unsigned blueOf(Pixel pixel) noexcept { return pixel & 0xFF; }

struct Raster {
  Extent size;
  std::vector<Pixel> pixels;  // rows from the top without gaps

  Raster() = default;
  // Black. Throws std::bad_alloc.
  explicit Raster(const Extent& extent) : size(extent) {
    if (!extent.empty())
      pixels.resize(std::size_t{1} * unsignedOf(extent.width) * unsignedOf(extent.height));
  }

  [[nodiscard]] Pixel* row(int y) noexcept { return pixels.data() + offset(y); }
  [[nodiscard]] const Pixel* row(int y) const noexcept { return pixels.data() + offset(y); }
  [[nodiscard]] Pixel at(int x, int y) const noexcept { return row(y)[x]; }
  friend bool operator==(const Raster&, const Raster&) = default;

 private:
  static constexpr std::size_t unsignedOf(int value) noexcept {
    return static_cast<std::size_t>(value);
  }
  [[nodiscard]] std::size_t offset(int y) const noexcept {
    return unsignedOf(y) * unsignedOf(size.width);
  }
};

}  // namespace fiohost::view

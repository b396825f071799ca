#include "fiohost/view/stereo.h"

#include <algorithm>

namespace fiohost::view {
namespace {

// The left eye's red comes from its green and blue, which keeps the red of one picture and the
// cyan of the other from flickering between the eyes ("optimised" anaglyph).
Pixel anaglyph(Pixel left, Pixel right) {
  const unsigned red = (7 * greenOf(left) + 3 * blueOf(left) + 5) / 10;
  return pixelOf(red, greenOf(right), blueOf(right));
}

void copyRow(const Raster& source, int row, int shift, int width, Pixel* target) {
  const int first = std::max(0, shift);
  const int last = std::min(width, width + shift);
  if (first >= last) return;
  const Pixel* begin = source.row(row) + (first - shift);
  std::copy(begin, begin + (last - first), target + first);
}

class Composer {
 public:
  Composer(const Raster& left, const Raster& right, int parallax)
      : left_(left),
        right_(right),
        parallax_(parallax),
        size_{std::min(left.size.width, right.size.width),
              std::min(left.size.height, right.size.height)} {}

  [[nodiscard]] Raster one(bool ofLeft) const {
    Raster result(size_);
    for (int y = 0; y < size_.height; ++y) put(ofLeft, y, result.row(y));
    return result;
  }

  // Where one eye would have nothing, neither gets anything.
  [[nodiscard]] Raster mixed() const {
    Raster result = one(false);
    const int first = std::clamp(parallax_, 0, size_.width);
    const int last = std::clamp(size_.width + parallax_, first, size_.width);
    for (int y = 0; y < size_.height; ++y) {
      const Pixel* left = left_.row(y);
      Pixel* row = result.row(y) + first;
      std::transform(left + first, left + last, row, row, &anaglyph);
    }
    return result;
  }

  [[nodiscard]] Raster beside(bool leftFirst) const {
    Raster result({2 * size_.width, size_.height});
    for (int y = 0; y < size_.height; ++y) {
      put(leftFirst, y, result.row(y));
      put(!leftFirst, y, result.row(y) + size_.width);
    }
    return result;
  }

 private:
  void put(bool ofLeft, int row, Pixel* target) const {
    copyRow(ofLeft ? left_ : right_, row, ofLeft ? 0 : parallax_, size_.width, target);
  }

  const Raster& left_;
  const Raster& right_;
  int parallax_;
  Extent size_;
};

}  // namespace

Extent composedSize(StereoMode mode, const Extent& one) noexcept {
  const bool beside = mode == StereoMode::sideBySide || mode == StereoMode::crossEyed;
  return {beside ? 2 * one.width : one.width, one.height};
}

Raster composeStereo(StereoMode mode, const Raster& left, const Raster& right, int parallax,
                     unsigned frame) {
  const Composer composer(left, right, parallax);
  switch (mode) {
    case StereoMode::anaglyph:
      return composer.mixed();
    case StereoMode::sideBySide:
      return composer.beside(true);
    case StereoMode::crossEyed:
      return composer.beside(false);
    case StereoMode::wiggle:
      return composer.one(frame % 2 == 0);
    case StereoMode::off:
      break;
  }
  return left;
}

}  // namespace fiohost::view

// How a stored picture is turned to be seen: the eight orientations of TIFF 6.0 and EXIF 2.32,
// tag 0x0112.
#pragma once

#include <cstddef>

#include "fiohost/view/geometry.h"

namespace fiohost::view {

class Orientation {
 public:
  // value is the tag's, 1 to 8; any other counts as 1, as stored.
  constexpr explicit Orientation(unsigned value = 1) noexcept
      : value_(value >= 1 && value <= 8 ? value : 1) {}

  [[nodiscard]] constexpr unsigned value() const noexcept { return value_; }
  // The size of the turned picture.
  [[nodiscard]] Extent shownSize(const Extent& stored) const noexcept;
  // Where a stored pixel lies in the turned picture.
  [[nodiscard]] Place shownPlace(const Extent& stored, const Place& place) const noexcept;

  friend bool operator==(const Orientation&, const Orientation&) = default;

 private:
  unsigned value_;
};

// A stored row in the turned picture, whose pixels are numbered row by row.
struct RowPath {
  std::ptrdiff_t start;  // of the row's first pixel
  std::ptrdiff_t step;   // to the next one
};
[[nodiscard]] RowPath rowPath(Orientation orientation, const Extent& stored, int row) noexcept;

}  // namespace fiohost::view

#include "fiohost/view/orientation.h"

#include <array>

namespace fiohost::view {
namespace {

// The stored picture is mirrored first; then rows and columns may change places.
struct Turn {
  bool mirrorAcross;
  bool mirrorDown;
  bool transpose;
};

constexpr std::array<Turn, 8> turns = {{
    {false, false, false},  // 1: as stored
    {true, false, false},   // 2: mirrored left to right
    {true, true, false},    // 3: upside down
    {false, true, false},   // 4: mirrored top to bottom
    {false, false, true},   // 5: mirrored at the falling diagonal
    {false, true, true},    // 6: turned a quarter to the right
    {true, true, true},     // 7: mirrored at the rising diagonal
    {true, false, true},    // 8: turned a quarter to the left
}};

const Turn& turnOf(Orientation orientation) { return turns[orientation.value() - 1]; }

}  // namespace

Extent Orientation::shownSize(const Extent& stored) const noexcept {
  if (turnOf(*this).transpose) return {stored.height, stored.width};
  return stored;
}

Place Orientation::shownPlace(const Extent& stored, const Place& place) const noexcept {
  const Turn& turn = turnOf(*this);
  const int x = turn.mirrorAcross ? stored.width - 1 - place.x : place.x;
  const int y = turn.mirrorDown ? stored.height - 1 - place.y : place.y;
  if (turn.transpose) return {y, x};
  return {x, y};
}

RowPath rowPath(Orientation orientation, const Extent& stored, int row) noexcept {
  const std::ptrdiff_t width = orientation.shownSize(stored).width;
  const auto number = [&](int column) {
    const Place place = orientation.shownPlace(stored, {column, row});
    return place.y * width + place.x;
  };
  return {number(0), number(1) - number(0)};
}

}  // namespace fiohost::view

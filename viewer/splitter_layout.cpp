#include "viewer/splitter_layout.h"

#include <algorithm>

namespace viewer {
namespace {

constexpr int viewBorder = 2;
constexpr int leastPosition = 10;
constexpr int leastRest = 14;
constexpr unsigned firstNegative = 0x8000;

// A part from one place along the axis to another, over the whole breadth and outset by that much.
Area areaBetween(Arrangement arrangement, Size client, int from, int to, int outset) noexcept {
  const int length = std::max(0, to - from);
  if (arrangement == Arrangement::stacked) {
    return {-outset, from, client.width + 2 * outset, length};
  }
  return {from, -outset, length, client.height + 2 * outset};
}

}  // namespace

int extentAlong(Arrangement arrangement, Size client) noexcept {
  return arrangement == Arrangement::stacked ? client.height : client.width;
}

int firstSplitterPosition(Arrangement arrangement, Size client) noexcept {
  return (extentAlong(arrangement, client) - splitterWidth) / 2;
}

int clampSplitter(unsigned coordinate, int extent) noexcept {
  int position = leastPosition;
  if (coordinate < firstNegative) position = std::max(leastPosition, static_cast<int>(coordinate));
  return std::min(position, extent - leastRest);
}

Area splitterArea(Arrangement arrangement, Size client, int position) noexcept {
  return areaBetween(arrangement, client, position, position + splitterWidth, 0);
}

Area treeArea(Arrangement arrangement, Size client, int position) noexcept {
  return areaBetween(arrangement, client, -viewBorder, position, viewBorder);
}

Area listArea(Arrangement arrangement, Size client, int position) noexcept {
  const int farSide = position + splitterWidth;
  const int end = extentAlong(arrangement, client) + viewBorder;
  return areaBetween(arrangement, client, farSide - viewBorder, end, viewBorder);
}

ColumnWidths listColumnWidths(int listWidth) noexcept {
  return {2 * listWidth / 5 - 2, 3 * listWidth / 5 - 2};
}

}  // namespace viewer

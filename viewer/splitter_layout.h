// Where the parts of a tree-list lie in its client area. Along is the axis that the splitter bar
// moves on: downwards when the tree is stacked on the list, else to the right.
#pragma once

namespace viewer {

enum class Arrangement { stacked, sideBySide };

struct Size {
  int width;
  int height;
};

// In client coordinates, pixels.
struct Area {
  int left;
  int top;
  int width;
  int height;

  bool operator==(const Area&) const = default;
};

inline constexpr int splitterWidth = 4;

[[nodiscard]] int extentAlong(Arrangement arrangement, Size client) noexcept;

// The bar of a new control: tree and list get equal shares.
[[nodiscard]] int firstSplitterPosition(Arrangement arrangement, Size client) noexcept;

// Where a bar is drawn that is dragged to a coordinate along the axis, as a mouse message carries
// it: 16 bits without a sign, so that places before the client area are large numbers.
[[nodiscard]] int clampSplitter(unsigned coordinate, int extent) noexcept;

[[nodiscard]] Area splitterArea(Arrangement arrangement, Size client, int position) noexcept;

// The views overlap the client area's edges by the 2 pixels of their own borders, and the list the
// bar, so that the control has one border around it and one between the views.
[[nodiscard]] Area treeArea(Arrangement arrangement, Size client, int position) noexcept;
[[nodiscard]] Area listArea(Arrangement arrangement, Size client, int position) noexcept;

// Widths of the list's columns.
struct ColumnWidths {
  int name;
  int data;
};
[[nodiscard]] ColumnWidths listColumnWidths(int listWidth) noexcept;

}  // namespace viewer

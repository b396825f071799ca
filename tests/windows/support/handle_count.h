// How many GDI and USER objects this process holds: what a window forgets to free shows here.
#pragma once

#include <compare>
#include <ostream>

namespace test {

struct HandleCount {
  unsigned gdi = 0;   // pens, brushes, fonts, bitmaps, regions, device contexts
  unsigned user = 0;  // windows, menus, icons and cursors

  friend bool operator==(const HandleCount&, const HandleCount&) = default;
  friend std::ostream& operator<<(std::ostream& out, const HandleCount& count) {
    return out << count.gdi << " GDI and " << count.user << " USER objects";
  }
};

[[nodiscard]] HandleCount countHandles();

}  // namespace test

// What the screen that a window is on says about lengths and texts.
#pragma once

#include "fiohost/view/geometry.h"
#include "platform/window_handles.h"

namespace fiohost::view {

using OwnedFont = std::unique_ptr<std::remove_pointer_t<HFONT>, platform::DeleteGdiObject>;

// Dots per inch of the window's screen; of the whole system where it knows no difference.
[[nodiscard]] int dpiOf(HWND window);
// The font of status bars and messages at a resolution.
[[nodiscard]] OwnedFont messageFont(int dpi);
// The size of the screen that most of the window lies on.
[[nodiscard]] Extent screenSizeOf(HWND window);
// What of the screen nearest to a box is not taken by task bars.
[[nodiscard]] Box workAreaNear(const Box& box);

[[nodiscard]] inline RECT rectOf(const Box& box) {
  return {box.left, box.top, box.left + box.width, box.top + box.height};
}
[[nodiscard]] inline Box boxOf(const RECT& rect) {
  return {static_cast<int>(rect.left), static_cast<int>(rect.top),
          static_cast<int>(rect.right - rect.left), static_cast<int>(rect.bottom - rect.top)};
}

}  // namespace fiohost::view

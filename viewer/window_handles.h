// Owner types for what the window system gives out.
#pragma once

#include <memory>
#include <type_traits>

#include "platform/common_controls.h"

namespace viewer {

struct DeleteGdiObject {
  void operator()(HGDIOBJ object) const noexcept { DeleteObject(object); }
};
using OwnedBitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteGdiObject>;
using OwnedBrush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, DeleteGdiObject>;

struct DestroyImageList {
  void operator()(HIMAGELIST images) const noexcept { ImageList_Destroy(images); }
};
using OwnedImageList = std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, DestroyImageList>;

struct CloseWindow {
  void operator()(HWND window) const noexcept { DestroyWindow(window); }
};
// A window that goes with this object, unless it is released to its parent.
using OwnedWindow = std::unique_ptr<std::remove_pointer_t<HWND>, CloseWindow>;

// The whole window's device context, the children's area included.
class WindowContext {
 public:
  explicit WindowContext(HWND window) noexcept : window_(window), context_(GetDC(window)) {}
  WindowContext(const WindowContext&) = delete;
  WindowContext& operator=(const WindowContext&) = delete;
  ~WindowContext() {
    if (context_ != nullptr) ReleaseDC(window_, context_);
  }
  [[nodiscard]] HDC get() const noexcept { return context_; }

 private:
  HWND window_;
  HDC context_;
};

}  // namespace viewer

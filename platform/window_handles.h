// Owner types for what the window system gives out. Windows only.
#pragma once

#include <memory>
#include <type_traits>

#include "platform/common_controls.h"
#include "platform/global_memory.h"

namespace platform {

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

// The clipboard, opened for a window as long as this lives.
class OpenedClipboard {
 public:
  explicit OpenedClipboard(HWND owner) noexcept : isOpen_(OpenClipboard(owner) != FALSE) {}
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;
  ~OpenedClipboard() {
    if (isOpen_) CloseClipboard();
  }
  explicit operator bool() const noexcept { return isOpen_; }

  // Replaces what is there by a block, which the clipboard takes over. False when it refuses.
  [[nodiscard]] bool put(UINT format, OwnedGlobal block) const noexcept {
    if (!isOpen_ || EmptyClipboard() == FALSE) return false;
    if (SetClipboardData(format, block.get()) == nullptr) return false;
    static_cast<void>(block.release());
    return true;
  }

 private:
  bool isOpen_;
};

}  // namespace platform

// The tree-list: a composite window that shows a camera-data heap as a tree of its records beside
// a list with the values of the selected one, and a bar between them that can be moved.
#pragma once

#include <span>

#include "host/types.h"

namespace viewer {

struct TreeListRequest {
  HINSTANCE instance;  // the windows' instance; classes and images are the plug-in's own
  HWND parent;         // a dialog
  RECT area;           // of the control, in the parent's client coordinates
  int controlId;       // of the main window
  bool stacked;        // the tree above the list, else to its left
  std::span<const host::u8> heap;
};

// Creates the control, shown. Null, with nothing left behind, when the heap cannot be parsed or a
// window, a class, an image or memory cannot be had. The control goes with its parent, or when its
// main window is destroyed.
[[nodiscard]] HWND createTreeList(const TreeListRequest& request) noexcept;

// The changed heap of a control, see serialiseEditedHeap().
void fetchEditedHeap(HWND control, HGLOBAL* heap, host::u32* length) noexcept;

// Takes the control's window classes back, as far as no window of theirs is left: a class whose
// procedure lies in an unloaded module must not stay behind.
void unregisterTreeListClasses() noexcept;

}  // namespace viewer

// What the three own windows of a tree-list share. For the tree-list's sources only.
#pragma once

#include <optional>

#include "property/parsed_heap.h"
#include "viewer/splitter_layout.h"
#include "viewer/window_handles.h"

namespace viewer {

inline constexpr wchar_t treeListClass[] = L"Ciff_TreeList";
inline constexpr wchar_t treeProxyClass[] = L"CiffTreeRef";
inline constexpr wchar_t listProxyClass[] = L"CiffListRef";

// Lives from the creation of the control to the end of its main window. The own windows hold its
// address in their first window-extra slot.
struct TreeListState {
  HINSTANCE instance = nullptr;
  HWND parent = nullptr;
  HWND main = nullptr;
  HWND tree = nullptr;
  HWND list = nullptr;
  HWND treeProxy = nullptr;
  HWND listProxy = nullptr;
  Arrangement arrangement = Arrangement::stacked;
  int splitter = 0;         // position of the bar along its axis
  int dragged = 0;          // where the bar is drawn during a drag
  bool isDragging = false;  // the bar is drawn and the mouse captured
  OwnedImageList treeImages;
  std::optional<property::ParsedHeap> heap;
};

[[nodiscard]] inline TreeListState* stateOf(HWND window) noexcept {
  return reinterpret_cast<TreeListState*>(GetWindowLongPtrW(window, 0));
}
inline void setState(HWND window, TreeListState* state) noexcept {
  SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(state));
}

// Window procedures.
LRESULT CALLBACK treeListProcedure(HWND window, UINT message, WPARAM wParam,
                                   LPARAM lParam) noexcept;
LRESULT CALLBACK treeProxyProcedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;
LRESULT CALLBACK listProxyProcedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;

// Registers what is not registered yet. False when a class cannot be had.
[[nodiscard]] bool registerTreeListClasses() noexcept;
[[nodiscard]] HCURSOR splitterCursor(Arrangement arrangement) noexcept;

// Parses the heap and fills both views. False when anything of it cannot be had.
[[nodiscard]] bool fillTreeList(TreeListState& state, std::span<const host::u8> heap) noexcept;
// The rows of the tree's selected record.
void listSelectedRecord(TreeListState& state) noexcept;
// Answers Ctrl+C in either view.
void copyFromTreeList(const TreeListState& state, HWND view) noexcept;

// The drag of the bar.
void beginDrag(TreeListState& state) noexcept;
void dragTo(TreeListState& state, LPARAM pointer) noexcept;
void endDrag(TreeListState& state) noexcept;
// The bar goes where it was when another window takes the mouse away.
void cancelDrag(TreeListState& state) noexcept;
// Moves tree and list to where the bar is.
void layOutViews(const TreeListState& state) noexcept;

[[nodiscard]] Size clientSize(HWND window) noexcept;

}  // namespace viewer

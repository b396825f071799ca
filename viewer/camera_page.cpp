// The page that shows the camera-data heap.
#include "frame/module.h"
#include "viewer/page_procedures.h"
#include "viewer/tree_list.h"

namespace viewer {
namespace {

constexpr int inset = 5;
constexpr int treeListId = 1;

// What the frame of a property sheet takes as a press of its Cancel button.
constexpr UINT pressButton = WM_USER + 113;
constexpr WPARAM cancelButton = 5;

void showHeap(HWND page, HGLOBAL fileData) noexcept {
  RECT area = {};
  GetClientRect(page, &area);
  InflateRect(&area, -inset, -inset);
  host::u8* heap = nullptr;
  host::u32 length = 0;
  if (property::findField(propertiesOf(platform::LockedGlobal(fileData)), host::fieldHeap, &heap,
                          &length) == 0)
    return;
  const bool stacked = dialogState().flags == 0;
  // A heap that cannot be shown leaves the page empty.
  static_cast<void>(
      createTreeList({frame::resourceLibrary(), page, area, treeListId, stacked, {heap, length}}));
}

}  // namespace

INT_PTR CALLBACK cameraDataPage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_INITDIALOG:
      showHeap(page, reinterpret_cast<HGLOBAL>(lParam));
      return TRUE;
    case WM_COMMAND:
      // Esc in one of the views reaches the page and is meant for the dialog.
      if (LOWORD(wParam) == IDCANCEL) PostMessageW(GetParent(page), pressButton, cancelButton, 0);
      return TRUE;
    case WM_NOTIFY:
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace viewer

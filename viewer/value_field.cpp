#include "viewer/value_field.h"

#include <new>

#include "platform/common_controls.h"

namespace viewer {
namespace {

constexpr UINT_PTR subclassId = 1;
constexpr WPARAM copyCharacter = 'C' - '@';  // what Ctrl+C types

bool hasSelection(HWND field) noexcept {
  DWORD first = 0;
  DWORD end = 0;
  SendMessageW(field, EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&end));
  return first != end;
}

void copyParent(HWND field, CopyPage* copyPage) noexcept {
  try {
    copyPage(GetParent(field));
  } catch (const std::bad_alloc&) {
    // The clipboard stays as it is.
  }
}

LRESULT CALLBACK fieldProcedure(HWND field, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                DWORD_PTR copyPage) noexcept {
  switch (message) {
    case WM_GETDLGCODE:
      return DefSubclassProc(field, message, wParam, lParam) & ~(DLGC_WANTALLKEYS | DLGC_WANTTAB);
    case WM_CHAR:
      if (wParam == copyCharacter && (!hasSelection(field) || GetKeyState(VK_SHIFT) < 0)) {
        copyParent(field, reinterpret_cast<CopyPage*>(copyPage));
        return 0;
      }
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(field, fieldProcedure, id);
      break;
    default:
      break;
  }
  return DefSubclassProc(field, message, wParam, lParam);
}

}  // namespace

void makeValueField(HWND field, CopyPage* copyPage) noexcept {
  if (field == nullptr) return;
  SendMessageW(field, EM_SETREADONLY, TRUE, 0);
  SetWindowSubclass(field, fieldProcedure, subclassId, reinterpret_cast<DWORD_PTR>(copyPage));
}

}  // namespace viewer

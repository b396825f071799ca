// The two tab stops of a tree-list. Its views are not children of the dialog, so the dialog sees a
// tab stop before the control and one behind it, which hand the focus on to tree and list.
#include "viewer/tree_list_state.h"

namespace viewer {
namespace {

enum class Way { forward, backward };

// The dialog whose tab order the control is part of: pages of a tabbed dialog belong to its order.
HWND rootDialog(HWND window) noexcept {
  HWND dialog = GetParent(window);
  while (dialog != nullptr) {
    const bool isPage = (GetWindowLongW(dialog, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0 &&
                        (GetWindowLongW(dialog, GWL_STYLE) & WS_CHILD) != 0;
    if (!isPage) break;
    dialog = GetParent(dialog);
  }
  return dialog;
}

void moveOn(HWND proxy, Way way) noexcept {
  const HWND dialog = rootDialog(proxy);
  const HWND next = GetNextDlgTabItem(dialog, proxy, way == Way::backward ? TRUE : FALSE);
  if (next != nullptr && next != proxy) {
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
  }
}

// From the view itself the user is on the way out, from anywhere else on the way in.
void passFocus(HWND proxy, HWND view, HWND from, Way out) noexcept {
  if (from == view) {
    moveOn(proxy, out);
  } else {
    SetFocus(view);
  }
}

}  // namespace

LRESULT CALLBACK treeProxyProcedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept {
  TreeListState* state = stateOf(window);
  if (state != nullptr && message == WM_SETFOCUS) {
    passFocus(window, state->tree, reinterpret_cast<HWND>(wParam), Way::backward);
    return 0;
  }
  if (state != nullptr && message == WM_NCDESTROY) state->treeProxy = nullptr;
  return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK listProxyProcedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept {
  TreeListState* state = stateOf(window);
  if (state != nullptr && message == WM_SETFOCUS) {
    passFocus(window, state->list, reinterpret_cast<HWND>(wParam), Way::forward);
    return 0;
  }
  if (state != nullptr && message == WM_NCDESTROY) state->listProxy = nullptr;
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace viewer

#include "viewer/tree_list.h"

#include <new>

#include "frame/module.h"
#include "viewer/clipboard.h"
#include "viewer/heap_tree.h"
#include "viewer/tree_list_state.h"

namespace viewer {
namespace {

using host::u32;

// What a window of the control is made of.
struct WindowRow {
  const wchar_t* className;
  DWORD style;
  DWORD extendedStyle;
};

constexpr WindowRow treeProxyWindow = {treeProxyClass, WS_CHILD | WS_TABSTOP, 0};
constexpr WindowRow mainWindow = {treeListClass, WS_CHILD | WS_TABSTOP, WS_EX_CLIENTEDGE};
constexpr WindowRow listProxyWindow = {listProxyClass, WS_CHILD | WS_TABSTOP, 0};
constexpr WindowRow treeWindow = {
    WC_TREEVIEWW,
    WS_CHILD | WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
    WS_EX_CLIENTEDGE};
constexpr WindowRow listWindow = {
    WC_LISTVIEWW, WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_NOSORTHEADER,
    WS_EX_CLIENTEDGE};

HWND createWindow(const WindowRow& row, HWND parent, HINSTANCE instance, const Area& area,
                  int id = 0) noexcept {
  return CreateWindowExW(row.extendedStyle, row.className, L"", row.style, area.left, area.top,
                         area.width, area.height, parent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), instance, nullptr);
}

void initialiseCommonControls() noexcept {
  const INITCOMMONCONTROLSEX classes = {sizeof classes,
                                        ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&classes);
}

// The own windows in the order of the dialog's tab order: the tree's stop, the control, the list's.
// They are of the module that registered their classes.
bool createOwnWindows(TreeListState& state, const TreeListRequest& request) noexcept {
  const HINSTANCE module = frame::moduleHandle();
  const RECT& area = request.area;
  state.treeProxy = createWindow(treeProxyWindow, request.parent, module, {0, 0, 1, 1});
  state.main = createWindow(mainWindow, request.parent, module,
                            {area.left, area.top, area.right - area.left, area.bottom - area.top},
                            request.controlId);
  state.listProxy = createWindow(listProxyWindow, request.parent, module, {2, 0, 1, 1});
  if (state.treeProxy == nullptr || state.main == nullptr || state.listProxy == nullptr) {
    return false;
  }
  for (HWND window : {state.treeProxy, state.main, state.listProxy}) setState(window, &state);
  return true;
}

bool createViews(TreeListState& state) noexcept {
  const Size client = clientSize(state.main);
  state.splitter = firstSplitterPosition(state.arrangement, client);
  state.tree = createWindow(treeWindow, state.main, state.instance,
                            treeArea(state.arrangement, client, state.splitter));
  state.list = createWindow(listWindow, state.main, state.instance,
                            listArea(state.arrangement, client, state.splitter));
  if (state.tree == nullptr || state.list == nullptr) return false;
  const WPARAM font = static_cast<WPARAM>(SendMessageW(state.parent, WM_GETFONT, 0, 0));
  for (HWND view : {state.tree, state.list}) {
    if (font != 0) SendMessageW(view, WM_SETFONT, font, FALSE);
  }
  ListView_SetExtendedListViewStyle(state.list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
  return true;
}

// The control's windows know its state no more, whatever happens to them.
void destroyOwnWindows(const TreeListState& state) noexcept {
  const HWND windows[] = {state.treeProxy, state.main, state.listProxy};
  for (HWND window : windows) {
    if (window != nullptr) setState(window, nullptr);
  }
  for (HWND window : windows) {
    if (window != nullptr) DestroyWindow(window);
  }
}

bool createControl(TreeListState& state, const TreeListRequest& request) noexcept {
  initialiseCommonControls();
  if (!registerTreeListClasses() || !createOwnWindows(state, request) || !createViews(state) ||
      !fillTreeList(state, request.heap)) {
    return false;
  }
  // Tab stops that are not shown are none.
  for (HWND window : {state.treeProxy, state.main, state.listProxy, state.tree, state.list}) {
    ShowWindow(window, SW_SHOW);
  }
  return true;
}

bool isCopyNotification(const NMHDR& header) noexcept {
  if (header.code == LVN_KEYDOWN) {
    return isCopyKey(reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey);
  }
  return header.code == TVN_KEYDOWN &&
         isCopyKey(reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey);
}

void onNotification(TreeListState& state, const NMHDR& header) noexcept {
  if (header.hwndFrom == state.tree &&
      (header.code == TVN_SELCHANGEDW || header.code == TVN_SELCHANGEDA)) {
    listSelectedRecord(state);
  } else if (isCopyNotification(header)) {
    copyFromTreeList(state, header.hwndFrom);
  }
}

// Over the bar only: the views have cursors of their own.
bool setSplitterCursor(const TreeListState& state, HWND under, LPARAM hit) noexcept {
  if (under != state.main || LOWORD(hit) != HTCLIENT) return false;
  SetCursor(splitterCursor(state.arrangement));
  return true;
}

// The end of the main window is the end of the control. The proxies may be gone already.
void destroyState(TreeListState* state) noexcept {
  const std::unique_ptr<TreeListState> owned(state);
  for (HWND window : {state->main, state->treeProxy, state->listProxy}) {
    if (window != nullptr) setState(window, nullptr);
  }
  for (HWND proxy : {state->treeProxy, state->listProxy}) {
    if (proxy != nullptr) DestroyWindow(proxy);
  }
}

// True when the message is answered, with 0 or the answer given.
bool answer(TreeListState& state, UINT message, WPARAM wParam, LPARAM lParam,
            LRESULT& result) noexcept {
  switch (message) {
    case WM_NOTIFY:
      onNotification(state, *reinterpret_cast<const NMHDR*>(lParam));
      return true;
    case WM_SETCURSOR:
      result = TRUE;
      return setSplitterCursor(state, reinterpret_cast<HWND>(wParam), lParam);
    case WM_SETFOCUS:
      SetFocus(state.tree);
      return true;
    case WM_LBUTTONDOWN:
      beginDrag(state);
      return true;
    case WM_MOUSEMOVE:
      if ((wParam & MK_LBUTTON) != 0) dragTo(state, lParam);
      return true;
    case WM_LBUTTONUP:
      endDrag(state);
      return true;
    case WM_CAPTURECHANGED:
      cancelDrag(state);
      return true;
    default:
      return false;
  }
}

}  // namespace

Size clientSize(HWND window) noexcept {
  RECT client = {};
  GetClientRect(window, &client);
  return {client.right, client.bottom};
}

LRESULT CALLBACK treeListProcedure(HWND window, UINT message, WPARAM wParam,
                                   LPARAM lParam) noexcept {
  TreeListState* state = stateOf(window);
  LRESULT result = 0;
  if (state != nullptr && answer(*state, message, wParam, lParam, result)) return result;
  if (state != nullptr && message == WM_NCDESTROY) destroyState(state);
  return DefWindowProcW(window, message, wParam, lParam);
}

HWND createTreeList(const TreeListRequest& request) noexcept {
  std::unique_ptr<TreeListState> state(new (std::nothrow) TreeListState);
  if (!state) return nullptr;
  state->instance = request.instance;
  state->parent = request.parent;
  state->arrangement = request.stacked ? Arrangement::stacked : Arrangement::sideBySide;
  if (!createControl(*state, request)) {
    destroyOwnWindows(*state);
    return nullptr;
  }
  return state.release()->main;
}

void fetchEditedHeap(HWND control, HGLOBAL* edited, u32* length) noexcept {
  *edited = nullptr;
  *length = 0;
  const TreeListState* state = stateOf(control);
  if (state != nullptr && state->heap) *edited = serialiseEditedHeap(*state->heap, *length);
}

}  // namespace viewer

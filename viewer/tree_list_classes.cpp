#include "frame/module.h"
#include "viewer/tree_list.h"
#include "viewer/tree_list_state.h"

namespace viewer {
namespace {

// The splitter's cursor is answered window by window: the class is shared by both arrangements.
struct ClassRow {
  const wchar_t* name;
  UINT style;
  WNDPROC procedure;
  bool arrow;
};

constexpr ClassRow classes[] = {
    {treeListClass, CS_HREDRAW | CS_VREDRAW, treeListProcedure, false},
    {treeProxyClass, CS_DBLCLKS, treeProxyProcedure, true},
    {listProxyClass, CS_DBLCLKS, listProxyProcedure, true},
};

bool registerClass(const ClassRow& row) noexcept {
  const HINSTANCE module = frame::moduleHandle();
  WNDCLASSW existing;
  if (GetClassInfoW(module, row.name, &existing) != FALSE) return true;
  WNDCLASSW own = {};
  own.style = row.style;
  own.lpfnWndProc = row.procedure;
  own.cbWndExtra = sizeof(LONG_PTR);  // the state's address
  own.hInstance = module;
  own.hCursor =
      row.arrow ? LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)) : splitterCursor(Arrangement{});
  own.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  own.lpszClassName = row.name;
  return RegisterClassW(&own) != 0;
}

}  // namespace

bool registerTreeListClasses() noexcept {
  for (const ClassRow& row : classes) {
    if (!registerClass(row)) return false;
  }
  return true;
}

void unregisterTreeListClasses() noexcept {
  for (const ClassRow& row : classes) UnregisterClassW(row.name, frame::moduleHandle());
}

HCURSOR splitterCursor(Arrangement arrangement) noexcept {
  const wchar_t* name = arrangement == Arrangement::stacked ? L"TLIDC_SPLITV" : L"TLIDC_SPLITH";
  return LoadCursorW(frame::moduleHandle(), name);
}

}  // namespace viewer

#include "tests/plugin/doubles/doubles.h"

using doubles::state;

extern "C" int k32MiscDialogStart(HWND dialog, int one, WPARAM wParam, LPARAM lParam) {
  state().calls.emplace_back("k32MiscDialogStart");
  return state().dialogStart(dialog, one, wParam, lParam);
}

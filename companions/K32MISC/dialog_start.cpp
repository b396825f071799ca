#include "host/k32misc.h"

// Dialogs call this before anything else. The open host prepares nothing for them.
extern "C" int k32MiscDialogStart(HWND /*dialog*/, int /*one*/, WPARAM /*wParam*/,
                                  LPARAM /*lParam*/) {
  return 0;
}

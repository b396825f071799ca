// K32MISC.dll: what every dialog calls first.
#pragma once

#include "host/types.h"
#include "platform/companion_call.h"

// Exported by ordinal 20 alone.
COMPANION_CALL_BY_ORDINAL("K32MISC.dll", 20, int, k32MiscDialogStart,
                          (HWND dialog, int one, WPARAM wParam, LPARAM lParam))

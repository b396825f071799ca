// The system's common controls and property sheets, for the sources of windows.
#pragma once

#include "platform/system.h"
// These need what stands above.
#include <commctrl.h>
#include <prsht.h>

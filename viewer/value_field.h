// Read-only text fields of a page, from which a value or the whole page is copied.
#pragma once

#include "platform/system.h"

namespace viewer {

// Puts everything that a page shows on the clipboard. Throws bad_alloc.
using CopyPage = void(HWND page);

// Makes the field read-only. Ctrl+C in it copies what is selected, or the page when nothing is or
// Shift is down too; Esc and Tab go to the dialog even from a field of several lines.
void makeValueField(HWND field, CopyPage* copyPage) noexcept;

}  // namespace viewer

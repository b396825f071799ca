// Texts for the clipboard.
#pragma once

#include <string_view>

#include "platform/system.h"

namespace viewer {

// True while the keys that copy are down with the last key: Ctrl and C.
[[nodiscard]] bool isCopyKey(WORD virtualKey) noexcept;

// Puts a text on the clipboard, which owner then owns. An empty text or a clipboard that another
// program holds leaves it as it is.
void copyText(HWND owner, std::string_view text) noexcept;
void copyText(HWND owner, std::wstring_view text) noexcept;

}  // namespace viewer

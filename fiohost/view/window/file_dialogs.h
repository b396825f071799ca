// The system's dialogs for choosing files.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/system.h"

namespace fiohost::view {

// Full names in UTF-8; none when the user cancelled. folder: where the dialog begins.
[[nodiscard]] std::vector<std::string> askFilesToOpen(HWND owner, const std::string& folder);

// A full name in UTF-8 with an extension, confirmed where a file has it already; nothing when the
// user cancelled.
[[nodiscard]] std::optional<std::string> askNameToSave(HWND owner, const std::string& suggested);

// The names that were dropped on a window, in UTF-8. Ends the drop.
[[nodiscard]] std::vector<std::string> droppedFiles(WPARAM drop);

}  // namespace fiohost::view

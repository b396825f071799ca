// Whether a dialog's controls have room: for their texts, inside the dialog, beside each other.
#pragma once

#include <string>
#include <vector>

#include "tests/windows/support/window.h"

namespace test {

// What is wrong with a dialog's layout, a line for each fault; empty when nothing is.
[[nodiscard]] std::vector<std::string> layoutFaults(const Window& dialog);

// A dialog template whose font is larger by a percentage, and with it every control: what a screen
// of 144 dots per inch (150) or 192 (200) makes of it. For CreateDialogIndirectParam.
[[nodiscard]] std::vector<unsigned char> scaledTemplate(HMODULE resources, int id, int percent);

}  // namespace test

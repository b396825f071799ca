// Pictures of windows, for people to look at: build/NAME/screenshots/NAME.png.
#pragma once

#include <string>
#include <vector>

#include "tests/windows/support/window.h"

namespace test {

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> pixels;  // rows from the top, red, green, blue
};

// The window with its frame, as it stands on the screen.
[[nodiscard]] Picture pictureOf(const Window& window);

// Saves the window's picture under the name. Answers how many colours it has, so that a test can
// tell a drawn window from an empty one.
std::size_t saveScreenshot(const Window& window, const std::string& name);

}  // namespace test

// Drawing the picture and the film strip, in memory first so that nothing flickers.
#pragma once

#include <string>

#include "fiohost/view/document.h"
#include "fiohost/view/film_strip.h"
#include "fiohost/view/view_transform.h"
#include "fiohost/view/window/screen.h"

namespace fiohost::view {

struct Scene {
  Document& document;
  const ViewTransform& view;
  const WindowLayout& layout;
  int dpi;
  HFONT font;
  std::string message;  // in the middle, where there is no picture
};

// Draws the client area above the status bar.
void paintScene(HDC target, const Scene& scene);

}  // namespace fiohost::view

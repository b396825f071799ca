// What the picture window remembers from one time to the next.
#pragma once

#include <string>

#include "fiohost/view/geometry.h"
#include "fiohost/view/stereo.h"

namespace fiohost::view {

struct ViewSettings {
  Box window;  // of the window that is not maximised; empty: the system chooses
  bool maximised = false;
  bool fitted = true;
  bool filmStrip = true;
  StereoMode stereo = StereoMode::anaglyph;
  int parallax = 0;  // pixels of the picture

  friend bool operator==(const ViewSettings&, const ViewSettings&) = default;
};

inline constexpr int mostParallax = 1000;  // both ways

// Reads the window's section of a settings file. What is missing or out of range comes as above.
[[nodiscard]] ViewSettings loadViewSettings(const std::string& path);
// False when the file cannot be written.
[[nodiscard]] bool storeViewSettings(const std::string& path, const ViewSettings& settings);

// The box moved, and if need be made smaller, so that it lies inside an area; an empty one stays.
[[nodiscard]] Box movedInside(const Box& box, const Box& area);

}  // namespace fiohost::view

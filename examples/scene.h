// A small landscape, computed: sky with a sun, two ranges of hills, a meadow and a house.
#pragma once

namespace examples {

// Intensities from 0 to 1.
struct Colour {
  double red;
  double green;
  double blue;
};

// The scene's colour at a place; x goes from 0 (left) to 4/3, y from 0 (top) to 1.
// viewpoint is how far the viewer has stepped to the right, in the same measure at the meadow.
[[nodiscard]] Colour sceneColour(double x, double y, double viewpoint = 0);

}  // namespace examples

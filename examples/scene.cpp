#include "examples/scene.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace examples {
namespace {

Colour mixed(const Colour& a, const Colour& b, double share) {
  const double s = std::clamp(share, 0.0, 1.0);
  return {a.red + (b.red - a.red) * s, a.green + (b.green - a.green) * s,
          a.blue + (b.blue - a.blue) * s};
}

Colour shaded(const Colour& colour, double factor) {
  return {colour.red * factor, colour.green * factor, colour.blue * factor};
}

// A fixed pseudo-random number from 0 to 1 for a grid point.
double grain(double x, double y) {
  auto bits = static_cast<std::uint32_t>(static_cast<std::int32_t>(std::floor(x))) * 374761393U +
              static_cast<std::uint32_t>(static_cast<std::int32_t>(std::floor(y))) * 668265263U;
  bits = (bits ^ (bits >> 13)) * 1274126177U;
  return ((bits ^ (bits >> 16)) & 0xFFFF) / 65535.0;
}

// Grain joined smoothly between the grid points.
double smoothGrain(double x, double y) {
  const double fx = x - std::floor(x);
  const double fy = y - std::floor(y);
  const double top = std::lerp(grain(x, y), grain(x + 1, y), fx);
  const double bottom = std::lerp(grain(x, y + 1), grain(x + 1, y + 1), fx);
  return std::lerp(top, bottom, fy);
}

double cloudiness(double x, double y) {
  const double coarse = smoothGrain(x * 5, y * 14);
  const double fine = smoothGrain(x * 13 + 40, y * 36 + 7);
  return std::clamp((0.7 * coarse + 0.3 * fine - 0.5) * 2.2, 0.0, 0.8);
}

Colour sky(double x, double y) {
  const Colour gradient = mixed({0.20, 0.45, 0.85}, {0.98, 0.82, 0.62}, y / 0.62);
  const Colour clouded = mixed(gradient, {1.0, 0.97, 0.94}, cloudiness(x, y));
  const double distance = std::hypot(x - 1.02, y - 0.22);
  const Colour glowing = mixed(clouded, {1.0, 0.93, 0.70}, 0.9 * std::exp(-distance * 9));
  return mixed({1.0, 0.97, 0.85}, glowing, (distance - 0.055) * 200);
}

double farHills(double x) { return 0.56 - 0.06 * std::sin(x * 4.1) - 0.02 * std::sin(x * 13 + 1); }
double nearHills(double x) {
  return 0.66 - 0.07 * std::sin(x * 2.6 + 2.2) - 0.01 * std::sin(x * 17);
}

Colour meadow(double x, double y) {
  const double depth = (y - 0.60) / 0.40;
  const Colour grass = mixed({0.42, 0.55, 0.20}, {0.16, 0.36, 0.10}, depth);
  return shaded(grass, 0.75 + 0.5 * smoothGrain(x * 160 / (1 + depth), y * 320));
}

struct Box {
  double left, top, right, bottom;
  [[nodiscard]] bool holds(double x, double y) const {
    return x >= left && x < right && y >= top && y < bottom;
  }
};

constexpr Box wall = {0.24, 0.60, 0.50, 0.78};
constexpr Box door = {0.35, 0.67, 0.40, 0.78};
constexpr Box chimney = {0.43, 0.46, 0.465, 0.57};
constexpr Box windows[] = {{0.27, 0.645, 0.32, 0.70}, {0.43, 0.645, 0.48, 0.70}};

bool onRoof(double x, double y) {
  const double middle = (wall.left + wall.right) / 2;
  const double halfWidth = (y - 0.48) / (wall.top - 0.48) * 0.16;
  return y >= 0.48 && y < wall.top && std::abs(x - middle) < halfWidth;
}

// The house's colour, or false when the place is beside it.
bool house(double x, double y, Colour& colour) {
  if (onRoof(x, y)) {
    colour = shaded({0.62, 0.22, 0.16}, 0.8 + 0.3 * grain(x * 70, y * 110));
  } else if (chimney.holds(x, y)) {
    colour = shaded({0.55, 0.30, 0.25}, 0.85 + 0.2 * grain(x * 90, y * 120));
  } else if (wall.holds(x, y)) {
    colour = shaded({0.95, 0.90, 0.78}, 0.72 + 0.28 * (x - wall.left) / 0.26);
    if (door.holds(x, y)) colour = {0.36, 0.20, 0.10};
    for (const Box& window : windows) {
      if (window.holds(x, y))
        colour = mixed({0.25, 0.40, 0.60}, {0.95, 0.85, 0.55}, (x + y - 0.9) * 4);
    }
  } else {
    return false;
  }
  return true;
}

}  // namespace

Colour sceneColour(double x, double y, double viewpoint) {
  // The nearer a layer is, the further it moves against the viewpoint.
  constexpr double nearness = 1.0;
  constexpr double houseNearness = 0.8;
  constexpr double farNearness = 0.25;
  Colour colour = {};
  if (house(x + viewpoint * houseNearness, y, colour)) return colour;
  const double nearX = x + viewpoint * nearness;
  if (y >= nearHills(nearX)) return meadow(nearX, y);
  const double farX = x + viewpoint * farNearness;
  if (y >= farHills(farX)) {
    return shaded(mixed({0.35, 0.48, 0.58}, {0.33, 0.48, 0.35}, (y - 0.5) * 5),
                  0.9 + 0.2 * smoothGrain(farX * 60, y * 60));
  }
  return sky(x, y);
}

}  // namespace examples

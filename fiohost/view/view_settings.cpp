#include "fiohost/view/view_settings.h"

#include <algorithm>
#include <array>

#include "platform/system.h"

namespace fiohost::view {
namespace {

constexpr char section[] = "KF_VIEW";
constexpr int farthest = 100000;  // pixels; no desktop is larger

// The settings as the numbers of their lines.
struct Line {
  const char* key;
  int smallest;
  int largest;
  int (*get)(const ViewSettings&);
  void (*set)(ViewSettings&, int);
};

using Settings = ViewSettings;

constexpr std::array lines = {
    Line{"Left", -farthest, farthest, [](const Settings& s) { return s.window.left; },
         [](Settings& s, int value) { s.window.left = value; }},
    Line{"Top", -farthest, farthest, [](const Settings& s) { return s.window.top; },
         [](Settings& s, int value) { s.window.top = value; }},
    Line{"Width", 0, farthest, [](const Settings& s) { return s.window.width; },
         [](Settings& s, int value) { s.window.width = value; }},
    Line{"Height", 0, farthest, [](const Settings& s) { return s.window.height; },
         [](Settings& s, int value) { s.window.height = value; }},
    Line{"Maximised", 0, 1, [](const Settings& s) { return s.maximised ? 1 : 0; },
         [](Settings& s, int value) { s.maximised = value != 0; }},
    Line{"Fit", 0, 1, [](const Settings& s) { return s.fitted ? 1 : 0; },
         [](Settings& s, int value) { s.fitted = value != 0; }},
    Line{"FilmStrip", 0, 1, [](const Settings& s) { return s.filmStrip ? 1 : 0; },
         [](Settings& s, int value) { s.filmStrip = value != 0; }},
    Line{"Stereo", 0, stereoModeCount - 1,
         [](const Settings& s) { return static_cast<int>(s.stereo); },
         [](Settings& s, int value) { s.stereo = static_cast<StereoMode>(value); }},
    Line{"Parallax", -mostParallax, mostParallax, [](const Settings& s) { return s.parallax; },
         [](Settings& s, int value) { s.parallax = value; }},
};

int moved(int begin, int length, int areaBegin, int areaLength) {
  return std::clamp(begin, areaBegin, areaBegin + std::max(0, areaLength - length));
}

}  // namespace

ViewSettings loadViewSettings(const std::string& path) {
  ViewSettings settings;
  for (const Line& line : lines) {
    const int missing = line.get(settings);
    const UINT stored = GetPrivateProfileIntA(section, line.key, missing, path.c_str());
    const int value = static_cast<int>(stored);
    if (value >= line.smallest && value <= line.largest) line.set(settings, value);
  }
  return settings;
}

bool storeViewSettings(const std::string& path, const ViewSettings& settings) {
  return std::all_of(lines.begin(), lines.end(), [&](const Line& line) {
    const std::string text = std::to_string(line.get(settings));
    return WritePrivateProfileStringA(section, line.key, text.c_str(), path.c_str()) != 0;
  });
}

Box movedInside(const Box& box, const Box& area) {
  if (box.extent().empty()) return box;
  const int width = std::min(box.width, area.width);
  const int height = std::min(box.height, area.height);
  return {moved(box.left, width, area.left, area.width),
          moved(box.top, height, area.top, area.height), width, height};
}

}  // namespace fiohost::view

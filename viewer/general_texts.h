// What the general page tells about a file.
#pragma once

#include <string>
#include <vector>

#include "host/types.h"

namespace viewer {

// Value controls of the general page.
enum GeneralControl : host::u16 {
  controlFileName = 3201,
  controlFormat = 3202,
  controlSize = 3203,
  controlBits = 3204,
  controlColour = 3205,
  controlResolution = 3206,
  controlMode = 3207,
  controlSampling = 3208,
  controlQuality = 3209,
  controlJfif = 3210,
  controlImageCount = 3211,
  controlMpoKind = 3212,
};
// The label of a value control.
inline constexpr host::u16 labelOfControl = 50;

struct GeneralText {
  GeneralControl control;
  std::wstring text;  // empty: nothing is known, or it does not apply to the format
};

// One text for every control, in the controls' order; no texts when fileData cannot be locked.
[[nodiscard]] std::vector<GeneralText> generalTexts(HMODULE resources, HGLOBAL fileData);

// The name of a file at the end of its path.
[[nodiscard]] std::wstring fileNameOf(const std::wstring& path);

}  // namespace viewer

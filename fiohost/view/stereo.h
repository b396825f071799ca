// Two pictures of one scene, from a left and a right viewpoint, as one picture for two eyes.
#pragma once

#include "fiohost/view/raster.h"

namespace fiohost::view {

enum class StereoMode { off, anaglyph, sideBySide, crossEyed, wiggle };
inline constexpr int stereoModeCount = 5;

// The size that a mode makes of pictures of one size.
[[nodiscard]] Extent composedSize(StereoMode mode, const Extent& one) noexcept;

// parallax: how many pixels the right picture is moved to the right against the left one; what it
// leaves uncovered is black, of an anaglyph for both eyes. frame: of wiggle, even shows the left
// picture, odd the right one. Pictures of different sizes are cut to what both have. off gives the
// left picture. Throws std::bad_alloc.
[[nodiscard]] Raster composeStereo(StereoMode mode, const Raster& left, const Raster& right,
                                   int parallax, unsigned frame = 0);

}  // namespace fiohost::view

// A picture in the form that programs exchange on the clipboard (CF_DIB).
#pragma once

#include <cstdint>
#include <vector>

#include "fiohost/view/raster.h"

namespace fiohost::view {

// A BITMAPINFOHEADER and rows of 24 bits a pixel from the bottom, each filled up to four bytes.
// Throws std::bad_alloc, also for a picture that the form has no numbers for.
[[nodiscard]] std::vector<std::uint8_t> dibOf(const Raster& raster);

}  // namespace fiohost::view

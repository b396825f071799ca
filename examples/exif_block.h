// A small EXIF block (EXIF 2.32, 4.5 and 4.6) with a thumbnail, ready to be an APP1 payload.
#pragma once

#include <cstdint>
#include <vector>

namespace examples {

using Bytes = std::vector<std::uint8_t>;

// thumbnail is a whole JPEG stream; width and height are the main picture's, in pixels.
[[nodiscard]] Bytes exifBlock(std::uint32_t width, std::uint32_t height, const Bytes& thumbnail);

}  // namespace examples

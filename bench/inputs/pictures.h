// Pictures that are about as hard to code as photographs.
#pragma once

#include <filesystem>

#include "bench/plugin_host.h"

namespace bench {

inline constexpr host::u32 largeWidth = 6000;  // with the height, 24 megapixels
inline constexpr host::u32 largeHeight = 4000;

// Slopes, soft clouds of several sizes and a fine grain, every pixel of its own. At most
// distinctRows rows are made; a higher picture repeats them.
[[nodiscard]] HostPicture makePicture(host::u32 width, host::u32 height,
                                      host::u32 distinctRows = 4000);

// The picture as a JPEG file with an EXIF block and its thumbnail, 4:2:0, unless it is there.
void ensureJpeg(const std::filesystem::path& path, host::u32 width, host::u32 height,
                bool progressive);

}  // namespace bench

// What the host is told about a stream.
#pragma once

#include "companions/klibjpg/jpeg_library.h"
#include "host/klibjpg.h"

namespace klibjpg {

// The header of a stream whose markers up to the first scan have been read, for a picture that is
// delivered with the given size.
//
// Resolution: as a JFIF segment states it; without one 72 per inch, which EXIF 2.32 (4.6.4,
// XResolution) names for an unknown resolution.
// Sampling: of 4:4:4, 4:2:2, 4:2:0 and 4:1:1 the one with the nearest number of chroma samples;
// 4:1:1, which has as many as 4:2:0, only when nothing is subsampled vertically. 4:4:4 for a
// picture without chroma.
[[nodiscard]] host::ImageHeaderWithExtra describe(const jpeg_decompress_struct& info,
                                                  host::u32 width, host::u32 height) noexcept;

}  // namespace klibjpg

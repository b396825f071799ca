// The thumbnail of a TIFF structure.
#pragma once

#include <span>

#include "host/types.h"

namespace kExifLib {

// True when the bytes begin as a TIFF structure (TIFF 6.0, section 2, image file header).
[[nodiscard]] bool isTiff(std::span<const host::u8> tiff) noexcept;

// The JPEG stream that the 1st IFD points to, as a part of the bytes passed; empty when there is
// none or when it does not lie inside them (EXIF 2.32, 4.5.5).
[[nodiscard]] std::span<const host::u8> findThumbnail(std::span<const host::u8> tiff) noexcept;

}  // namespace kExifLib

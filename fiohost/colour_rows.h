// Rows as the plug-in delivers them, turned into the grey or red, green, blue of picture files.
#pragma once

#include <cstddef>

#include "host/types.h"

namespace fiohost {

// Channels of a picture file for a row of 1 (grey), 3 (blue, green, red) or 4 (cyan, magenta,
// yellow, black, 0 = no ink) bytes per pixel.
[[nodiscard]] host::u32 displayChannels(host::u32 bytesPerPixel);

// target holds width * displayChannels(bytesPerPixel) bytes.
void toDisplay(const host::u8* source, host::u32 bytesPerPixel, std::size_t width,
               host::u8* target);

}  // namespace fiohost

#include "fiohost/colour_rows.h"

#include <algorithm>

namespace fiohost {
namespace {

// What is left of white light behind two layers of ink.
host::u8 throughInks(host::u8 colour, host::u8 black) {
  const unsigned product = (255U - colour) * (255U - black);
  return static_cast<host::u8>((product + 127) / 255);
}

}  // namespace

host::u32 displayChannels(host::u32 bytesPerPixel) { return bytesPerPixel == 1 ? 1 : 3; }

void toDisplay(const host::u8* source, host::u32 bytesPerPixel, std::size_t width,
               host::u8* target) {
  if (bytesPerPixel == 1) {
    std::copy_n(source, width, target);
    return;
  }
  for (std::size_t x = 0; x < width; ++x, source += bytesPerPixel, target += 3) {
    for (int c = 0; c < 3; ++c) {
      target[c] = bytesPerPixel == 4 ? throughInks(source[c], source[3]) : source[2 - c];
    }
  }
}

}  // namespace fiohost

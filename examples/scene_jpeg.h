// The example scene as JPEG files.
#pragma once

#include "examples/exif_block.h"

namespace examples {

// A JPEG stream of the scene, seen from a viewpoint of sceneColour(). An EXIF block that is not
// empty follows the JFIF header.
[[nodiscard]] Bytes encodeScene(unsigned width, unsigned height, bool jfif, const Bytes& exif,
                                double viewpoint = 0);

// False when the file cannot be written.
[[nodiscard]] bool writeFile(const char* name, const Bytes& bytes);

}  // namespace examples

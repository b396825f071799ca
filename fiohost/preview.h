// A small rendering of a picture, from which the plug-in makes the thumbnail that a file carries.
#pragma once

#include <vector>

#include "fiohost/read_picture.h"

namespace fiohost {

struct PreviewRows {
  PictureShape shape = {};
  std::vector<host::u8> pixels;  // grey, or blue, green, red: as the plug-in takes rows

  // The rows' addresses, which live as long as this object.
  [[nodiscard]] std::vector<host::u8*> rows();
};

// Decodes the picture reduced to fit into a box. Throws Failure when it cannot be read.
[[nodiscard]] PreviewRows makePreview(const Session& session, const SourceFile& file,
                                      const Size& box);

}  // namespace fiohost

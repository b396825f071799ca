// The EXIF segment among the segments of a JPEG file.
#pragma once

#include <vector>

#include "companions/kExifLib/file_stream.h"

namespace kExifLib {

// The TIFF structure of the first APP1 segment that begins with the EXIF identifier, as far as the
// file holds it; empty when there is none before the image data (T.81, annex B; EXIF 2.32, 4.7.2).
[[nodiscard]] std::vector<host::u8> readExifTiff(FileStream& file);

}  // namespace kExifLib

// One block of metadata as a file of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "fiohost/properties.h"
#include "fiohost/source_file.h"

namespace fiohost {

// What can be taken out, as the user names it.
[[nodiscard]] const std::vector<std::string>& extractNames();

// The whole block: the main XMP packet, the ICC profile with its chunks joined, the thumbnail's
// JPEG stream, the EXIF block as a TIFF structure, or the camera-data heap. Throws Failure when the
// file has none.
[[nodiscard]] std::vector<std::uint8_t> extractBlock(const std::string& name,
                                                     const Session& session, const SourceFile& file,
                                                     const std::vector<Property>& properties);

}  // namespace fiohost

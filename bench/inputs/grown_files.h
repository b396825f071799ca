// Files whose metadata grows.
#pragma once

#include <filesystem>

#include "host/types.h"

namespace bench {

// A small picture whose EXIF directory has that many entries, up to 65,535. They would not all fit
// a segment, so the directory lies behind the picture, where an offset of the segment leads.
void writeEntries(const std::filesystem::path& path, host::u32 count);

// A small picture with that many application segments of about 1,000 bytes, none of them known.
void writeSegments(const std::filesystem::path& path, host::u32 count);

// A multi-picture file of that many images of one size, up to 127.
void writeImages(const std::filesystem::path& path, host::u32 count);

}  // namespace bench

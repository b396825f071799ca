// The least that describing a file can cost.
#pragma once

#include <filesystem>

#include "host/types.h"

namespace bench {

// Maps the file, walks its marker segments up to the first scan (T.81 annex B) and takes width and
// height from the frame header. Returns their sum, 0 when there is none.
[[nodiscard]] host::u32 walkSegments(const std::filesystem::path& path);

}  // namespace bench

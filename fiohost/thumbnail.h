// The thumbnail in a file's EXIF block, as the EXIF reader and the codec know it.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "fiohost/session.h"
#include "fiohost/source_file.h"

namespace fiohost {

struct ThumbnailFacts {
  host::u32 width;   // pixels
  host::u32 height;  // pixels
  host::u32 components;
  host::u32 horizontalResolution;
  host::u32 verticalResolution;
  host::u64 byteCount;  // of the embedded JPEG stream
};

// Nothing when the file has no thumbnail, or one that the codec cannot read.
[[nodiscard]] std::optional<ThumbnailFacts> findThumbnail(const Session& session,
                                                          const SourceFile& file);

// The embedded JPEG stream; empty when there is none.
[[nodiscard]] std::vector<std::uint8_t> readThumbnailBytes(const Session& session,
                                                           const SourceFile& file);

}  // namespace fiohost

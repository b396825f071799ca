// What a JPEG file holds beside its picture: application segments, comments, and what follows the
// end of the image (T.81 annex B).
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "fiohost/streams/jpeg_stream.h"

namespace fiohost {

struct JpegSegment {
  std::uint8_t marker;                // 0xE0 to 0xEF, or 0xFE for a comment
  std::vector<std::uint8_t> payload;  // behind the length word

  [[nodiscard]] bool operator==(const JpegSegment&) const = default;
};

// "EXIF", "XMP", "ICC profile" ..., "APP7" for what nobody is known to write, "comment".
[[nodiscard]] std::string segmentName(const JpegSegment& segment);

// The segment that holds a camera-data heap.
[[nodiscard]] bool isCameraData(const JpegSegment& segment);

[[nodiscard]] bool isExif(const JpegSegment& segment);
[[nodiscard]] bool isPhotoshop(const JpegSegment& segment);

// Segments that the codec writes by itself.
[[nodiscard]] bool isJfif(const JpegSegment& segment);
[[nodiscard]] bool isAdobe(const JpegSegment& segment);

[[nodiscard]] bool isExtendedXmp(const JpegSegment& segment);

struct JpegLayout {
  std::vector<JpegSegment> segments;  // in file order
  std::uint64_t trailingBytes = 0;    // behind the end of the first image
};

// A file that ends early, or is no JPEG, gives what was found until then.
[[nodiscard]] JpegLayout layoutOf(ByteView bytes);
[[nodiscard]] JpegLayout layoutOf(const std::filesystem::path& file);

}  // namespace fiohost

// Metadata blocks with a value of every kind that the readers know.
#pragma once

#include "tests/support/jpeg_builder.h"
#include "tests/support/tiff_builder.h"

namespace support {

// EXIF and GPS entries, a maker note and a thumbnail.
[[nodiscard]] Bytes richTiff(ByteOrder order);
// A camera-data heap with sub-heaps, texts, numbers and values in their entries.
[[nodiscard]] Bytes richHeap(bool bigEndian);
// A Photoshop resource with four datasets, one of an extended length.
[[nodiscard]] Bytes iptcResource();
// Those and a segment of every other kind, added to a picture.
[[nodiscard]] JpegBuilder withEverySegment(JpegBuilder picture);

}  // namespace support

// JPEG files with the metadata that the pages show.
#pragma once

#include "tests/heap/heap_model.h"
#include "tests/support/tiff_builder.h"

namespace test {

struct MetadataKinds {
  bool cameraData = false;
  bool exif = false;
  bool gps = false;
  bool iptc = false;
};

[[nodiscard]] support::Bytes jpegWith(const MetadataKinds& kinds);

// A camera's heap: texts, a time, numbers with labels, a sub-heap, a record that nobody knows.
[[nodiscard]] support::Bytes cameraHeap();

}  // namespace test

// What became of a file's segments when it was saved anew.
#pragma once

#include <string>
#include <vector>

#include "fiohost/jpeg_segments.h"
#include "fiohost/json_value.h"

namespace fiohost {

enum class SegmentFate { kept, changed, dropped, added };

struct SegmentOutcome {
  std::string name;
  std::uint64_t byteCount;  // of payload
  SegmentFate fate;
  std::string reason;  // empty for a kept segment
};

// The segments whose values were set.
struct EditedParts {
  bool cameraData = false;
  bool exif = false;
  bool iptc = false;
};

struct SaveIntent {
  bool dropMetadata = false;
  bool jfif = true;
  EditedParts edited = {};
};

// Every segment of the source in its order, then what the saved file has beside them.
[[nodiscard]] std::vector<SegmentOutcome> compareLayouts(const JpegLayout& source,
                                                         const JpegLayout& saved,
                                                         const SaveIntent& intent);

[[nodiscard]] std::string outcomesInWords(const std::vector<SegmentOutcome>& outcomes);
[[nodiscard]] Json outcomesInJson(const std::vector<SegmentOutcome>& outcomes);

}  // namespace fiohost

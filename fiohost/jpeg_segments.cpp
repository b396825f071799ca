#include "fiohost/jpeg_segments.h"

#include <array>
#include <string_view>

namespace fiohost {
namespace {

using std::uint8_t;
using namespace std::string_view_literals;

constexpr uint8_t firstApp = 0xE0;
constexpr uint8_t lastApp = 0xEF;

// How a segment is told by its APP number and the first bytes of its payload.
struct SegmentKind {
  uint8_t app;
  std::string_view signature;
  std::size_t offset;  // of the signature in the payload
  const char* name;
};
constexpr std::array kinds = {
    SegmentKind{0, "JFIF\0"sv, 0, "JFIF"},
    SegmentKind{0, "JFXX\0"sv, 0, "JFIF extension"},
    SegmentKind{0, "HEAP"sv, 6, "camera data"},
    SegmentKind{1, "Exif\0\0"sv, 0, "EXIF"},
    SegmentKind{1, "http://ns.adobe.com/xap/1.0/\0"sv, 0, "XMP"},
    SegmentKind{1, "http://ns.adobe.com/xmp/extension/\0"sv, 0, "extended XMP"},
    SegmentKind{2, "ICC_PROFILE\0"sv, 0, "ICC profile"},
    SegmentKind{2, "FPXR\0"sv, 0, "FlashPix"},
    SegmentKind{2, "MPF\0"sv, 0, "multi-picture index"},
    SegmentKind{13, "Photoshop "sv, 0, "Photoshop resources"},
    SegmentKind{14, "Adobe"sv, 0, "Adobe"},
};

bool matches(const JpegSegment& segment, const SegmentKind& kind) {
  const std::string_view payload(reinterpret_cast<const char*>(segment.payload.data()),
                                 segment.payload.size());
  return segment.marker == firstApp + kind.app && payload.size() >= kind.offset &&
         payload.substr(kind.offset, kind.signature.size()) == kind.signature;
}

bool isNamed(const JpegSegment& segment, std::string_view name) {
  return segmentName(segment) == name;
}

}  // namespace

std::string segmentName(const JpegSegment& segment) {
  for (const SegmentKind& kind : kinds) {
    if (matches(segment, kind)) return kind.name;
  }
  return segment.marker == markerComment ? "comment"
                                         : "APP" + std::to_string(segment.marker - firstApp);
}

bool isCameraData(const JpegSegment& segment) { return isNamed(segment, "camera data"); }

bool isExif(const JpegSegment& segment) { return isNamed(segment, "EXIF"); }

bool isPhotoshop(const JpegSegment& segment) { return isNamed(segment, "Photoshop resources"); }

bool isJfif(const JpegSegment& segment) { return isNamed(segment, "JFIF"); }

bool isAdobe(const JpegSegment& segment) { return isNamed(segment, "Adobe"); }

bool isExtendedXmp(const JpegSegment& segment) { return isNamed(segment, "extended XMP"); }

JpegLayout layoutOf(const std::filesystem::path& file) { return layoutOf(readWhole(file)); }

JpegLayout layoutOf(ByteView bytes) {
  const JpegStream stream = firstStream(bytes);
  JpegLayout layout;
  for (const StreamSegment& segment : stream.segments) {
    const bool kept = (segment.marker >= firstApp && segment.marker <= lastApp) ||
                      segment.marker == markerComment;
    const ByteView payload = payloadOf(bytes, segment);
    if (kept) layout.segments.push_back({segment.marker, {payload.begin(), payload.end()}});
  }
  layout.trailingBytes = bytes.size() - stream.end;
  return layout;
}

}  // namespace fiohost

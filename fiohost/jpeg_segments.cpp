#include "fiohost/jpeg_segments.h"

#include <array>
#include <fstream>
#include <optional>
#include <string_view>

#include "fiohost/failure.h"

namespace fiohost {
namespace {

using std::uint8_t;
using namespace std::string_view_literals;

constexpr uint8_t markerStart = 0xFF;
constexpr uint8_t endOfImage = 0xD9;
constexpr uint8_t firstApp = 0xE0;
constexpr uint8_t lastApp = 0xEF;
constexpr uint8_t comment = 0xFE;

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

bool hasLength(uint8_t marker) {
  return marker > 0x01 && marker != markerStart && (marker < 0xD0 || marker > endOfImage);
}

class Walker {
 public:
  explicit Walker(const std::filesystem::path& file) : stream_(file, std::ios::binary) {
    if (stream_) return;
    throw Failure("the file cannot be opened", "check that it can still be read");
  }

  JpegLayout walk() {
    JpegLayout layout;
    while (const std::optional<uint8_t> marker = nextMarker()) {
      if (*marker == endOfImage) {
        layout.trailingBytes = bytesLeft();
        break;
      }
      if (hasLength(*marker) && !takeSegment(*marker, layout)) break;
    }
    return layout;
  }

 private:
  std::optional<uint8_t> nextByte() {
    const int byte = stream_.rdbuf()->sbumpc();
    if (byte == std::char_traits<char>::eof()) return std::nullopt;
    return static_cast<uint8_t>(byte);
  }

  // Steps over entropy-coded data and fill bytes; a stuffed FF 00 is no marker.
  std::optional<uint8_t> nextMarker() {
    bool armed = false;
    while (const std::optional<uint8_t> byte = nextByte()) {
      if (armed && *byte != 0 && *byte != markerStart) return byte;
      armed = *byte == markerStart;
    }
    return std::nullopt;
  }

  bool takeSegment(uint8_t marker, JpegLayout& layout) {
    const std::optional<uint8_t> high = nextByte();
    const std::optional<uint8_t> low = nextByte();
    if (!high || !low) return false;
    const int length = *high << 8 | *low;
    if (length < 2) return false;
    JpegSegment segment{marker, std::vector<uint8_t>(static_cast<std::size_t>(length - 2))};
    stream_.read(reinterpret_cast<char*>(segment.payload.data()), length - 2);
    if (stream_.gcount() != length - 2) return false;
    const bool kept = (marker >= firstApp && marker <= lastApp) || marker == comment;
    if (kept) layout.segments.push_back(std::move(segment));
    return true;
  }

  std::uint64_t bytesLeft() {
    const std::streamoff here = stream_.tellg();
    stream_.seekg(0, std::ios::end);
    return static_cast<std::uint64_t>(stream_.tellg() - here);
  }

  std::ifstream stream_;
};

}  // namespace

std::string segmentName(const JpegSegment& segment) {
  for (const SegmentKind& kind : kinds) {
    if (matches(segment, kind)) return kind.name;
  }
  return segment.marker == comment ? "comment" : "APP" + std::to_string(segment.marker - firstApp);
}

bool isCameraData(const JpegSegment& segment) { return isNamed(segment, "camera data"); }

bool isExif(const JpegSegment& segment) { return isNamed(segment, "EXIF"); }

bool isPhotoshop(const JpegSegment& segment) { return isNamed(segment, "Photoshop resources"); }

bool isJfif(const JpegSegment& segment) { return isNamed(segment, "JFIF"); }

bool isAdobe(const JpegSegment& segment) { return isNamed(segment, "Adobe"); }

bool isExtendedXmp(const JpegSegment& segment) { return isNamed(segment, "extended XMP"); }

JpegLayout layoutOf(const std::filesystem::path& file) { return Walker(file).walk(); }

}  // namespace fiohost

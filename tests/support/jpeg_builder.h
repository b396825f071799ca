// Small valid JPEG files of named segments, and a marker walker that shares no code with the
// software under test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

struct jpeg_compress_struct;

namespace support {

using Bytes = std::vector<std::uint8_t>;

// The characters of a text as bytes, without a NUL.
[[nodiscard]] Bytes bytesOf(std::string_view text);
// The parts one after another.
[[nodiscard]] Bytes joined(const Bytes& first, const Bytes& second);

enum class Layout { grey, twoComponents, colour, cmyk, ycck };

// One sample of the test picture, the same for every encoder that draws it: smooth, with a
// different slope in every channel. Channels of a colour picture are blue, green, red.
[[nodiscard]] std::uint8_t pictureSample(std::uint32_t x, std::uint32_t y, unsigned channel);

// Builds one JPEG. Segments follow SOI in the order in which they were added, behind JFIF or Adobe.
// By default: 24 x 16 pixels, three components, 4:2:0, quality 90, baseline, JFIF with 72 per inch.
class JpegBuilder {
 public:
  JpegBuilder& size(std::uint32_t width, std::uint32_t height);
  JpegBuilder& layout(Layout layout);
  // Sampling factors of luminance (and black) against 1 x 1 of chroma; without effect on a layout
  // that has no chroma.
  JpegBuilder& sampling(int horizontal, int vertical);
  JpegBuilder& quality(int quality);
  JpegBuilder& progressive();
  JpegBuilder& arithmetic();
  JpegBuilder& separateScans();  // sequential, one scan a component
  JpegBuilder& restartEvery(unsigned mcus);
  JpegBuilder& withoutJfif();
  // unit: 0 aspect ratio, 1 per inch, 2 per centimetre.
  JpegBuilder& density(std::uint8_t unit, std::uint16_t horizontal, std::uint16_t vertical);
  // Four-component files carry an Adobe segment unless it is left out.
  JpegBuilder& withoutAdobe();

  JpegBuilder& app(unsigned number, const Bytes& payload);  // 0 to 15
  JpegBuilder& comment(const Bytes& text);
  JpegBuilder& exif(const Bytes& tiff);   // APP1 "Exif"
  JpegBuilder& xmp(const Bytes& packet);  // APP1, main packet
  JpegBuilder& extendedXmp(std::string_view guid, std::uint32_t fullLength, std::uint32_t offset,
                           const Bytes& chunk);  // APP1, guid of 32 characters
  JpegBuilder& icc(std::uint8_t number, std::uint8_t count, const Bytes& chunk);  // APP2
  JpegBuilder& fpxr(const Bytes& content);                                        // APP2 "FPXR"
  JpegBuilder& mpf(const Bytes& content);                                         // APP2 "MPF"
  JpegBuilder& cameraHeap(const Bytes& heap);      // APP0, the whole CIFF payload
  JpegBuilder& photoshop(const Bytes& resources);  // APP13 "Photoshop 3.0"
  JpegBuilder& adobe(std::uint8_t transform);      // APP14, besides the one of four components

  [[nodiscard]] Bytes build() const;

 private:
  struct Segment {
    int marker;
    Bytes payload;
  };

  void setSampling(jpeg_compress_struct& info) const;
  void setScans(jpeg_compress_struct& info) const;
  void setHeaders(jpeg_compress_struct& info) const;

  std::uint32_t width_ = 24;
  std::uint32_t height_ = 16;
  Layout layout_ = Layout::colour;
  int horizontalFactor_ = 2;
  int verticalFactor_ = 2;
  int quality_ = 90;
  unsigned restart_ = 0;
  bool progressive_ = false;
  bool arithmetic_ = false;
  bool separateScans_ = false;
  bool jfif_ = true;
  bool adobe_ = true;
  std::uint8_t densityUnit_ = 1;
  std::uint16_t horizontalDensity_ = 72;
  std::uint16_t verticalDensity_ = 72;
  std::vector<Segment> segments_;
};

// One marker segment as it lies in a stream. Offsets count from the start of the bytes given.
struct MarkerSegment {
  std::uint8_t marker;  // the byte after 0xFF
  std::size_t markerOffset;
  std::size_t payloadOffset;
  Bytes payload;  // without the two length bytes
};

// The segments from SOI up to and including the first SOS; SOI itself is not listed. Ends early,
// with what was found, where the bytes are not a marker segment that lies wholly inside.
[[nodiscard]] std::vector<MarkerSegment> segmentsOf(const Bytes& jpeg);

}  // namespace support

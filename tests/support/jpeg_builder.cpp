#include "tests/support/jpeg_builder.h"

#include <array>
#include <cstdlib>

#include "companions/klibjpg/jpeg_library.h"

namespace support {
namespace {

constexpr int app0 = 0xE0;
constexpr int startOfImage = 0xD8;
constexpr int startOfScan = 0xDA;
// A sequential script: components, their indices, first and last coefficient, bit positions.
constexpr std::array<jpeg_scan_info, 4> oneScanEach = {
    {{1, {0}, 0, 63, 0, 0}, {1, {1}, 0, 63, 0, 0}, {1, {2}, 0, 63, 0, 0}, {1, {3}, 0, 63, 0, 0}}};

// A compressor whose failure ends the test program: a builder that cannot build is a broken test.
class Compressor {
 public:
  Compressor() {
    info_.err = jpeg_std_error(&errors_);
    errors_.error_exit = [](j_common_ptr info) {
      (*info->err->output_message)(info);
      std::abort();
    };
    jpeg_create_compress(&info_);
    jpeg_mem_dest(&info_, &memory_, &length_);
  }
  Compressor(const Compressor&) = delete;
  Compressor& operator=(const Compressor&) = delete;
  ~Compressor() {
    jpeg_destroy_compress(&info_);
    std::free(memory_);
  }

  jpeg_compress_struct* operator->() { return &info_; }
  jpeg_compress_struct* get() { return &info_; }
  [[nodiscard]] Bytes result() const { return Bytes(memory_, memory_ + length_); }

 private:
  jpeg_compress_struct info_ = {};
  jpeg_error_mgr errors_ = {};
  unsigned char* memory_ = nullptr;
  unsigned long length_ = 0;
};

int channelsOf(Layout layout) {
  switch (layout) {
    case Layout::grey:
      return 1;
    case Layout::twoComponents:
      return 2;
    case Layout::colour:
      return 3;
    default:
      return 4;
  }
}

J_COLOR_SPACE inputSpaceOf(Layout layout) {
  switch (layout) {
    case Layout::grey:
      return JCS_GRAYSCALE;
    case Layout::twoComponents:
      return JCS_UNKNOWN;
    case Layout::colour:
      return JCS_EXT_BGR;
    default:
      return JCS_CMYK;
  }
}

void writeRows(Compressor& compressor) {
  const auto channels = static_cast<unsigned>(compressor->input_components);
  Bytes row(std::size_t{compressor->image_width} * channels);
  while (compressor->next_scanline < compressor->image_height) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = pictureSample(static_cast<std::uint32_t>(i / channels), compressor->next_scanline,
                             static_cast<unsigned>(i % channels));
    }
    JSAMPROW rows[] = {row.data()};
    jpeg_write_scanlines(compressor.get(), rows, 1);
  }
}

unsigned bigEndian16(const Bytes& bytes, std::size_t at) {
  return (unsigned{bytes[at]} << 8) | bytes[at + 1];
}

void appendBigEndian32(Bytes& bytes, std::uint32_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
}

Bytes signature(std::string_view text) {
  Bytes bytes = bytesOf(text);
  bytes.push_back(0);
  return bytes;
}

}  // namespace

Bytes bytesOf(std::string_view text) { return Bytes(text.begin(), text.end()); }

Bytes joined(const Bytes& first, const Bytes& second) {
  Bytes all = first;
  all.insert(all.end(), second.begin(), second.end());
  return all;
}

std::uint8_t pictureSample(std::uint32_t x, std::uint32_t y, unsigned channel) {
  constexpr std::array<std::uint32_t, 4> across = {7, 3, 1, 2};
  constexpr std::array<std::uint32_t, 4> down = {1, 5, 4, 9};
  return static_cast<std::uint8_t>(across[channel % 4] * x + down[channel % 4] * y + 40 * channel);
}

JpegBuilder& JpegBuilder::size(std::uint32_t width, std::uint32_t height) {
  width_ = width;
  height_ = height;
  return *this;
}

JpegBuilder& JpegBuilder::layout(Layout layout) {
  layout_ = layout;
  return *this;
}

JpegBuilder& JpegBuilder::sampling(int horizontal, int vertical) {
  horizontalFactor_ = horizontal;
  verticalFactor_ = vertical;
  return *this;
}

JpegBuilder& JpegBuilder::quality(int quality) {
  quality_ = quality;
  return *this;
}

JpegBuilder& JpegBuilder::progressive() {
  progressive_ = true;
  return *this;
}

JpegBuilder& JpegBuilder::arithmetic() {
  arithmetic_ = true;
  return *this;
}

JpegBuilder& JpegBuilder::separateScans() {
  separateScans_ = true;
  return *this;
}

JpegBuilder& JpegBuilder::restartEvery(unsigned mcus) {
  restart_ = mcus;
  return *this;
}

JpegBuilder& JpegBuilder::withoutJfif() {
  jfif_ = false;
  return *this;
}

JpegBuilder& JpegBuilder::density(std::uint8_t unit, std::uint16_t horizontal,
                                  std::uint16_t vertical) {
  densityUnit_ = unit;
  horizontalDensity_ = horizontal;
  verticalDensity_ = vertical;
  return *this;
}

JpegBuilder& JpegBuilder::withoutAdobe() {
  adobe_ = false;
  return *this;
}

JpegBuilder& JpegBuilder::app(unsigned number, const Bytes& payload) {
  segments_.push_back({app0 + static_cast<int>(number), payload});
  return *this;
}

JpegBuilder& JpegBuilder::comment(const Bytes& text) {
  segments_.push_back({JPEG_COM, text});
  return *this;
}

JpegBuilder& JpegBuilder::exif(const Bytes& tiff) {
  return app(1, joined(Bytes{'E', 'x', 'i', 'f', 0, 0}, tiff));
}

JpegBuilder& JpegBuilder::xmp(const Bytes& packet) {
  return app(1, joined(signature("http://ns.adobe.com/xap/1.0/"), packet));
}

JpegBuilder& JpegBuilder::extendedXmp(std::string_view guid, std::uint32_t fullLength,
                                      std::uint32_t offset, const Bytes& chunk) {
  Bytes payload = joined(signature("http://ns.adobe.com/xmp/extension/"), bytesOf(guid));
  appendBigEndian32(payload, fullLength);
  appendBigEndian32(payload, offset);
  return app(1, joined(payload, chunk));
}

JpegBuilder& JpegBuilder::icc(std::uint8_t number, std::uint8_t count, const Bytes& chunk) {
  Bytes payload = signature("ICC_PROFILE");
  payload.push_back(number);
  payload.push_back(count);
  return app(2, joined(payload, chunk));
}

JpegBuilder& JpegBuilder::fpxr(const Bytes& content) {
  return app(2, joined(signature("FPXR"), content));
}

JpegBuilder& JpegBuilder::mpf(const Bytes& content) {
  return app(2, joined(signature("MPF"), content));
}

JpegBuilder& JpegBuilder::cameraHeap(const Bytes& heap) { return app(0, heap); }

JpegBuilder& JpegBuilder::photoshop(const Bytes& resources) {
  return app(13, joined(signature("Photoshop 3.0"), resources));
}

JpegBuilder& JpegBuilder::adobe(std::uint8_t transform) {
  Bytes payload = bytesOf("Adobe");
  const Bytes versionAndFlags = {0, 100, 0, 0, 0, 0, transform};
  return app(14, joined(payload, versionAndFlags));
}

Bytes JpegBuilder::build() const {
  Compressor compressor;
  compressor->image_width = width_;
  compressor->image_height = height_;
  compressor->input_components = channelsOf(layout_);
  compressor->in_color_space = inputSpaceOf(layout_);
  jpeg_set_defaults(compressor.get());
  if (layout_ == Layout::ycck) jpeg_set_colorspace(compressor.get(), JCS_YCCK);
  jpeg_set_quality(compressor.get(), quality_, TRUE);
  setSampling(*compressor.get());
  setScans(*compressor.get());
  compressor->arith_code = arithmetic_ ? TRUE : FALSE;
  compressor->restart_interval = restart_;
  setHeaders(*compressor.get());
  jpeg_start_compress(compressor.get(), TRUE);
  for (const Segment& segment : segments_) {
    jpeg_write_marker(compressor.get(), segment.marker, segment.payload.data(),
                      static_cast<unsigned>(segment.payload.size()));
  }
  writeRows(compressor);
  jpeg_finish_compress(compressor.get());
  return compressor.result();
}

void JpegBuilder::setSampling(jpeg_compress_struct& info) const {
  for (int i = 0; i < info.num_components; ++i) {
    // The black component of YCCK is sampled like its luminance.
    const bool full = i == 0 || i == 3;
    const bool subsampled = layout_ == Layout::colour || layout_ == Layout::ycck;
    info.comp_info[i].h_samp_factor = subsampled && full ? horizontalFactor_ : 1;
    info.comp_info[i].v_samp_factor = subsampled && full ? verticalFactor_ : 1;
  }
}

void JpegBuilder::setScans(jpeg_compress_struct& info) const {
  if (progressive_) jpeg_simple_progression(&info);
  if (separateScans_) {
    info.scan_info = oneScanEach.data();
    info.num_scans = info.num_components;
  }
}

void JpegBuilder::setHeaders(jpeg_compress_struct& info) const {
  info.write_JFIF_header = info.write_JFIF_header && jfif_ ? TRUE : FALSE;
  info.write_Adobe_marker = info.write_Adobe_marker && adobe_ ? TRUE : FALSE;
  info.density_unit = densityUnit_;
  info.X_density = horizontalDensity_;
  info.Y_density = verticalDensity_;
}

std::vector<MarkerSegment> segmentsOf(const Bytes& jpeg) {
  std::vector<MarkerSegment> found;
  if (jpeg.size() < 2 || jpeg[0] != 0xFF || jpeg[1] != startOfImage) return found;
  std::size_t at = 2;
  while (at + 4 <= jpeg.size() && jpeg[at] == 0xFF) {
    const std::uint8_t marker = jpeg[at + 1];
    if (marker == 0xFF) {  // a fill byte
      ++at;
      continue;
    }
    const std::size_t length = bigEndian16(jpeg, at + 2);
    if (length < 2 || at + 2 + length > jpeg.size()) return found;
    const auto begin = jpeg.begin() + static_cast<std::ptrdiff_t>(at) + 4;
    found.push_back(
        {marker, at, at + 4, Bytes(begin, begin + static_cast<std::ptrdiff_t>(length) - 2)});
    if (marker == startOfScan) return found;
    at += 2 + length;
  }
  return found;
}

}  // namespace support

#include "companions/klibjpg/encoder.h"

#include <algorithm>
#include <cstring>

#include "companions/klibjpg/receiver.h"
#include "companions/klibjpg/row_conversion.h"

namespace klibjpg {
namespace {

using host::i32;
using host::u32;
using host::u8;

constexpr u32 longestPayload = 65533;  // the length word counts itself
constexpr u32 largestAppNumber = 15;
constexpr u32 applicationSegment = 1;
constexpr u32 largestDensityUnit = 2;

struct Factors {
  int horizontal;
  int vertical;
};

// Of luminance against 1 x 1 of chroma, by ChromaSampling.
constexpr Factors lumaFactors[] = {{1, 1}, {2, 1}, {2, 2}, {4, 1}};

bool fitsMarker(const host::SegmentBlock& segment) {
  return segment.kind == applicationSegment && segment.appNumber <= largestAppNumber &&
         segment.payloadLength <= longestPayload &&
         (segment.payload != nullptr || segment.payloadLength == 0);
}

}  // namespace

Encoder::Encoder(OutputTarget& target, Supplier& supplier,
                 const host::WriteOptions& options) noexcept
    : target_(target), supplier_(supplier), options_(options) {
  info_.err = trap_.manager();
}

Encoder::~Encoder() { jpeg_destroy_compress(&info_); }

int Encoder::run() {
  const bool finished = trap_.run<&Encoder::encode>(*this);
  if (target_.result() != host::codecGoOn) return target_.result();
  return finished ? answer_ : codecFailed;
}

void Encoder::encode() {
  jpeg_create_compress(&info_);
  info_.dest = &target_;
  header_.size = sizeof(header_);
  if (!answeredOn(supplier_.onHeader(header_))) return;
  if (!setSize() || !setColours()) {
    answer_ = codecFailed;
    return;
  }
  setCompression();
  if (!writeSegments() || !writeRows()) return;
  jpeg_finish_compress(&info_);
}

bool Encoder::answeredOn(i32 answer) {
  answer_ = answer;
  return answer == host::codecGoOn;
}

// libjpeg's own test compares in a long, which makes large figures negative on Windows.
bool Encoder::setSize() {
  info_.image_width = header_.width;
  info_.image_height = header_.height;
  return header_.width >= 1 && header_.width <= JPEG_MAX_DIMENSION && header_.height >= 1 &&
         header_.height <= JPEG_MAX_DIMENSION;
}

bool Encoder::setColours() {
  switch (header_.components) {
    case 1:
      info_.in_color_space = JCS_GRAYSCALE;
      break;
    case 3:
      info_.in_color_space = JCS_EXT_BGR;
      break;
    case 4:
      info_.in_color_space = JCS_CMYK;
      break;
    default:
      return false;
  }
  info_.input_components = static_cast<int>(header_.components);
  return true;
}

void Encoder::setCompression() {
  jpeg_set_defaults(&info_);
  jpeg_set_quality(&info_, static_cast<int>(std::clamp(options_.quality, 1U, 100U)), TRUE);
  setSampling();
  if (options_.mode == host::modeProgressive) jpeg_simple_progression(&info_);
  if (options_.jfif == 0) info_.write_JFIF_header = FALSE;
  setDensity();
}

void Encoder::setSampling() {
  if (info_.num_components != 3) return;
  const Factors luma =
      lumaFactors[options_.sample < std::size(lumaFactors) ? options_.sample : host::sample422];
  info_.comp_info[0].h_samp_factor = luma.horizontal;
  info_.comp_info[0].v_samp_factor = luma.vertical;
}

// JFIF holds densities from 1 to 65,535; a header without one gets libjpeg's square pixels.
void Encoder::setDensity() {
  if (header_.horizontalResolution == 0 || header_.verticalResolution == 0) return;
  info_.density_unit =
      static_cast<UINT8>(header_.densityUnit <= largestDensityUnit ? header_.densityUnit : 0);
  info_.X_density = static_cast<UINT16>(std::min<u32>(header_.horizontalResolution, UINT16_MAX));
  info_.Y_density = static_cast<UINT16>(std::min<u32>(header_.verticalResolution, UINT16_MAX));
}

// Asks how many segments there are, then writes the file's head and each segment as it is given.
bool Encoder::writeSegments() {
  host::SegmentCountBlock count = {};
  if (!answeredOn(supplier_.onCountSegments(count))) return false;
  jpeg_start_compress(&info_, TRUE);
  for (u32 index = 1; index <= count.count && index != 0; ++index) {
    host::SegmentBlock segment = {};
    segment.index = index;
    if (!answeredOn(supplier_.onSegment(segment))) return false;
    if (!fitsMarker(segment)) continue;
    jpeg_write_marker(&info_, JPEG_APP0 + segment.appNumber, segment.payload,
                      segment.payloadLength);
  }
  return true;
}

bool Encoder::writeRows() {
  host::RowBlock block = {};
  block.size = sizeof(block);
  block.width = info_.image_width;
  block.imageHeight = info_.image_height;
  block.bytesPerPixel = header_.components;
  block.byteCount = block.width * block.bytesPerPixel;
  u8* const own = info_.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&info_), JPOOL_IMAGE,
                                          block.byteCount, 1)[0];
  std::memset(own, 0, block.byteCount);  // what the host leaves unfilled is nobody's old data
  while (info_.next_scanline < info_.image_height) {
    block.row = info_.next_scanline;
    if (!writeRow(block, own)) return false;
  }
  return true;
}

bool Encoder::writeRow(const host::RowBlock& block, u8* own) {
  const u8* pixels = supplier_.rowInPlace(block.row);
  if (pixels == nullptr) {
    host::RowBlock given = block;  // the host's to change
    given.pixels = own;
    if (!answeredOn(supplier_.onRow(given))) return false;
    pixels = own;
  }
  if (info_.in_color_space == JCS_CMYK) {
    invertInk(own, pixels, block.byteCount);
    pixels = own;
  }
  JSAMPROW row = const_cast<u8*>(pixels);  // libjpeg reads it only
  jpeg_write_scanlines(&info_, &row, 1);
  return true;
}

}  // namespace klibjpg

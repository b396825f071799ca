// Test pictures: JPEG streams made and decoded by libjpeg, PNG files decoded by libspng.
#pragma once

#include <utility>

#include "tests/fiohost/support/files.h"

namespace fiohostTest {

// Pixels in rows from the top without gaps; channels 1 grey, 3 red green blue, 4 as stored.
struct Pixels {
  unsigned width = 0;
  unsigned height = 0;
  unsigned channels = 0;
  Bytes bytes;

  [[nodiscard]] unsigned at(unsigned x, unsigned y, unsigned channel) const {
    return bytes[(std::size_t{y} * width + x) * channels + channel];
  }
  friend bool operator==(const Pixels&, const Pixels&) = default;
};

struct JpegSpec {
  unsigned width = 64;
  unsigned height = 48;
  unsigned components = 3;  // 1, 2 (of no known meaning), 3 or 4
  bool progressive = false;
  unsigned horizontalSampling = 2;  // of the first component against the others
  unsigned verticalSampling = 2;
  unsigned densityUnit = 1;
  unsigned density = 72;
  bool jfif = true;
  Bytes exif = {};  // an APP1 payload, empty = none
};

// Smooth patterns that differ in every channel.
[[nodiscard]] Bytes makeJpeg(const JpegSpec& spec);
// libjpeg's own decoding at full size.
[[nodiscard]] Pixels decodeJpeg(const Bytes& stream);
// The stream without its segments of a marker, for example 0xDB for the quantisation tables.
[[nodiscard]] Bytes withoutSegments(const Bytes& stream, std::uint8_t marker);

// (marker, payload) of an application segment.
using AppSegment = std::pair<int, std::string>;
// Those in front of the first scan, in order, but for the two that a codec writes by itself (JFIF
// and Adobe).
[[nodiscard]] std::vector<AppSegment> appSegments(const Bytes& stream);

[[nodiscard]] Pixels decodePng(const Bytes& file);

// How far samples of two pictures of one size lie apart, on average.
[[nodiscard]] double meanDifference(const Pixels& a, const Pixels& b);

}  // namespace fiohostTest

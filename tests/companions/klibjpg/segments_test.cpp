// Application segments on reading: which are raised, with what place and content.
#include <gtest/gtest.h>

#include "tests/companions/klibjpg/codec_calls.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::MarkerSegment;

Bytes counted(std::size_t size) {
  Bytes bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<host::u8>(i * 7 + i / 256);
  return bytes;
}

// What the independent marker walker finds.
std::vector<SeenSegment> applicationSegments(const Bytes& jpeg) {
  std::vector<SeenSegment> found;
  for (const MarkerSegment& segment : support::segmentsOf(jpeg)) {
    if (segment.marker < 0xE0 || segment.marker > 0xEF) continue;
    found.push_back({segment.marker - 0xE0U, segment.payloadOffset, segment.payload});
  }
  return found;
}

JpegBuilder everyKind() {
  JpegBuilder builder;
  for (unsigned number = 0; number < 16; ++number) builder.app(number, counted(10 + number));
  return builder.cameraHeap(counted(300))
      .exif(counted(20000))
      .comment(counted(99))
      .xmp(counted(64))
      .icc(1, 1, counted(65000))
      .mpf(counted(90))
      .photoshop(counted(33))
      .adobe(1);
}

class Chunk : public testing::TestWithParam<std::size_t> {};

TEST_P(Chunk, EverySegmentIsRaisedWithItsPlaceAndPayload) {
  const Bytes jpeg = everyKind().build();
  const std::vector<SeenSegment> expected = applicationSegments(jpeg);
  ASSERT_EQ(expected.size(), 24U);
  EXPECT_EQ(readInput(jpeg, goOn, GetParam()).segments, expected);
}

INSTANTIATE_TEST_SUITE_P(Segments, Chunk, testing::Values(1, 2, 3, 7, 64, 1000, 65535, 65536),
                         testing::PrintToStringParamName());

TEST(Segments, AreTheSameFromAFile) {
  const Bytes jpeg = everyKind().build();
  const TemporaryFile file(jpeg);
  EXPECT_EQ(readFile(file.path()).segments, applicationSegments(jpeg));
}

TEST(Segments, LongestAndEmptyPayload) {
  const Bytes jpeg = JpegBuilder().app(5, counted(65533)).app(6, {}).build();
  const std::vector<SeenSegment> expected = applicationSegments(jpeg);
  ASSERT_EQ(expected.size(), 3U);
  EXPECT_EQ(readInput(jpeg).segments, expected);
  EXPECT_EQ(readInput(jpeg, goOn, 100).segments, expected);
}

TEST(Segments, FillBytesBeforeAMarkerAreNotCountedAsPayload) {
  Bytes jpeg = JpegBuilder().app(3, counted(5)).build();
  jpeg.insert(jpeg.begin() + 2, {0xFF, 0xFF, 0xFF});
  EXPECT_EQ(readInput(jpeg).segments, applicationSegments(jpeg));
  EXPECT_EQ(applicationSegments(jpeg).at(0).payloadOffset, 9U);
}

TEST(Segments, OneThatIsCutOffIsNotRaised) {
  const Bytes whole = JpegBuilder().withoutJfif().app(3, counted(50)).build();
  for (std::ptrdiff_t length = 2; length < 56; ++length) {
    const Reading reading = readInput(Bytes(whole.begin(), whole.begin() + length));
    EXPECT_EQ(reading.result, 0);
    EXPECT_TRUE(reading.segments.empty());
  }
}

TEST(Segments, LengthBelowItsOwnSizeIsPassedOver) {
  Bytes jpeg = JpegBuilder().withoutJfif().build();
  jpeg.insert(jpeg.begin() + 2, {0xFF, 0xE7, 0x00, 0x01});
  const Reading reading = readInput(jpeg);
  EXPECT_EQ(reading.result, 1);
  EXPECT_TRUE(reading.segments.empty());
}

TEST(Segments, BehindTheFirstScanTheyAreNotRaised) {
  Bytes jpeg = JpegBuilder().progressive().build();
  const Reading before = readInput(jpeg);
  jpeg.insert(jpeg.end() - 2, {0xFF, 0xE5, 0x00, 0x04, 1, 2});
  const Reading after = readInput(jpeg);
  EXPECT_EQ(after.result, 1);
  EXPECT_EQ(after.segments, before.segments);
  EXPECT_EQ(after.pixels, before.pixels);
}

}  // namespace
}  // namespace klibjpg_test

// Pixels: what comes out is what libjpeg makes of the stream, sample by sample.
#include <gtest/gtest.h>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::Layout;

struct Case {
  const char* name;
  JpegBuilder builder;
};

void PrintTo(const Case& value, std::ostream* out) { *out << value.name; }

JpegBuilder picture() { return JpegBuilder().size(67, 45); }

const Case cases[] = {
    {"Sampling444", picture().sampling(1, 1)},
    {"Sampling422", picture().sampling(2, 1)},
    {"Sampling420", picture().sampling(2, 2)},
    {"Sampling411", picture().sampling(4, 1)},
    {"Sampling440", picture().sampling(1, 2)},
    {"LowQuality", picture().quality(3)},
    {"Grey", picture().layout(Layout::grey)},
    {"TwoComponents", picture().layout(Layout::twoComponents)},
    {"InvertedCmyk", picture().layout(Layout::cmyk)},
    {"CmykWithoutAdobe", picture().layout(Layout::cmyk).withoutAdobe()},
    {"InvertedYcck", picture().layout(Layout::ycck)},
    {"YcckSubsampled", picture().layout(Layout::ycck).sampling(2, 1)},
    {"Progressive", picture().progressive()},
    {"ProgressiveGrey", picture().layout(Layout::grey).progressive()},
    {"ProgressiveCmyk", picture().layout(Layout::cmyk).progressive()},
    {"SequentialInSeveralScans", picture().separateScans()},
    {"Arithmetic", picture().arithmetic()},
    {"ArithmeticProgressive", picture().arithmetic().progressive()},
    {"RestartMarkers", picture().restartEvery(3)},
    {"WithoutJfif", picture().withoutJfif()},
    {"AdobeSaysRgb", picture().withoutJfif().adobe(0)},
    {"OnePixel", JpegBuilder().size(1, 1)},
    {"LongSegmentsInFront", picture().exif(support::Bytes(65000, 7)).app(14, {'A', 'd'})},
};

class EveryLayout : public testing::TestWithParam<Case> {};

TEST_P(EveryLayout, IsDecodedAsByLibjpeg) {
  const Bytes jpeg = GetParam().builder.build();
  const Picture expected = referenceDecode(jpeg);
  ASSERT_FALSE(expected.pixels.empty());

  const Reading reading = readInput(jpeg);
  ASSERT_EQ(reading.result, 1);
  ASSERT_EQ(reading.headers.size(), 1U);
  EXPECT_EQ(reading.headers[0].header.width, expected.width);
  EXPECT_EQ(reading.headers[0].header.height, expected.height);
  EXPECT_EQ(reading.headers[0].header.components, expected.channels);
  EXPECT_EQ(reading.pixels, expected.pixels);
}

TEST_P(EveryLayout, ComesInRowsFromTheTop) {
  const Reading reading = readInput(GetParam().builder.build());
  const host::ImageHeader& header = reading.headers.at(0).header;
  ASSERT_EQ(reading.rows.size(), header.height);
  for (host::u32 i = 0; i < header.height; ++i) {
    const host::RowBlock& row = reading.rows[i];
    EXPECT_EQ(row.size, 40U);
    EXPECT_EQ(row.row, i);
    EXPECT_EQ(row.width, header.width);
    EXPECT_EQ(row.imageHeight, header.height);
    EXPECT_EQ(row.bytesPerPixel, header.components);
    EXPECT_EQ(row.byteCount, header.width * header.components);
  }
}

TEST_P(EveryLayout, IsTheSameFromAFile) {
  const Bytes jpeg = GetParam().builder.build();
  const TemporaryFile file(jpeg);
  const Bytes expected = readInput(jpeg).pixels;
  const Reading ansi = readFile(file.path());
  EXPECT_EQ(ansi.result, 1);
  EXPECT_EQ(ansi.pixels, expected);
  const Reading wide = readFileW(file.widePath());
  EXPECT_EQ(wide.result, 1);
  EXPECT_EQ(wide.pixels, expected);
}

INSTANTIATE_TEST_SUITE_P(Picture, EveryLayout, testing::ValuesIn(cases),
                         [](const auto& tested) { return tested.param.name; });

TEST(Picture, InkOfAnAdobeFileIsTurned) {
  const Bytes turned = JpegBuilder().layout(Layout::cmyk).quality(100).build();
  const Bytes plain = JpegBuilder().layout(Layout::cmyk).quality(100).withoutAdobe().build();
  const Bytes turnedPixels = readInput(turned).pixels;
  const Bytes plainPixels = readInput(plain).pixels;
  ASSERT_EQ(turnedPixels.size(), plainPixels.size());
  for (std::size_t i = 0; i < plainPixels.size(); ++i) {
    ASSERT_EQ(turnedPixels[i], 255 - plainPixels[i]) << i;
  }
}

TEST(Picture, RowsAreBlueGreenRed) {
  Writing writing;
  writing.options.quality = 100;
  writing.options.sample = host::sample444;
  writing.sample = [](host::u32, host::u32, unsigned channel) {
    return static_cast<host::u8>(channel == 0 ? 250 : channel == 1 ? 120 : 10);
  };
  ASSERT_EQ(writing.run(), 1);
  const Bytes pixels = readInput(writing.file).pixels;
  EXPECT_NEAR(pixels.at(0), 250, 3);
  EXPECT_NEAR(pixels.at(1), 120, 3);
  EXPECT_NEAR(pixels.at(2), 10, 3);
}

struct Scale {
  host::u32 width;
  host::u32 height;
  unsigned expected;  // eighths
};

class AskedSize : public testing::TestWithParam<Scale> {};

// The picture has 100 x 60 pixels; n/8 of it are 13 x 8, 25 x 15, 38 x 23, 50 x 30, 63 x 38, 75 x
// 45, 88 x 53.
TEST_P(AskedSize, GetsTheSmallestScaleThatIsNotSmaller) {
  const Bytes jpeg = JpegBuilder().size(100, 60).build();
  const Picture expected = referenceDecode(jpeg, GetParam().expected);
  const Reading reading = readInput(jpeg, askForSize(GetParam().width, GetParam().height));
  EXPECT_EQ(reading.result, 1);
  EXPECT_EQ(reading.events, "5223");
  ASSERT_EQ(reading.headers.size(), 2U);
  EXPECT_EQ(reading.headers[0].header.width, 100U);
  EXPECT_EQ(reading.headers[0].header.height, 60U);
  EXPECT_EQ(reading.headers[1].header.size, 56U);
  EXPECT_EQ(reading.headers[1].header.width, expected.width);
  EXPECT_EQ(reading.headers[1].header.height, expected.height);
  EXPECT_EQ(reading.rows.size(), expected.height);
  EXPECT_EQ(reading.pixels, expected.pixels);
}

INSTANTIATE_TEST_SUITE_P(
    Picture, AskedSize,
    testing::Values(Scale{1, 1, 1}, Scale{13, 8, 1}, Scale{14, 8, 2}, Scale{13, 9, 2},
                    Scale{25, 15, 2}, Scale{26, 1, 3}, Scale{1, 23, 3}, Scale{39, 23, 4},
                    Scale{50, 30, 4}, Scale{51, 30, 5}, Scale{64, 38, 6}, Scale{75, 46, 7},
                    Scale{88, 53, 7}, Scale{89, 1, 8}, Scale{1, 54, 8}, Scale{100, 59, 8},
                    Scale{101, 61, 8}, Scale{4000, 1, 8}, Scale{1, 4000, 8}, Scale{0, 0, 8},
                    Scale{0, 8, 8}, Scale{13, 0, 8}, Scale{0xFFFFFFFF, 0xFFFFFFFF, 8}),
    [](const auto& tested) {
      return std::to_string(tested.param.width) + "x" + std::to_string(tested.param.height);
    });

TEST(Picture, ProgressiveFileIsScaledInOnePass) {
  const Bytes jpeg = JpegBuilder().size(100, 60).progressive().build();
  const Reading reading = readInput(jpeg, askForSize(20, 10));
  EXPECT_EQ(reading.events, "5223");
  EXPECT_EQ(reading.pixels, referenceDecode(jpeg, 2).pixels);
}

TEST(Picture, UnchangedHeaderIsNotRaisedAgain) {
  const Reading reading = readInput(JpegBuilder().size(100, 60).build(), askForSize(100, 60));
  EXPECT_EQ(reading.events, "523");
}

}  // namespace
}  // namespace klibjpg_test

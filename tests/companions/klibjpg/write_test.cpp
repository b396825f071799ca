// Writing: the file is what libjpeg makes of the same picture and options, byte by byte.
#include <gtest/gtest.h>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::Layout;
using support::MarkerSegment;

struct Sampling {
  int horizontal;
  int vertical;
};
constexpr Sampling samplings[] = {{1, 1}, {2, 1}, {2, 2}, {4, 1}};

using Options = std::tuple<int, host::u32, host::u32, host::u32>;  // quality, mode, sample, JFIF
class EveryOption : public testing::TestWithParam<Options> {};

TEST_P(EveryOption, GivesTheFileThatLibjpegWrites) {
  const auto [quality, mode, sample, jfif] = GetParam();
  Writing writing;
  writing.width = 53;
  writing.height = 37;
  writing.options = {24, static_cast<host::u32>(quality), mode, sample, jfif, 0};
  ASSERT_EQ(writing.run(), 1);

  JpegBuilder expected;
  expected.size(53, 37).quality(quality).sampling(samplings[sample].horizontal,
                                                  samplings[sample].vertical);
  if (mode == 1) expected.progressive();
  if (jfif == 0) expected.withoutJfif();
  EXPECT_EQ(writing.file, expected.build());
}

INSTANTIATE_TEST_SUITE_P(Write, EveryOption,
                         testing::Combine(testing::Values(1, 50, 85, 100), testing::Values(0, 1),
                                          testing::Values(0, 1, 2, 3), testing::Values(0, 1)));

Bytes written(const host::WriteOptions& options) {
  Writing writing;
  writing.options = options;
  EXPECT_EQ(writing.run(), 1);
  return writing.file;
}

TEST(Write, QualityIsClamped) {
  EXPECT_EQ(written({24, 0, 0, 0, 1, 0}), written({24, 1, 0, 0, 1, 0}));
  EXPECT_EQ(written({24, 101, 0, 0, 1, 0}), written({24, 100, 0, 0, 1, 0}));
  EXPECT_EQ(written({24, 0xFFFFFFFF, 0, 0, 1, 0}), written({24, 100, 0, 0, 1, 0}));
}

TEST(Write, UnknownModeIsBaselineAndUnknownSampling422) {
  EXPECT_EQ(written({24, 80, 7, 0, 1, 0}), written({24, 80, 0, 0, 1, 0}));
  EXPECT_EQ(written({24, 80, 0, 4, 1, 0}), written({24, 80, 0, 1, 1, 0}));
  EXPECT_EQ(written({24, 80, 0, 0xFFFFFFFF, 1, 0}), written({24, 80, 0, 1, 1, 0}));
}

TEST(Write, LowQualityStaysBaseline) {
  const auto segments = support::segmentsOf(written({24, 1, 0, 2, 1, 0}));
  for (const MarkerSegment& segment : segments) EXPECT_NE(segment.marker, 0xC1);
}

TEST(Write, GreyHasOneComponent) {
  Writing writing;
  writing.bytesPerPixel = 1;
  ASSERT_EQ(writing.run(), 1);
  EXPECT_EQ(writing.file, JpegBuilder().layout(Layout::grey).build());
}

TEST(Write, InkIsInvertedWithAnAdobeSegmentAndWithoutJfif) {
  for (const host::u32 jfif : {0U, 1U}) {
    Writing writing;
    writing.bytesPerPixel = 4;
    writing.options.jfif = jfif;
    writing.sample = [](host::u32 x, host::u32 y, unsigned channel) {
      return static_cast<host::u8>(255 - support::pictureSample(x, y, channel));
    };
    ASSERT_EQ(writing.run(), 1);
    EXPECT_EQ(writing.file, JpegBuilder().layout(Layout::cmyk).build());
    const auto segments = support::segmentsOf(writing.file);
    EXPECT_EQ(segments.at(0).marker, 0xEE);
    for (const MarkerSegment& segment : segments) EXPECT_NE(segment.marker, 0xE0);
  }
}

TEST(Write, InkComesBackAsItWas) {
  Writing writing;
  writing.bytesPerPixel = 4;
  writing.options.quality = 100;
  writing.sample = [](host::u32, host::u32, unsigned channel) {
    return static_cast<host::u8>(30 * channel);
  };
  ASSERT_EQ(writing.run(), 1);
  const Bytes pixels = readInput(writing.file).pixels;
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    ASSERT_NEAR(pixels[i], static_cast<int>(30 * (i % 4)), 2);
  }
}

TEST(Write, OtherPixelSizesFail) {
  for (const host::u32 bytes : {0U, 2U, 5U, 0xFFFFFFFFU}) {
    Writing writing;
    writing.bytesPerPixel = bytes;
    EXPECT_EQ(writing.run(), 0) << bytes;
    EXPECT_EQ(writing.events, "2");
    EXPECT_TRUE(writing.file.empty());
  }
}

TEST(Write, SizesOutsideTheFormatFail) {
  for (const auto& [width, height] :
       {std::pair{0U, 16U}, {24U, 0U}, {65501U, 1U}, {1U, 65501U}, {0xFFFFFFFFU, 0xFFFFFFFFU}}) {
    Writing writing;
    writing.width = width;
    writing.height = height;
    EXPECT_EQ(writing.run(), 0) << width << " x " << height;
    EXPECT_EQ(writing.rowCalls, 0U);
  }
}

struct Density {
  host::u32 unit;
  host::u32 horizontal;
  host::u32 vertical;
};

void expectDensity(const Density& given, const Density& expected) {
  Writing writing;
  writing.densityUnit = given.unit;
  writing.horizontalResolution = given.horizontal;
  writing.verticalResolution = given.vertical;
  ASSERT_EQ(writing.run(), 1);
  const Bytes jfif = support::segmentsOf(writing.file).at(0).payload;
  EXPECT_EQ(jfif.at(7), expected.unit);
  EXPECT_EQ(jfif.at(8) * 256U + jfif.at(9), expected.horizontal);
  EXPECT_EQ(jfif.at(10) * 256U + jfif.at(11), expected.vertical);
}

TEST(Write, JfifHoldsTheHeadersDensity) {
  expectDensity({1, 300, 150}, {1, 300, 150});
  expectDensity({2, 118, 119}, {2, 118, 119});
  expectDensity({0, 72, 72}, {0, 72, 72});
  expectDensity({9, 72, 72}, {0, 72, 72});
  expectDensity({1, 70000, 5}, {1, 65535, 5});
  expectDensity({1, 0, 0}, {0, 1, 1});
  expectDensity({1, 300, 0}, {0, 1, 1});
}

TEST(Write, SegmentsFollowTheHeadInTheirOrder) {
  Writing writing;
  JpegBuilder expected;
  for (unsigned number = 0; number < 16; ++number) {
    const Bytes payload(number * 4000, static_cast<host::u8>(number));
    writing.segments.push_back({15 - number, payload});
    expected.app(15 - number, payload);
  }
  ASSERT_EQ(writing.run(), 1);
  EXPECT_EQ(writing.events, "24" + std::string(16, '5') + "3");
  EXPECT_EQ(writing.file, expected.build());
}

TEST(Write, SegmentsFollowAdobe) {
  Writing writing;
  writing.bytesPerPixel = 4;
  writing.segments = {{1, {1, 2, 3}}};
  ASSERT_EQ(writing.run(), 1);
  const auto segments = support::segmentsOf(writing.file);
  EXPECT_EQ(segments.at(0).marker, 0xEE);
  EXPECT_EQ(segments.at(1).marker, 0xE1);
  EXPECT_EQ(segments.at(1).payload, (Bytes{1, 2, 3}));
}

TEST(Write, LongestPayloadIsWrittenAndALongerOneLeftOut) {
  Writing writing;
  writing.segments = {{1, Bytes(65534, 1)}, {2, Bytes(65533, 2)}, {16, {3}}, {3, Bytes(70000, 4)}};
  ASSERT_EQ(writing.run(), 1);
  EXPECT_EQ(writing.file, JpegBuilder().app(2, Bytes(65533, 2)).build());
}

TEST(Write, UnfilledSegmentsAreLeftOut) {
  Writing writing;
  writing.segments = {{1, {1}}, {2, {2}}, {3, {3}}};
  writing.answer = [](host::u32 event, void* block) -> host::u32 {
    if (event != host::eventSegment) return host::codecGoOn;
    auto& segment = *static_cast<host::SegmentBlock*>(block);
    if (segment.index == 1) segment.kind = 0;
    if (segment.index == 3) segment.payload = nullptr;
    return host::codecGoOn;
  };
  ASSERT_EQ(writing.run(), 1);
  EXPECT_EQ(writing.file, JpegBuilder().app(2, {2}).build());
}

// Nothing that compresses: several chunks of output.
host::u8 noise(host::u32 x, host::u32 y, unsigned channel) {
  host::u32 value = x * 0x9E3779B1U ^ y * 0x85EBCA77U ^ channel * 0xC2B2AE3DU;
  value ^= value >> 15;
  value *= 0x2C1B3C6DU;
  return static_cast<host::u8>(value >> 24);
}

Writing largeWriting(host::u32 mode) {
  Writing writing;
  writing.width = writing.height = 400;
  writing.options = {24, 100, mode, host::sample444, 1, 0};
  writing.sample = noise;
  return writing;
}

class Output : public testing::TestWithParam<host::u32> {};

TEST_P(Output, ComesInChunks) {
  Writing writing = largeWriting(GetParam());
  ASSERT_EQ(writing.run(), 1);
  EXPECT_GT(writing.outputCalls, 4U);
  EXPECT_EQ(writing.outputCalls, (writing.file.size() + 65535) / 65536);
}

TEST_P(Output, FailureStopsAtOnce) {
  Writing whole = largeWriting(GetParam());
  ASSERT_EQ(whole.run(), 1);
  for (std::size_t call = 1; call <= whole.outputCalls; ++call) {
    Writing writing = largeWriting(GetParam());
    writing.failingCall = call;
    EXPECT_EQ(writing.run(), -1) << call;
    EXPECT_EQ(writing.outputCalls, call);
    EXPECT_EQ(writing.file.size(), (call - 1) * 65536);
    // A progressive file needs the whole picture before its first byte.
    if (call == 1) {
      EXPECT_EQ(writing.rowCalls < 200, GetParam() == host::modeBaseline);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Write, Output, testing::Values(host::modeBaseline, host::modeProgressive));

TEST(Write, RowsThatTheHostLeavesUnfilledAreNotOldMemory) {
  Writing writing;
  writing.options.quality = 100;
  writing.fillsRows = false;
  ASSERT_EQ(writing.run(), 1);
  EXPECT_EQ(readInput(writing.file).pixels, Bytes(24 * 16 * 3, 0));
}

}  // namespace
}  // namespace klibjpg_test

// What the host is told about a stream.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/companions/klibjpg/codec_calls.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::Layout;

struct Described {
  int result;
  host::ImageHeader header;
  host::ExtraInformation extra;
};

Described describeStream(Bytes jpeg) {
  Described described = {};
  described.extra.size = sizeof(described.extra);
  host::StreamDescriptor stream = {};
  stream.length = static_cast<host::u32>(jpeg.size());
  stream.data = jpeg.data();
  described.result = kJpgStreamGetInfo(&stream, &described.header, &described.extra);
  return described;
}

struct LayoutCase {
  Layout layout;
  host::u32 components;
  host::u32 colourSpace;
};

class LayoutDescription : public testing::TestWithParam<LayoutCase> {};

TEST_P(LayoutDescription, NamesComponentsAndColourSpace) {
  const Described described =
      describeStream(JpegBuilder().size(31, 17).layout(GetParam().layout).build());
  EXPECT_EQ(described.result, 1);
  EXPECT_EQ(described.header.size, 32U);
  EXPECT_EQ(described.header.width, 31U);
  EXPECT_EQ(described.header.height, 17U);
  EXPECT_EQ(described.header.components, GetParam().components);
  EXPECT_EQ(described.header.colourSpace, GetParam().colourSpace);
}

INSTANTIATE_TEST_SUITE_P(Description, LayoutDescription,
                         testing::Values(LayoutCase{Layout::grey, 1, 1},
                                         LayoutCase{Layout::twoComponents, 2, 0},
                                         LayoutCase{Layout::colour, 3, 3},
                                         LayoutCase{Layout::cmyk, 4, 5},
                                         LayoutCase{Layout::ycck, 4, 5}));

struct SamplingCase {
  int horizontal;
  int vertical;
  host::u32 expected;
};

class SamplingDescription : public testing::TestWithParam<SamplingCase> {};

TEST_P(SamplingDescription, IsTheNearestInChromaSamples) {
  const auto [horizontal, vertical, expected] = GetParam();
  EXPECT_EQ(describeStream(JpegBuilder().sampling(horizontal, vertical).build()).extra.sample,
            expected);
  EXPECT_EQ(
      describeStream(
          JpegBuilder().layout(Layout::ycck).sampling(horizontal > 2 ? 2 : horizontal, 1).build())
          .extra.sample,
      horizontal > 1 ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Description, SamplingDescription,
                         testing::Values(SamplingCase{1, 1, 0}, SamplingCase{2, 1, 1},
                                         SamplingCase{1, 2, 1}, SamplingCase{2, 2, 2},
                                         SamplingCase{4, 1, 3}, SamplingCase{3, 1, 3},
                                         SamplingCase{1, 4, 2}, SamplingCase{1, 3, 2},
                                         SamplingCase{4, 2, 2}, SamplingCase{2, 4, 2}),
                         [](const auto& tested) {
                           return std::to_string(tested.param.horizontal) + "x" +
                                  std::to_string(tested.param.vertical);
                         });

TEST(Description, GreyHasNoSubsampling) {
  EXPECT_EQ(describeStream(JpegBuilder().layout(Layout::grey).build()).extra.sample, 0U);
}

TEST(Description, ProgressiveIsAModeAndAFlag) {
  const Described progressive = describeStream(JpegBuilder().progressive().build());
  EXPECT_EQ(progressive.extra.mode, 1U);
  EXPECT_EQ(progressive.extra.progressive, 1U);
  const Described severalScans = describeStream(JpegBuilder().separateScans().build());
  EXPECT_EQ(severalScans.extra.mode, 0U);
  EXPECT_EQ(severalScans.extra.progressive, 0U);
}

TEST(Description, ResolutionIsThatOfJfif) {
  const Described centimetres = describeStream(JpegBuilder().density(2, 118, 59).build());
  EXPECT_EQ(centimetres.extra.jfif, 1U);
  EXPECT_EQ(centimetres.header.densityUnit, 2U);
  EXPECT_EQ(centimetres.header.horizontalResolution, 118U);
  EXPECT_EQ(centimetres.header.verticalResolution, 59U);
  const Described aspect = describeStream(JpegBuilder().density(0, 1, 2).build());
  EXPECT_EQ(aspect.header.densityUnit, 0U);
  EXPECT_EQ(aspect.header.horizontalResolution, 1U);
  EXPECT_EQ(aspect.header.verticalResolution, 2U);
}

TEST(Description, UnitThatJfifDoesNotKnowIsNone) {
  const Described described = describeStream(JpegBuilder().density(3, 10, 20).build());
  EXPECT_EQ(described.header.densityUnit, 0U);
  EXPECT_EQ(described.header.horizontalResolution, 10U);
}

TEST(Description, UnknownResolutionIsSeventyTwoPerInch) {
  const Described described = describeStream(JpegBuilder().withoutJfif().density(2, 5, 5).build());
  EXPECT_EQ(described.extra.jfif, 0U);
  EXPECT_EQ(described.header.densityUnit, 1U);
  EXPECT_EQ(described.header.horizontalResolution, 72U);
  EXPECT_EQ(described.header.verticalResolution, 72U);
}

TEST(Description, HeaderEventCarriesTheExtraInformation) {
  const Reading reading = readInput(JpegBuilder().progressive().sampling(2, 1).build());
  ASSERT_EQ(reading.headers.size(), 1U);
  EXPECT_EQ(reading.headers[0].header.size, 56U);
  EXPECT_EQ(reading.headers[0].extra.size, 24U);
  EXPECT_EQ(reading.headers[0].extra.mode, 1U);
  EXPECT_EQ(reading.headers[0].extra.sample, 1U);
  EXPECT_EQ(reading.headers[0].extra.jfif, 1U);
  EXPECT_EQ(reading.headers[0].extra.progressive, 1U);
}

TEST(Description, FileAndStreamAgree) {
  const Bytes jpeg = JpegBuilder().size(50, 40).progressive().density(1, 300, 301).build();
  const TemporaryFile file(jpeg);
  const Described stream = describeStream(jpeg);
  for (const bool wide : {false, true}) {
    Described described = {};
    described.extra.size = sizeof(described.extra);
    described.result =
        wide ? kJpgFileGetInfoW(file.widePath().c_str(), &described.header, &described.extra)
             : kJpgFileGetInfo(file.path().c_str(), &described.header, &described.extra);
    EXPECT_EQ(std::memcmp(&described, &stream, sizeof(stream)), 0) << wide;
  }
}

TEST(Description, ExtraInformationWithoutItsSizeIsLeftAlone) {
  Bytes jpeg = JpegBuilder().build();
  const host::StreamDescriptor stream = {static_cast<host::u32>(jpeg.size()), {}, jpeg.data()};
  host::ExtraInformation extra = {};
  extra.size = 20;
  extra.jfif = 99;
  host::ImageHeader header = {};
  EXPECT_EQ(kJpgStreamGetInfo(&stream, &header, &extra), 1);
  EXPECT_EQ(extra.jfif, 99U);
  EXPECT_EQ(header.width, 24U);
  EXPECT_EQ(kJpgStreamGetInfo(&stream, nullptr, nullptr), 1);
}

TEST(Description, FailureLeavesTheBlocksAlone) {
  host::ImageHeader header = {};
  header.width = 99;
  EXPECT_EQ(kJpgFileGetInfo("there/is/no/such.jpg", &header, nullptr), 0);
  EXPECT_EQ(header.width, 99U);
}

}  // namespace
}  // namespace klibjpg_test

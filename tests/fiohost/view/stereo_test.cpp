#include "fiohost/view/stereo.h"

#include <gmock/gmock.h>

#include "fiohost/view/decode.h"
#include "fiohost/view/dib.h"

namespace fiohost::view {
namespace {

using testing::ElementsAre;

Raster rasterOf(const Extent& size, std::vector<Pixel> pixels) {
  Raster raster(size);
  raster.pixels = std::move(pixels);
  return raster;
}

const Raster left = rasterOf({3, 1}, {0x102030, 0x405060, 0xFF0000});
const Raster right = rasterOf({3, 1}, {0x111213, 0x212223, 0x313233});

TEST(Stereo, AnaglyphTakesRedFromTheLeftsGreenAndBlue) {
  // 0.7 * 0x20 + 0.3 * 0x30 = 36.8; 0.7 * 0x50 + 0.3 * 0x60 = 84.8; a pure red is black there.
  EXPECT_THAT(
      composeStereo(StereoMode::anaglyph, left, right, 0).pixels,
      ElementsAre(pixelOf(37, 0x12, 0x13), pixelOf(85, 0x22, 0x23), pixelOf(0, 0x32, 0x33)));
}

TEST(Stereo, AnaglyphOfWhiteIsWhite) {
  const Raster white = rasterOf({1, 1}, {0xFFFFFF});
  EXPECT_EQ(composeStereo(StereoMode::anaglyph, white, white, 0).at(0, 0), 0xFFFFFFU);
}

TEST(Stereo, SideBySideHasTheLeftOnTheLeft) {
  const Raster both = composeStereo(StereoMode::sideBySide, left, right, 0);
  EXPECT_EQ(both.size, (Extent{6, 1}));
  EXPECT_THAT(both.pixels, ElementsAre(0x102030, 0x405060, 0xFF0000, 0x111213, 0x212223, 0x313233));
}

TEST(Stereo, CrossEyedHasTheLeftOnTheRight) {
  EXPECT_THAT(composeStereo(StereoMode::crossEyed, left, right, 0).pixels,
              ElementsAre(0x111213, 0x212223, 0x313233, 0x102030, 0x405060, 0xFF0000));
}

TEST(Stereo, WiggleShowsOneAfterTheOther) {
  EXPECT_EQ(composeStereo(StereoMode::wiggle, left, right, 0, 0), left);
  EXPECT_EQ(composeStereo(StereoMode::wiggle, left, right, 0, 1), right);
  EXPECT_EQ(composeStereo(StereoMode::wiggle, left, right, 0, 2), left);
}

TEST(Stereo, ParallaxMovesTheRightPictureOnly) {
  EXPECT_THAT(composeStereo(StereoMode::wiggle, left, right, 1, 1).pixels,
              ElementsAre(0, 0x111213, 0x212223));
  EXPECT_THAT(composeStereo(StereoMode::wiggle, left, right, -2, 1).pixels,
              ElementsAre(0x313233, 0, 0));
  EXPECT_EQ(composeStereo(StereoMode::wiggle, left, right, 1, 0), left);
  EXPECT_THAT(composeStereo(StereoMode::sideBySide, left, right, 9, 0).pixels,
              ElementsAre(0x102030, 0x405060, 0xFF0000, 0, 0, 0));
}

TEST(Stereo, AnAnaglyphIsBlackWhereOneEyeHasNothing) {
  EXPECT_THAT(composeStereo(StereoMode::anaglyph, left, right, 2).pixels,
              ElementsAre(0, 0, pixelOf(0, 0x12, 0x13)));
  EXPECT_THAT(composeStereo(StereoMode::anaglyph, left, right, -2).pixels,
              ElementsAre(pixelOf(37, 0x32, 0x33), 0, 0));
  EXPECT_THAT(composeStereo(StereoMode::anaglyph, left, right, 9).pixels, ElementsAre(0, 0, 0));
  EXPECT_THAT(composeStereo(StereoMode::anaglyph, left, right, -9).pixels, ElementsAre(0, 0, 0));
}

TEST(Stereo, PicturesAreCutToWhatBothHave) {
  const Raster tall = rasterOf({2, 2}, {1, 2, 3, 4});
  EXPECT_EQ(composeStereo(StereoMode::sideBySide, left, tall, 0).size, (Extent{4, 1}));
}

TEST(Stereo, OffIsTheLeftPicture) {
  EXPECT_EQ(composeStereo(StereoMode::off, left, right, 5), left);
  EXPECT_EQ(composedSize(StereoMode::off, {3, 1}), (Extent{3, 1}));
  EXPECT_EQ(composedSize(StereoMode::wiggle, {3, 1}), (Extent{3, 1}));
  EXPECT_EQ(composedSize(StereoMode::crossEyed, {3, 1}), (Extent{6, 1}));
}

TEST(StereoPair, IsTheFirstTwoDisparityImages) {
  EXPECT_EQ(findStereoPair({{true, 0}, {true, 1}}), (StereoPair{0, 1}));
  EXPECT_EQ(findStereoPair({{false, 0}, {true, 1}, {true, 2}, {true, 3}}), (StereoPair{1, 2}));
  EXPECT_EQ(findStereoPair({{true, -1}, {true, -1}}), (StereoPair{0, 1}));
  EXPECT_EQ(findStereoPair({{true, 0}, {false, 1}}), std::nullopt);
}

TEST(StereoPair, TheLowerImageNumberIsTheLeftOne) {
  EXPECT_EQ(findStereoPair({{true, 1}, {true, 0}}), (StereoPair{1, 0}));
}

TEST(Dib, HasRowsFromTheBottomInFours) {
  const std::vector<std::uint8_t> dib = dibOf(rasterOf({1, 2}, {0x010203, 0x040506}));
  ASSERT_EQ(dib.size(), 48U);
  EXPECT_THAT(std::vector<std::uint8_t>(dib.begin(), dib.begin() + 16),
              ElementsAre(40, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 24, 0));
  EXPECT_EQ(dib[20], 8) << "bytes of pixels";
  EXPECT_THAT(std::vector<std::uint8_t>(dib.begin() + 40, dib.end()),
              ElementsAre(6, 5, 4, 0, 3, 2, 1, 0));
}

}  // namespace
}  // namespace fiohost::view

#include "fiohost/view/orientation.h"

#include <gtest/gtest.h>

#include <string>

#include "fiohost/view/canvas.h"

namespace fiohost::view {
namespace {

// The stored picture is "abc" above "def"; what is seen of it, row by row (TIFF 6.0, section 8:
// which side of the scene the stored row 0 and column 0 are).
struct Case {
  unsigned value;
  Extent size;
  const char* seen;
};

class OrientationTest : public testing::TestWithParam<Case> {
 protected:
  static constexpr Extent stored = {3, 2};
};

TEST_P(OrientationTest, PutsEveryPixelInItsPlace) {
  const Orientation orientation(GetParam().value);
  ASSERT_EQ(orientation.shownSize(stored), GetParam().size);
  std::string seen(6, '?');
  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 3; ++x) {
      const Place place = orientation.shownPlace(stored, {x, y});
      seen.at(static_cast<std::size_t>(place.y * GetParam().size.width + place.x)) =
          "abcdef"[y * 3 + x];
    }
  }
  EXPECT_EQ(seen, GetParam().seen);
}

TEST_P(OrientationTest, ACanvasTakesStoredRows) {
  Canvas canvas;
  canvas.announce({30, 20}, Orientation(GetParam().value));
  canvas.beginPass(stored);
  const std::uint8_t rows[2][3] = {{'a', 'b', 'c'}, {'d', 'e', 'f'}};
  canvas.putRow(0, rows[0], 1);
  canvas.putRow(1, rows[1], 1);
  canvas.with([](const Raster& raster) {
    ASSERT_EQ(raster.size, GetParam().size);
    std::string seen;
    for (const Pixel pixel : raster.pixels) {
      EXPECT_EQ(pixel, pixelOf(redOf(pixel), redOf(pixel), redOf(pixel))) << "grey";
      seen += static_cast<char>(redOf(pixel));
    }
    EXPECT_EQ(seen, GetParam().seen);
  });
  const Extent& size = GetParam().size;
  EXPECT_EQ(canvas.wholeSize(), (Extent{size.width * 10, size.height * 10}));
}

INSTANTIATE_TEST_SUITE_P(All, OrientationTest,
                         testing::Values(Case{1, {3, 2}, "abcdef"}, Case{2, {3, 2}, "cbafed"},
                                         Case{3, {3, 2}, "fedcba"}, Case{4, {3, 2}, "defabc"},
                                         Case{5, {2, 3}, "adbecf"}, Case{6, {2, 3}, "daebfc"},
                                         Case{7, {2, 3}, "fcebda"}, Case{8, {2, 3}, "cfbead"}),
                         [](const auto& each) { return std::to_string(each.param.value); });

TEST(Orientation, AnUnknownValueIsAsStored) {
  EXPECT_EQ(Orientation(0), Orientation(1));
  EXPECT_EQ(Orientation(9), Orientation(1));
}

TEST(Canvas, ALaterPassReplacesRowsOneByOne) {
  Canvas canvas;
  canvas.announce({2, 2}, Orientation());
  EXPECT_EQ(canvas.progress().total, 0);
  const std::uint8_t coarse[] = {1, 2, 3, 1, 2, 3};
  const std::uint8_t fine[] = {9, 8, 7, 6, 5, 4};
  canvas.beginPass({2, 2});
  canvas.putRow(0, coarse, 3);
  canvas.putRow(1, coarse, 3);
  EXPECT_EQ(canvas.progress().done, 2);
  canvas.beginPass({2, 2});
  EXPECT_EQ(canvas.progress().done, 0);
  canvas.putRow(0, fine, 3);
  canvas.with([](const Raster& raster) {
    EXPECT_EQ(raster.at(1, 0), 0x060504U) << "red, green, blue";
    EXPECT_EQ(raster.at(1, 1), 0x010203U) << "of the pass before";
  });
  canvas.putRow(2, fine, 3);
  EXPECT_EQ(canvas.progress().done, 1) << "there is no such row";
}

}  // namespace
}  // namespace fiohost::view

#include "fiohost/view/film_strip.h"

#include <gtest/gtest.h>

namespace fiohost::view {
namespace {

class LayoutTest : public testing::TestWithParam<int> {};

TEST_P(LayoutTest, TheStripGrowsWithTheResolutionAndThePictureHasTheRest) {
  const int dpi = GetParam();
  const WindowLayout layout = layOut({1600, 1200}, true, dpi);
  EXPECT_EQ(layout.strip.height, 120 * dpi / 96);
  EXPECT_EQ(layout.picture, (Box{0, 0, 1600, 1200 - layout.strip.height}));
  EXPECT_EQ(layout.strip.top, layout.picture.height);
  EXPECT_EQ(layout.strip.width, 1600);
  EXPECT_EQ(thumbnailSide(dpi), dpi);
}

TEST_P(LayoutTest, CellsStandSideBySideInTheMiddle) {
  const int dpi = GetParam();
  const Box strip = {0, 500, 1600, 120 * dpi / 96};
  const FilmStrip cells(strip, 3, 0, dpi);
  const int width = 108 * dpi / 96;
  EXPECT_EQ(cells.cell(0).left, (1600 - 3 * width) / 2);
  EXPECT_EQ(cells.cell(1).left, cells.cell(0).left + width);
  EXPECT_EQ(cells.thumbnail(1).width, thumbnailSide(dpi));
  EXPECT_EQ(cells.thumbnail(1).height, thumbnailSide(dpi));
  EXPECT_TRUE(cells.cell(1).contains({cells.thumbnail(1).left, cells.thumbnail(1).top}));
}

INSTANTIATE_TEST_SUITE_P(Resolutions, LayoutTest, testing::Values(96, 144, 192));

TEST(FilmStrip, ThumbnailsLieInsideCellsAndCellsInsideTheStripAtEveryResolution) {
  for (int dpi = 96; dpi <= 192; dpi += 12) {
    const Box strip = layOut({1600, 1200}, true, dpi).strip;
    const FilmStrip cells(strip, 2, 0, dpi);
    const Box inner = cells.thumbnail(1);
    EXPECT_EQ(inner.extent(), (Extent{thumbnailSide(dpi), thumbnailSide(dpi)})) << dpi;
    EXPECT_TRUE(cells.cell(1).contains({inner.left + inner.width, inner.top + inner.height}));
    EXPECT_TRUE(strip.contains({cells.cell(1).left, cells.cell(1).top + cells.cell(1).height}));
  }
}

TEST(WindowLayout, WithoutAStripThePictureHasEverything) {
  EXPECT_EQ(layOut({800, 600}, false, 96).picture, (Box{0, 0, 800, 600}));
  EXPECT_TRUE(layOut({800, 600}, false, 96).strip.extent().empty());
}

TEST(WindowLayout, NothingIsSmallerThanNothing) {
  EXPECT_EQ(layOut({800, 50}, true, 96).picture.height, 0);
  EXPECT_EQ(layOut({800, -5}, true, 96).strip.height, 0);
}

TEST(FilmStrip, AClickFindsItsImage) {
  const Box strip = {0, 500, 1000, 120};
  const FilmStrip cells(strip, 3, 0, 96);
  for (int image = 0; image < 3; ++image) {
    const Box cell = cells.cell(image);
    EXPECT_EQ(cells.imageAt({cell.left, cell.top}), image);
    EXPECT_EQ(cells.imageAt({cell.left + cell.width - 1, cell.top + cell.height - 1}), image);
  }
  EXPECT_EQ(cells.imageAt({cells.cell(0).left - 1, 550}), -1);
  EXPECT_EQ(cells.imageAt({cells.cell(2).left + cells.cell(2).width, 550}), -1);
  EXPECT_EQ(cells.imageAt({500, 499}), -1);
}

TEST(FilmStrip, ALongOneMovesSoThatTheSelectedIsSeen) {
  const Box strip = {0, 0, 1000, 120};
  for (const int selected : {0, 7, 50, 126}) {
    const Box cell = FilmStrip(strip, 127, selected, 96).cell(selected);
    EXPECT_GE(cell.left, 0) << selected;
    EXPECT_LE(cell.left + cell.width, 1000) << selected;
  }
  EXPECT_EQ(FilmStrip(strip, 127, 0, 96).cell(0).left, 0);
  EXPECT_EQ(FilmStrip(strip, 127, 126, 96).cell(126).left, 1000 - 108);
}

TEST(CentredIn, KeepsTheShapeAndDoesNotEnlarge) {
  EXPECT_EQ(centredIn({10, 10, 100, 100}, {400, 200}), (Box{10, 35, 100, 50}));
  EXPECT_EQ(centredIn({10, 10, 100, 100}, {20, 40}), (Box{50, 40, 20, 40}));
  EXPECT_TRUE(centredIn({0, 0, 10, 10}, {}).extent().empty());
}

}  // namespace
}  // namespace fiohost::view

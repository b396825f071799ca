// Where the parts of a tree-list lie, and where a dragged bar stops.
#include "viewer/splitter_layout.h"

#include <gtest/gtest.h>

namespace {

using namespace viewer;

constexpr Size client = {301, 203};

TEST(SplitterLayout, ANewBarHalvesWhatItLeaves) {
  EXPECT_EQ(firstSplitterPosition(Arrangement::stacked, client), (203 - 4) / 2);
  EXPECT_EQ(firstSplitterPosition(Arrangement::sideBySide, client), (301 - 4) / 2);
}

TEST(SplitterLayout, TheBarIsFourPixelsAcrossTheWholeBreadth) {
  EXPECT_EQ(splitterArea(Arrangement::stacked, client, 99), (Area{0, 99, 301, 4}));
  EXPECT_EQ(splitterArea(Arrangement::sideBySide, client, 148), (Area{148, 0, 4, 203}));
}

TEST(SplitterLayout, TheTreeEndsAtTheBar) {
  for (const Arrangement arrangement : {Arrangement::stacked, Arrangement::sideBySide}) {
    const Area tree = treeArea(arrangement, client, 60);
    EXPECT_EQ(tree.left, -2);
    EXPECT_EQ(tree.top, -2);
    const bool stacked = arrangement == Arrangement::stacked;
    EXPECT_EQ(stacked ? tree.top + tree.height : tree.left + tree.width, 60);
  }
}

TEST(SplitterLayout, TheListBeginsTwoPixelsInsideTheBarAndFillsTheRest) {
  EXPECT_EQ(listArea(Arrangement::stacked, client, 60), (Area{-2, 62, 305, 203 + 2 - 62}));
  EXPECT_EQ(listArea(Arrangement::sideBySide, client, 60), (Area{62, -2, 301 + 2 - 62, 207}));
}

TEST(SplitterLayout, ADragStopsAtTen) {
  EXPECT_EQ(clampSplitter(9, 200), 10);
  EXPECT_EQ(clampSplitter(0, 200), 10);
  EXPECT_EQ(clampSplitter(10, 200), 10);
  EXPECT_EQ(clampSplitter(11, 200), 11);
}

TEST(SplitterLayout, ADragToTheFarSideStopsFourteenBeforeTheEnd) {
  EXPECT_EQ(clampSplitter(185, 200), 185);
  EXPECT_EQ(clampSplitter(186, 200), 186);
  EXPECT_EQ(clampSplitter(187, 200), 186);
  EXPECT_EQ(clampSplitter(32767, 200), 186);
}

// A pointer before the client area has a negative coordinate, which a message carries in 16 bits.
TEST(SplitterLayout, APlaceBeforeTheControlIsItsBeginning) {
  EXPECT_EQ(clampSplitter(32768, 200), 10);
  EXPECT_EQ(clampSplitter(65535, 200), 10);
  EXPECT_EQ(clampSplitter(32768, 40000), 10);
  EXPECT_EQ(clampSplitter(32767, 40000), 32767);
}

TEST(SplitterLayout, NoPartIsNarrowerThanNothing) {
  constexpr Size tiny = {8, 3};
  EXPECT_EQ(clampSplitter(5, 3), -11);
  EXPECT_EQ(treeArea(Arrangement::stacked, tiny, -11).height, 0);
  EXPECT_EQ(listArea(Arrangement::stacked, tiny, 5).height, 0);
}

TEST(SplitterLayout, ColumnsShareTheListTwoToThree) {
  EXPECT_EQ(listColumnWidths(300).name, 118);
  EXPECT_EQ(listColumnWidths(300).data, 178);
  EXPECT_EQ(listColumnWidths(303).name, 606 / 5 - 2);
  EXPECT_EQ(listColumnWidths(303).data, 909 / 5 - 2);
}

TEST(SplitterLayout, ExtentsGoAlongTheAxisOfTheBar) {
  EXPECT_EQ(extentAlong(Arrangement::stacked, client), 203);
  EXPECT_EQ(extentAlong(Arrangement::sideBySide, client), 301);
}

}  // namespace

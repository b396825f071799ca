#include "fiohost/view/view_transform.h"

#include <gtest/gtest.h>

namespace fiohost::view {
namespace {

ViewTransform viewOf(const Extent& picture, const Extent& window) {
  ViewTransform view;
  view.setWindow(window);
  view.setPicture(picture);
  return view;
}

// The picture's point below a place of the window.
double pointBelow(const ViewTransform& view, int x) {
  const Box box = view.pictureBox();
  return (x - box.left) * static_cast<double>(view.picture().width) / box.width;
}

TEST(ViewTransform, FitsTheWholePictureInTheMiddle) {
  const ViewTransform view = viewOf({4000, 2000}, {1000, 800});
  EXPECT_TRUE(view.isFitted());
  EXPECT_DOUBLE_EQ(view.scale(), 0.25);
  EXPECT_EQ(view.pictureBox(), (Box{0, 150, 1000, 500}));
  EXPECT_FALSE(view.isLargerThanWindow());
}

TEST(ViewTransform, ASmallPictureIsNotEnlarged) {
  const ViewTransform view = viewOf({100, 60}, {1000, 800});
  EXPECT_EQ(view.pictureBox(), (Box{450, 370, 100, 60}));
}

TEST(ViewTransform, AFittedPictureFollowsTheWindow) {
  ViewTransform view = viewOf({4000, 2000}, {1000, 800});
  view.setWindow({500, 800});
  EXPECT_DOUBLE_EQ(view.scale(), 0.125);
}

TEST(ViewTransform, ActualSizeKeepsTheMiddle) {
  ViewTransform view = viewOf({4000, 2000}, {1000, 800});
  view.showActualSize();
  EXPECT_FALSE(view.isFitted());
  EXPECT_EQ(view.pictureBox(), (Box{500 - 2000, 400 - 1000, 4000, 2000}));
  EXPECT_TRUE(view.isLargerThanWindow());
}

TEST(ViewTransform, ZoomingKeepsThePointBelowThePointer) {
  ViewTransform view = viewOf({4000, 3000}, {1000, 800});
  view.showActualSize();
  const double before = pointBelow(view, 300);
  view.zoomAbout({300, 200}, 1.25);
  EXPECT_DOUBLE_EQ(view.scale(), 1.25);
  EXPECT_NEAR(pointBelow(view, 300), before, 1.0);
  EXPECT_GT(std::abs(pointBelow(view, 900) - (before + 600)), 50) << "the others move";
}

TEST(ViewTransform, PassingActualSizeStopsThere) {
  ViewTransform view = viewOf({1200, 900}, {1000, 800});
  view.zoomAbout({0, 0}, 1.25);
  EXPECT_EQ(view.scale(), 1.0);
  view.zoomAbout({0, 0}, 1.25);
  EXPECT_EQ(view.scale(), 1.25);
  view.zoomAbout({0, 0}, 0.5);
  EXPECT_EQ(view.scale(), 1.0);
}

TEST(ViewTransform, TheScaleHasLimits) {
  ViewTransform view = viewOf({1200, 900}, {1000, 800});
  view.zoomAbout({0, 0}, 1.25);
  view.zoomAbout({0, 0}, 1e9);
  EXPECT_EQ(view.scale(), ViewTransform::largestScale);
  view.zoomAbout({0, 0}, 1e-9);
  EXPECT_EQ(view.scale(), 1.0);
  view.zoomAbout({0, 0}, 1e-9);
  EXPECT_EQ(view.scale(), ViewTransform::smallestScale);
}

TEST(ViewTransform, APictureThatFitsOnlyBelowTheSmallestScaleCanStillBeZoomedThere) {
  ViewTransform view = viewOf({100000, 100}, {500, 500});
  EXPECT_DOUBLE_EQ(view.scale(), 0.005);
  view.zoomAbout({0, 0}, 1.5);
  view.zoomAbout({0, 0}, 1e-9);
  EXPECT_DOUBLE_EQ(view.scale(), 0.005);
}

TEST(ViewTransform, PanningStopsAtTheEdges) {
  ViewTransform view = viewOf({2000, 600}, {1000, 800});
  view.showActualSize();
  view.panBy(-100, 50);
  EXPECT_EQ(view.pictureBox(), (Box{-600, 100, 2000, 600})) << "it has no way to go up or down";
  view.panBy(-5000, 0);
  EXPECT_EQ(view.pictureBox().left, -1000);
  view.panBy(9000, 0);
  EXPECT_EQ(view.pictureBox().left, 0);
}

TEST(ViewTransform, AnotherPictureBeginsInItsMiddle) {
  ViewTransform view = viewOf({2000, 2000}, {1000, 800});
  view.showActualSize();
  view.panBy(400, 400);
  view.setPicture({2000, 2000});
  EXPECT_EQ(view.pictureBox().left, -100) << "of the same size it stays, to compare";
  view.setPicture({3000, 2000});
  EXPECT_EQ(view.pictureBox().left, -1000);
}

TEST(VisiblePart, IsTheWholeRasterOfAFittedPicture) {
  const VisiblePart part = visiblePart(viewOf({4000, 2000}, {1000, 800}), {2000, 1000});
  EXPECT_EQ(part.source, (Box{0, 0, 2000, 1000}));
  EXPECT_EQ(part.target, (Box{0, 150, 1000, 500}));
}

TEST(VisiblePart, IsPixelByPixelAtActualSize) {
  ViewTransform view = viewOf({4000, 2000}, {1000, 800});
  view.showActualSize();
  const VisiblePart part = visiblePart(view, {4000, 2000});
  EXPECT_EQ(part.source, (Box{1500, 600, 1000, 800}));
  EXPECT_EQ(part.target, (Box{0, 0, 1000, 800}));
}

TEST(VisiblePart, CoversTheWindowWithWholePixels) {
  ViewTransform view = viewOf({400, 400}, {101, 101});
  view.zoomAbout({0, 0}, 30);
  view.zoomAbout({0, 0}, 8);
  const VisiblePart part = visiblePart(view, {400, 400});
  EXPECT_LE(part.target.left, 0);
  EXPECT_GE(part.target.left + part.target.width, 101);
  EXPECT_EQ(part.target.width, part.source.width * 8);
  EXPECT_LT(part.source.width, 16);
}

TEST(VisiblePart, OfNothingIsEmpty) {
  EXPECT_TRUE(visiblePart(viewOf({}, {100, 100}), {}).source.extent().empty());
  EXPECT_TRUE(visiblePart(viewOf({10, 10}, {0, 0}), {10, 10}).source.extent().empty());
}

}  // namespace
}  // namespace fiohost::view

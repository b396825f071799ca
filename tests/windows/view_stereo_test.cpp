// The picture window on multi-picture files: the film strip and the stereo views.
#include "tests/windows/view_fixture.h"

namespace fiohostTest {
namespace {

constexpr int stripHeight = 120;
constexpr int cellWidth = 108;

class ViewStereoTest : public ViewWindowTest {
 protected:
  void openPair() {
    addStereo();
    openDecoded({"pair.mpo"});
    order(Action::stereoOff);
    waitForRest();
  }
  [[nodiscard]] POINT cell(int index, int count) const {
    const RECT all = window_.clientArea();
    return {all.right / 2 - count * cellWidth / 2 + index * cellWidth + cellWidth / 2,
            all.bottom - bar().clientArea().bottom - stripHeight / 2};
  }
  // A pixel of the picture, of that size, at 1:1.
  [[nodiscard]] Rgb shown(int width, int height, int x, int y) const {
    const POINT corner = cornerOf(width, height, stripHeight);
    return at(client(), static_cast<int>(corner.x) + x, static_cast<int>(corner.y) + y);
  }
};

TEST_F(ViewStereoTest, TheFilmStripShowsAndChoosesImages) {
  openPair();
  EXPECT_EQ(partText(0), "Image 1 of 2");
  expectPicture(imageOfPair(1), stripHeight);
  const POINT second = cell(1, 2);
  EXPECT_TRUE(eventually([&] {
    const Rgb thumbnail = at(client(), second.x, second.y);
    return thumbnail != Rgb{24, 24, 24};
  })) << "the thumbnail appears";
  window_.pressAt(second);
  window_.settle();
  waitForRest();
  EXPECT_EQ(partText(0), "Image 2 of 2");
  expectPicture(imageOfPair(2), stripHeight);
  EXPECT_FALSE(isEnabled(Action::nextImage));
  press(VK_LEFT);
  EXPECT_EQ(partText(0), "Image 1 of 2");
}

TEST_F(ViewStereoTest, TheFilmStripCanBeTakenAway) {
  openPair();
  EXPECT_TRUE(isChecked(Action::filmStrip));
  press('T');
  EXPECT_FALSE(isChecked(Action::filmStrip));
  expectPicture(imageOfPair(1), 0);
}

TEST_F(ViewStereoTest, AnaglyphMixesThePair) {
  openPair();
  press('A');
  EXPECT_TRUE(isChecked(Action::anaglyph));
  EXPECT_EQ(partText(0), "anaglyph, parallax 0");
  const Rgb left = at(imageOfPair(1), 100, 50);
  const Rgb right = at(imageOfPair(2), 100, 50);
  EXPECT_EQ(shown(320, 200, 100, 50),
            (Rgb{(7 * left.green + 3 * left.blue + 5) / 10, right.green, right.blue}));
}

TEST_F(ViewStereoTest, SideBySideAndCrossEyedAreTwiceAsWide) {
  openPair();
  const Rgb left = at(imageOfPair(1), 100, 50);
  const Rgb right = at(imageOfPair(2), 100, 50);
  press('S');
  EXPECT_EQ(partText(1), "640 x 200");
  EXPECT_EQ(shown(640, 200, 100, 50), left);
  EXPECT_EQ(shown(640, 200, 420, 50), right);
  press('X');
  EXPECT_TRUE(isChecked(Action::crossEyed));
  EXPECT_EQ(shown(640, 200, 100, 50), right);
  EXPECT_EQ(shown(640, 200, 420, 50), left);
}

TEST_F(ViewStereoTest, ParallaxMovesTheRightImage) {
  openPair();
  EXPECT_FALSE(isEnabled(Action::moreParallax));
  press('S');
  const Rgb before = shown(640, 200, 320 + 100, 50);
  order(Action::moreParallax);
  order(Action::moreParallax);
  EXPECT_EQ(partText(0), "side by side, parallax 4");
  EXPECT_EQ(shown(640, 200, 320 + 104, 50), before);
  EXPECT_EQ(shown(640, 200, 320, 50), (Rgb{0, 0, 0})) << "what it leaves is black";
  order(Action::lessParallax);
  EXPECT_EQ(partText(0), "side by side, parallax 2");
  order(Action::noParallax);
  EXPECT_EQ(partText(0), "side by side, parallax 0");
}

TEST_F(ViewStereoTest, WiggleGoesFromOneToTheOtherAndBack) {
  openPair();
  order(Action::moreParallax);
  press('W');
  for (int i = 0; i < 30; ++i) order(Action::moreParallax);  // the two differ at the left edge
  const Rgb left = at(imageOfPair(1), 10, 50);
  const auto shows = [&](const Rgb& wanted) {
    return eventually([&] { return shown(320, 200, 10, 50) == wanted; });
  };
  EXPECT_TRUE(shows(left));
  EXPECT_TRUE(shows({0, 0, 0}));
  EXPECT_TRUE(shows(left));
  press('O');
  EXPECT_FALSE(isChecked(Action::wiggle));
}

TEST_F(ViewStereoTest, ThePairOpensInTheViewChosenLast) {
  openPair();
  press('X');
  order(Action::moreParallax);
  close();
  openDecoded({"pair.mpo"});
  EXPECT_EQ(partText(0), "cross-eyed, parallax 2");
}

// The pictures of the README: looked at by people, so only their being drawn is checked here.
TEST_F(ViewStereoTest, HasItsPortraitTaken) {
  addStereo(1200, 900);
  std::filesystem::remove(file("left.jpg"));
  std::filesystem::remove(file("right.jpg"));
  open({"pair.mpo"});
  MoveWindow(window_.handle(), 40, 40, 540, 470, TRUE);
  waitForRest();
  for (int step = 0; step < 7; ++step) order(Action::moreParallax);
  EXPECT_EQ(partText(0), "anaglyph, parallax 14");
  static_cast<void>(client());  // everything is drawn
  EXPECT_GT(test::saveScreenshot(window_, "view_anaglyph"), 500U);
  press('O');
  waitForRest();
  static_cast<void>(client());
  EXPECT_GT(test::saveScreenshot(window_, "view_window"), 500U);
}

TEST_F(ViewStereoTest, OtherFilesHaveNoStereoCommands) {
  addJpeg("a.jpg", {});
  openDecoded({"a.jpg"});
  for (const Action action : {Action::anaglyph, Action::wiggle, Action::nextImage}) {
    EXPECT_FALSE(isEnabled(action));
  }
}

}  // namespace
}  // namespace fiohostTest

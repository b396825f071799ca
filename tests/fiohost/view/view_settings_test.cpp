#include "fiohost/view/view_settings.h"

#include <gtest/gtest.h>

#include "platform/console/console.h"
#include "tests/fiohost/support/files.h"

namespace fiohost::view {
namespace {

class ViewSettingsTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path() const {
    return platform::displayPath(folder_.path() / "settings.ini");
  }
  void write(const std::string& text) const {
    fiohostTest::writeBytes(folder_.path() / "settings.ini", {text.begin(), text.end()});
  }

  fiohostTest::TemporaryFolder folder_;
};

TEST_F(ViewSettingsTest, ComeBackAsTheyWereStored) {
  const ViewSettings settings = {{-30, 40, 800, 600}, true, false, false, StereoMode::wiggle, -14};
  ASSERT_TRUE(storeViewSettings(path(), settings));
  EXPECT_EQ(loadViewSettings(path()), settings);
}

TEST_F(ViewSettingsTest, AMissingFileGivesTheBeginning) {
  EXPECT_EQ(loadViewSettings(path()), ViewSettings());
  EXPECT_TRUE(ViewSettings().fitted);
  EXPECT_TRUE(ViewSettings().filmStrip);
}

TEST_F(ViewSettingsTest, NumbersOutOfRangeAreLeftOut) {
  write("[KF_VIEW]\r\nStereo=5\r\nParallax=1001\r\nWidth=-1\r\nHeight=500\r\nFit=0\r\n");
  ViewSettings expected;
  expected.window.height = 500;
  expected.fitted = false;
  EXPECT_EQ(loadViewSettings(path()), expected);
}

TEST_F(ViewSettingsTest, OtherSectionsStayAsTheyAre) {
  write("[KF_IJPG]\r\nQuality=77\r\n");
  ASSERT_TRUE(storeViewSettings(path(), {}));
  const std::string text = fiohostTest::readText(folder_.path() / "settings.ini");
  EXPECT_EQ(text.find("[KF_IJPG]\nQuality=77\n"), 0U) << text;
}

TEST_F(ViewSettingsTest, APlaceThatCannotBeWrittenIsToldOf) {
  EXPECT_FALSE(storeViewSettings(path() + "/none/x.ini", {}));
}

TEST(MovedInside, MovesAndCutsABox) {
  const Box area = {0, 0, 1000, 800};
  EXPECT_EQ(movedInside({10, 20, 300, 200}, area), (Box{10, 20, 300, 200}));
  EXPECT_EQ(movedInside({-500, 700, 300, 200}, area), (Box{0, 600, 300, 200}));
  EXPECT_EQ(movedInside({5000, -5000, 300, 200}, area), (Box{700, 0, 300, 200}));
  EXPECT_EQ(movedInside({10, 10, 3000, 2000}, area), (Box{0, 0, 1000, 800}));
  EXPECT_EQ(movedInside({}, area), Box());
}

}  // namespace
}  // namespace fiohost::view

#include "fiohost/colour_rows.h"

#include <gmock/gmock.h>

#include <vector>

namespace fiohost {
namespace {

using testing::ElementsAre;

std::vector<int> display(const std::vector<host::u8>& source, host::u32 bytesPerPixel) {
  const std::size_t width = source.size() / bytesPerPixel;
  std::vector<host::u8> target(width * displayChannels(bytesPerPixel));
  toDisplay(source.data(), bytesPerPixel, width, target.data());
  return std::vector<int>(target.begin(), target.end());
}

TEST(ColourRowsTest, GreyStaysGrey) {
  EXPECT_THAT(display({0, 7, 255}, 1), ElementsAre(0, 7, 255));
}

TEST(ColourRowsTest, BlueGreenRedBecomesRedGreenBlue) {
  EXPECT_THAT(display({1, 2, 3, 4, 5, 6}, 3), ElementsAre(3, 2, 1, 6, 5, 4));
}

TEST(ColourRowsTest, NoInkIsWhite) {
  EXPECT_THAT(display({0, 0, 0, 0}, 4), ElementsAre(255, 255, 255));
}

TEST(ColourRowsTest, InksTakeTheirLight) {
  EXPECT_THAT(display({255, 0, 0, 0, 0, 255, 0, 0, 0, 0, 255, 0}, 4),
              ElementsAre(0, 255, 255, 255, 0, 255, 255, 255, 0));
}

TEST(ColourRowsTest, BlackInkDarkensAll) {
  EXPECT_THAT(display({0, 0, 0, 255, 51, 0, 0, 51}, 4), ElementsAre(0, 0, 0, 163, 204, 204));
}

}  // namespace
}  // namespace fiohost

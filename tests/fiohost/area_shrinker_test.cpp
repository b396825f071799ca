#include "fiohost/area_shrinker.h"

#include <gtest/gtest.h>

#include <cmath>

namespace fiohost {
namespace {

using Rows = std::vector<std::vector<host::u8>>;

Rows shrink(const Rows& source, const Size& from, const Size& to, host::u32 channels) {
  AreaShrinker shrinker(from, to, channels);
  Rows result;
  for (const auto& row : source) {
    shrinker.addRow(row.data(), [&](const host::u8* reduced) {
      result.emplace_back(reduced, reduced + std::size_t{to.width} * channels);
    });
  }
  return result;
}

double overlap(double a0, double a1, double b0, double b1) {
  return std::max(0.0, std::min(a1, b1) - std::max(a0, b0));
}

// The mean of the source area below one target pixel, straight from the definition.
double areaMean(const Rows& source, const Size& from, const Size& to, unsigned x, unsigned y,
                unsigned channel, unsigned channels) {
  const double sx = static_cast<double>(from.width) / to.width;
  const double sy = static_cast<double>(from.height) / to.height;
  double sum = 0;
  for (unsigned j = 0; j < from.height; ++j) {
    for (unsigned i = 0; i < from.width; ++i) {
      sum += source[j][i * channels + channel] * overlap(i, i + 1, x * sx, (x + 1) * sx) *
             overlap(j, j + 1, y * sy, (y + 1) * sy);
    }
  }
  return sum / (sx * sy);
}

Rows noise(const Size& size, unsigned channels) {
  Rows rows(size.height, std::vector<host::u8>(std::size_t{size.width} * channels));
  unsigned state = 12345;
  for (auto& row : rows) {
    for (host::u8& value : row)
      value = static_cast<host::u8>((state = state * 1103515245 + 12345) >> 16);
  }
  return rows;
}

struct ShrinkCase {
  Size from;
  Size to;
  unsigned channels;
};

class AreaShrinkerTest : public testing::TestWithParam<ShrinkCase> {};

TEST_P(AreaShrinkerTest, GivesTheMeanOfTheAreaBelowEachPixel) {
  const auto [from, to, channels] = GetParam();
  const Rows source = noise(from, channels);
  const Rows result = shrink(source, from, to, channels);
  ASSERT_EQ(result.size(), to.height);
  for (unsigned y = 0; y < to.height; ++y) {
    for (unsigned i = 0; i < to.width * channels; ++i) {
      const double mean = areaMean(source, from, to, i / channels, y, i % channels, channels);
      ASSERT_NEAR(result[y][i], mean, 0.5001) << i << ", " << y;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, AreaShrinkerTest,
    testing::Values(ShrinkCase{{8, 8}, {4, 4}, 1}, ShrinkCase{{7, 5}, {3, 2}, 3},
                    ShrinkCase{{10, 10}, {9, 10}, 3}, ShrinkCase{{10, 10}, {10, 9}, 1},
                    ShrinkCase{{13, 11}, {1, 1}, 1}, ShrinkCase{{6, 6}, {6, 6}, 3}));

struct FitCase {
  Size picture;
  Size box;
  Size expected;
};

class FitTest : public testing::TestWithParam<FitCase> {};

TEST_P(FitTest, KeepsTheShapeAndNeverEnlarges) {
  const auto [picture, box, expected] = GetParam();
  const Size fitted = fitInside(picture, box);
  EXPECT_EQ(fitted.width, expected.width);
  EXPECT_EQ(fitted.height, expected.height);
}

INSTANTIATE_TEST_SUITE_P(Boxes, FitTest,
                         testing::Values(FitCase{{640, 480}, {320, 320}, {320, 240}},
                                         FitCase{{640, 480}, {1000, 120}, {160, 120}},
                                         FitCase{{640, 480}, {640, 480}, {640, 480}},
                                         FitCase{{64, 48}, {1000, 1000}, {64, 48}},
                                         FitCase{{1000, 1}, {10, 10}, {10, 1}},
                                         FitCase{{1, 1000}, {10, 10}, {1, 10}},
                                         FitCase{{65535, 65535}, {4294967295, 7}, {7, 7}}));

}  // namespace
}  // namespace fiohost

#include "bench/measure/statistics.h"

#include <gtest/gtest.h>

#include <cmath>

namespace bench {
namespace {

TEST(Median, IsTheMiddleValue) {
  EXPECT_EQ(medianOf({5, 1, 3}), 3);
  EXPECT_EQ(medianOf({7}), 7);
}

TEST(Median, OfAnEvenNumberIsTheMeanOfTheMiddleTwo) { EXPECT_EQ(medianOf({9, 1, 4, 2}), 3); }

TEST(Median, OneValueThatIsFarOffIsNoMatter) { EXPECT_EQ(medianOf({1, 1.02, 900}), 1.02); }

TEST(Median, OfNothingIs0) { EXPECT_EQ(medianOf({}), 0); }

std::vector<GrowthPoint> powers(double exponent) {
  std::vector<GrowthPoint> points;
  for (const double work : {1.0, 10.0, 100.0, 60000.0}) {
    points.push_back({work, 3e-6 * std::pow(work, exponent)});
  }
  return points;
}

TEST(Exponent, IsThatOfThePower) {
  for (const double exponent : {0.5, 1.0, 1.1, 2.0}) {
    EXPECT_NEAR(exponentOf(powers(exponent)), exponent, 1e-9);
  }
}

TEST(Exponent, OfACostThatNeverChangesIs0) { EXPECT_NEAR(exponentOf(powers(0)), 0, 1e-9); }

TEST(Exponent, OfSquareCostWithAConstantPartIsAboveThatOfLinear) {
  std::vector<GrowthPoint> square;
  for (const double work : {10.0, 100.0, 1000.0, 10000.0, 60000.0}) {
    square.push_back({work, 1e-5 + 1e-9 * work * work});
  }
  EXPECT_GT(exponentOf(square), 1.1);
}

TEST(Exponent, OfFewerThanTwoAmountsIs0) {
  EXPECT_EQ(exponentOf({}), 0);
  EXPECT_EQ(exponentOf({{5, 1}}), 0);
  EXPECT_EQ(exponentOf({{5, 1}, {5, 2}}), 0);
}

}  // namespace
}  // namespace bench

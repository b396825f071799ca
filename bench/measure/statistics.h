// What many measurements come to.
#pragma once

#include <vector>

namespace bench {

// The middle value, or the mean of the middle two; 0 for none.
[[nodiscard]] double medianOf(std::vector<double> values);

struct GrowthPoint {
  double work;  // above 0
  double cost;  // above 0
};

// The exponent e of cost = c * work^e that fits the points best: the slope of the least-squares
// line through their logarithms. 0 for fewer than two different amounts of work.
[[nodiscard]] double exponentOf(const std::vector<GrowthPoint>& points);

}  // namespace bench

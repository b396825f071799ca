#include "bench/measure/statistics.h"

#include <algorithm>
#include <cmath>

namespace bench {

double medianOf(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 != 0 ? values[half] : (values[half - 1] + values[half]) / 2;
}

double exponentOf(const std::vector<GrowthPoint>& points) {
  const auto count = static_cast<double>(points.size());
  double sumX = 0;
  double sumY = 0;
  double sumXX = 0;
  double sumXY = 0;
  for (const GrowthPoint& point : points) {
    const double x = std::log(point.work);
    const double y = std::log(point.cost);
    sumX += x;
    sumY += y;
    sumXX += x * x;
    sumXY += x * y;
  }
  const double spread = count * sumXX - sumX * sumX;
  return spread > 0 ? (count * sumXY - sumX * sumY) / spread : 0;
}

}  // namespace bench

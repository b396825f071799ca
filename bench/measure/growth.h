// Cost against work: the same thing done with ever more of it.
#pragma once

#include "bench/measure/case.h"
#include "bench/measure/pairs.h"

namespace bench {

// Bytes of memory that the process has taken at most while the work was done, beyond what it had
// before. Native only.
[[nodiscard]] double peakMemoryOf(const Work& work);

struct GrowthStep {
  double amount;
  Work work;
};

// Measured once, for the cases of one series that share it.
class Growth {
 public:
  explicit Growth(std::vector<GrowthStep> steps) : steps_(std::move(steps)) {}

  void measure();
  [[nodiscard]] double timeExponent() const;
  [[nodiscard]] double memoryExponent() const;
  // Of the largest amount of work, in bytes and seconds of the processor.
  [[nodiscard]] double largestPeak() const { return peaks_.back(); }
  [[nodiscard]] double largestTime() const { return times_.back(); }

 private:
  std::vector<GrowthStep> steps_;
  std::vector<double> times_;
  std::vector<double> peaks_;
};

}  // namespace bench

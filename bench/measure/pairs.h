// Two ways to the same end, timed in turn.
#pragma once

#include "bench/measure/case.h"

namespace bench {

using Work = std::function<void()>;

// Each step does ours, then beside, each so often that the quicker one takes some time, and notes
// the ratio of their times. The figure is the median of the ratios: what slows the machine for a
// while slows both halves of a pair. Both works are done once before, unmeasured.
class Pairs final : public Measurement {
 public:
  Pairs(Work ours, Work beside);

  double step() override;
  [[nodiscard]] Figure figure() const override;

 private:
  Work ours_;
  Work beside_;
  unsigned repetitions_ = 1;
  std::vector<double> ratios_;
  std::vector<double> ourTimes_;
  std::vector<double> besideTimes_;
};

// The seconds that so many repetitions take.
[[nodiscard]] double secondsOf(const Work& work, unsigned repetitions = 1);

}  // namespace bench

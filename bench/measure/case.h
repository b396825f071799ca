// One line of the benchmark's table: what is measured, beside what, and the figure to reach.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// A figure with what it was made of; times in seconds, 0 where there is none.
struct Figure {
  double value = 0;
  double ours = 0;
  double beside = 0;
};

// The work of a case. Everything that it needs is made before it is asked for a step.
class Measurement {
 public:
  Measurement() = default;
  Measurement(const Measurement&) = delete;
  Measurement& operator=(const Measurement&) = delete;
  virtual ~Measurement() = default;

  // Measures once more; returns the seconds that the plug-in's side took.
  virtual double step() = 0;
  // What all steps so far come to.
  [[nodiscard]] virtual Figure figure() const = 0;
};

enum class Judged { atMost, atLeast, notAtAll };

struct Case {
  std::string name;
  std::string beside;
  std::string unit;  // of the figure: "ratio", "exponent" or "MiB"
  double limit = 0;
  Judged judged = Judged::atMost;
  unsigned steps = 1;
  std::function<std::unique_ptr<Measurement>()> prepare;
};

using Cases = std::vector<Case>;

}  // namespace bench

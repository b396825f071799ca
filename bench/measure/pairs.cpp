#include "bench/measure/pairs.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "bench/measure/statistics.h"

namespace bench {
namespace {

// Long against the clock's steps and an interrupt, short against a change of the machine's speed.
constexpr double shortestHalf = 0.02;
constexpr double mostRepetitions = 10000;

}  // namespace

double secondsOf(const Work& work, unsigned repetitions) {
  const auto start = std::chrono::steady_clock::now();
  for (unsigned i = 0; i < repetitions; ++i) work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Pairs::Pairs(Work ours, Work beside) : ours_(std::move(ours)), beside_(std::move(beside)) {
  const double quicker = std::min(secondsOf(ours_), secondsOf(beside_));
  const double wanted = std::ceil(shortestHalf / std::max(quicker, 1e-9));
  repetitions_ = static_cast<unsigned>(std::clamp(wanted, 1.0, mostRepetitions));
}

double Pairs::step() {
  // Which of the two comes first changes: what the first leaves behind, in the caches and in
  // memory, is the second's to pay for.
  const bool oursFirst = ratios_.size() % 2 == 0;
  double beside = oursFirst ? 0 : secondsOf(beside_, repetitions_);
  const double ours = secondsOf(ours_, repetitions_);
  if (oursFirst) beside = secondsOf(beside_, repetitions_);
  ratios_.push_back(ours / beside);
  ourTimes_.push_back(ours / repetitions_);
  besideTimes_.push_back(beside / repetitions_);
  return ourTimes_.back();
}

Figure Pairs::figure() const {
  return {medianOf(ratios_), medianOf(ourTimes_), medianOf(besideTimes_)};
}

}  // namespace bench

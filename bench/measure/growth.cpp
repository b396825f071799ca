#include "bench/measure/growth.h"

#include <malloc.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string>

#include "bench/measure/statistics.h"

namespace bench {
namespace {

constexpr double page = 4096;  // less cannot be told apart
constexpr int rounds = 7;

// A line of /proc/self/status, in bytes.
double statusLine(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != name) continue;
    double kibibytes = 0;
    status >> kibibytes;
    return kibibytes * 1024;
  }
  throw std::runtime_error("the system does not tell " + name);
}

// Makes the peak equal to what is resident now (Linux, proc(5), clear_refs).
void forgetPeak() {
  std::ofstream control("/proc/self/clear_refs");
  if (!(control << "5" << std::flush)) throw std::runtime_error("the peak cannot be reset");
}

// Of the process and the system for it: other programs, which a short work escapes and a long one
// does not, would make growth seem steeper than it is.
double processorSecondsOf(const Work& work) {
  const auto now = [] {
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

std::vector<GrowthPoint> points(const std::vector<GrowthStep>& steps,
                                const std::vector<double>& costs) {
  std::vector<GrowthPoint> result;
  for (std::size_t i = 0; i < steps.size(); ++i) result.push_back({steps[i].amount, costs[i]});
  return result;
}

}  // namespace

double peakMemoryOf(const Work& work) {
  malloc_trim(0);
  forgetPeak();
  const double before = statusLine("VmRSS:");
  work();
  return std::max(page, statusLine("VmHWM:") - before);
}

// The quickest of several rounds: what disturbs only ever adds. The rounds go over all amounts, so
// that none falls whole into a slow time of the machine.
void Growth::measure() {
  if (!times_.empty()) return;
  times_.assign(steps_.size(), std::numeric_limits<double>::max());
  steps_.front().work();  // what is made once is nobody's growth
  for (const GrowthStep& step : steps_) peaks_.push_back(peakMemoryOf(step.work));
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      times_[i] = std::min(times_[i], processorSecondsOf(steps_[i].work));
    }
  }
}

double Growth::timeExponent() const { return exponentOf(points(steps_, times_)); }

double Growth::memoryExponent() const { return exponentOf(points(steps_, peaks_)); }

}  // namespace bench

#include "fiohost/progress.h"

#include <atomic>
#include <cstdio>

#include "platform/console/console.h"

namespace fiohost {
namespace {

constexpr std::chrono::milliseconds quietTime{1000};
constexpr std::chrono::milliseconds betweenUpdates{100};

std::atomic<int> silences = 0;

}  // namespace

Progress::Progress(std::string what)
    : what_(std::move(what)),
      terminal_(silences == 0 && platform::isTerminal(stderr)),
      next_(Clock::now() + quietTime) {}

Progress::~Progress() {
  if (shown_) std::fprintf(stderr, "\r%*s\r", static_cast<int>(what_.size()) + 7, "");
}

Progress::Silence::Silence() noexcept { ++silences; }

Progress::Silence::~Silence() { --silences; }

void Progress::update(host::u32 done, host::u32 total) {
  if (!terminal_ || total == 0) return;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  next_ = now + betweenUpdates;
  shown_ = true;
  const auto percent = static_cast<unsigned>(host::u64{done} * 100 / total);
  std::fprintf(stderr, "\r%s: %3u %%", what_.c_str(), percent);
  std::fflush(stderr);
}

}  // namespace fiohost

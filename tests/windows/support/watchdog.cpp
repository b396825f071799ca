#include "tests/windows/support/watchdog.h"

#include <cstdio>

#include "platform/system.h"

namespace test {

using Clock = std::chrono::steady_clock;

Watchdog::Watchdog(std::chrono::seconds limit) : limit_(limit), thread_([this] { watch(); }) {}

Watchdog::~Watchdog() {
  stopping_ = true;
  thread_.join();
}

void Watchdog::OnTestStart(const testing::TestInfo& info) {
  started_ = Clock::now();
  running_ = &info;
}

void Watchdog::OnTestEnd(const testing::TestInfo&) { running_ = nullptr; }

// The test's own thread may hang in a call that never returns, so the process is ended.
void Watchdog::watch() {
  while (!stopping_) {
    Sleep(50);
    const testing::TestInfo* test = running_;
    if (test == nullptr || Clock::now() - started_.load() < limit_) continue;
    std::fprintf(stderr, "%s.%s hangs: ended after %d seconds\n", test->test_suite_name(),
                 test->name(), static_cast<int>(limit_.count()));
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), exitCode);
  }
}

}  // namespace test

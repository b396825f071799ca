// Ends the program when a test takes far too long, and says which: a dialog that hangs fails one
// program instead of holding up the whole run.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

namespace test {

class Watchdog : public testing::EmptyTestEventListener {
 public:
  static constexpr int exitCode = 4;

  // limit: for each test.
  explicit Watchdog(std::chrono::seconds limit);
  ~Watchdog() override;

  void OnTestStart(const testing::TestInfo& info) override;
  void OnTestEnd(const testing::TestInfo& info) override;

 private:
  void watch();

  const std::chrono::seconds limit_;
  std::atomic<const testing::TestInfo*> running_ = nullptr;
  std::atomic<std::chrono::steady_clock::time_point> started_ = {};
  std::atomic<bool> stopping_ = false;
  std::thread thread_;
};

}  // namespace test

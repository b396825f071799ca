// A modal dialog on a thread of its own, so that the test's thread can drive it.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include "tests/windows/support/window.h"

namespace test {

class DialogThread {
 public:
  // show opens the dialog, returns when it has ended, and runs on the new thread.
  explicit DialogThread(std::function<int()> show);
  DialogThread(const DialogThread&) = delete;
  DialogThread& operator=(const DialogThread&) = delete;
  // A dialog that is still open is cancelled and fails the test.
  ~DialogThread();

  // The thread's dialog once it is visible and takes messages; an empty one, and a failed test,
  // when none appears. Of several (a dialog opened by a dialog) the one in front.
  [[nodiscard]] Window dialog() const;
  // A top-level window of another class, as for a property sheet's frame.
  [[nodiscard]] Window window(const std::string& className) const;
  // What show returned. Waits for the end; a dialog that does not end fails the test.
  int result();
  [[nodiscard]] bool ended() const { return ended_; }
  [[nodiscard]] DWORD threadId() const { return threadId_; }

 private:
  void cancelOpenDialogs() const;

  std::atomic<bool> ended_ = false;
  std::atomic<DWORD> threadId_ = 0;
  int result_ = 0;
  std::thread thread_;
};

}  // namespace test

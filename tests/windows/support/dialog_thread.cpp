#include "tests/windows/support/dialog_thread.h"

#include "tests/windows/support/polling.h"

namespace test {
namespace {

constexpr char dialogClass[] = "#32770";

}  // namespace

DialogThread::DialogThread(std::function<int()> show)
    : thread_([this, show = std::move(show), desktop = GetThreadDesktop(GetCurrentThreadId())] {
        // Wine puts new threads on the desktop of the program that started this one.
        SetThreadDesktop(desktop);
        threadId_ = GetCurrentThreadId();
        result_ = show();
        ended_ = true;
      }) {
  EXPECT_TRUE(eventually([this] { return threadId_ != 0; }));
}

DialogThread::~DialogThread() {
  if (!thread_.joinable()) return;
  if (!ended_) {
    ADD_FAILURE() << "a dialog was left open";
    EXPECT_TRUE(eventually([this] {
      cancelOpenDialogs();
      return ended_.load();
    }));
  }
  // A thread that hangs all the same is the watchdog's.
  thread_.join();
}

Window DialogThread::dialog() const { return window(dialogClass); }

Window DialogThread::window(const std::string& className) const {
  std::vector<Window> found;
  const bool appeared = eventually([&] {
    found = threadWindows(threadId_, className);
    return !found.empty() || ended_;
  });
  EXPECT_TRUE(appeared && !found.empty()) << "no window of class " << className << " appeared";
  if (found.empty()) return Window();
  found.front().settle();
  return found.front();
}

int DialogThread::result() {
  EXPECT_TRUE(eventually([this] { return ended_.load(); })) << "the dialog does not end";
  if (!ended_) cancelOpenDialogs();
  if (thread_.joinable()) thread_.join();
  return result_;
}

void DialogThread::cancelOpenDialogs() const {
  for (const Window& window : threadWindows(threadId_, dialogClass)) {
    PostMessageA(window.handle(), WM_COMMAND, IDCANCEL, 0);
  }
}

}  // namespace test

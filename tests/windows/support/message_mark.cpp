#include "tests/windows/support/message_mark.h"

#include <gtest/gtest.h>

#include <atomic>

#include "tests/windows/support/polling.h"

namespace test {
namespace {

std::atomic<WPARAM> lastPassed = 0;

UINT markMessage() {
  static const UINT message = RegisterWindowMessageA("kf test mark");
  return message;
}

LRESULT CALLBACK watchQueue(int code, WPARAM removed, LPARAM parameter) {
  const auto& message = *reinterpret_cast<const MSG*>(parameter);
  const bool taken = code == HC_ACTION && removed == PM_REMOVE;
  if (taken && message.message == markMessage()) lastPassed = message.wParam;
  return CallNextHookEx(nullptr, code, removed, parameter);
}

}  // namespace

MessageMark::MessageMark(HWND window)
    : window_(window),
      hook_(SetWindowsHookExA(WH_GETMESSAGE, &watchQueue, nullptr,
                              GetWindowThreadProcessId(window, nullptr))) {}

MessageMark::~MessageMark() {
  if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
}

void MessageMark::pass() const {
  static WPARAM lastPosted = 0;
  const WPARAM mark = ++lastPosted;
  PostMessageA(window_, markMessage(), mark, 0);
  const auto passed = [&] { return lastPassed == mark || IsWindow(window_) == FALSE; };
  EXPECT_TRUE(eventually(passed)) << "the window's thread does not take its messages";
}

}  // namespace test

// Help of the built kFioUtil: a text beside the dialog that asked for it.
#include <gmock/gmock.h>

#include "tests/windows/real_plugin.h"
#include "tests/windows/support/dialog_thread.h"
#include "tests/windows/support/screenshot.h"

namespace {

using namespace test;

using WinHelp = int(HWND dialog, int command, host::u64 data);

constexpr int openCommand = 1;
constexpr int closeCommand = 2;
constexpr host::u64 saveOptions = 1203;

WinHelp* winHelp() { return plugin().util.function<WinHelp>("kFioWinHelp"); }

// Opens help and lives as long as its window.
int showHelp() {
  const int result = winHelp()(nullptr, openCommand, saveOptions);
  MSG message = {};
  while (!threadWindows(GetCurrentThreadId(), "#32770").empty() &&
         GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return result;
}

TEST(HelpWindow, ShowsTheTopicsText) {
  DialogThread thread(&showHelp);
  const Window window = thread.dialog();
  EXPECT_EQ(window.text(), "Options of a JPEG file");
  EXPECT_THAT(window.control(3051).text(), testing::StartsWith("Quality: "));
  EXPECT_GT(saveScreenshot(window, "help"), 4U);
  window.post(WM_CLOSE);
  EXPECT_EQ(thread.result(), 1);
}

TEST(HelpWindow, EscapeClosesIt) {
  DialogThread thread(&showHelp);
  thread.dialog().control(3051).post(WM_KEYDOWN, VK_ESCAPE, 1);
  EXPECT_EQ(thread.result(), 1);
}

TEST(HelpWindow, TheCloseCommandClosesWhatIsOpen) {
  EXPECT_EQ(winHelp()(nullptr, openCommand, saveOptions), 1);
  EXPECT_EQ(threadWindows(GetCurrentThreadId(), "#32770").size(), 1U);
  EXPECT_EQ(winHelp()(nullptr, openCommand, saveOptions), 1) << "again in place of the first";
  EXPECT_EQ(threadWindows(GetCurrentThreadId(), "#32770").size(), 1U);
  EXPECT_EQ(winHelp()(nullptr, closeCommand, 0), 1);
  EXPECT_TRUE(threadWindows(GetCurrentThreadId(), "#32770").empty());
  EXPECT_EQ(winHelp()(nullptr, closeCommand, 0), 1) << "with nothing open";
}

TEST(HelpWindow, OtherTopicsAndCommandsDoNothing) {
  EXPECT_EQ(winHelp()(nullptr, openCommand, 1204), 0);
  EXPECT_EQ(winHelp()(nullptr, 3, saveOptions), 0);
  EXPECT_TRUE(threadWindows(GetCurrentThreadId(), "#32770").empty());
}

}  // namespace

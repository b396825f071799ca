// The harness itself: what it drives really moves, and what it should catch it catches.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/windows/support/dialog_thread.h"
#include "tests/windows/support/handle_count.h"
#include "tests/windows/support/polling.h"
#include "tests/windows/support/screenshot.h"
#include "tests/windows/support/watchdog.h"

namespace {

using test::DialogThread;
using test::Window;

constexpr int nameField = 100;
constexpr int markBox = 101;

struct Heard {
  std::vector<std::pair<UINT, LPARAM>> mouse;
  int updates = 0;
};
Heard heard;

INT_PTR CALLBACK listen(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      heard = {};
      return TRUE;
    case WM_LBUTTONDOWN:
    case WM_MOUSEMOVE:
    case WM_LBUTTONUP:
      heard.mouse.emplace_back(message, lParam);
      return TRUE;
    case WM_COMMAND:
      if (HIWORD(wParam) == EN_UPDATE) ++heard.updates;
      if (LOWORD(wParam) > IDCANCEL) return FALSE;
      EndDialog(dialog, LOWORD(wParam));
      return TRUE;
    default:
      return FALSE;
  }
}

int showDialog() {
  return static_cast<int>(
      DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1), nullptr, &listen, 0));
}

TEST(Harness, FindsADialogAndItsControls) {
  DialogThread thread(&showDialog);
  const Window dialog = thread.dialog();
  EXPECT_EQ(dialog.text(), "Harness");
  EXPECT_EQ(dialog.control(nameField).className(), "Edit");
  EXPECT_EQ(dialog.children().size(), 5U);
  EXPECT_NONFATAL_FAILURE(static_cast<void>(dialog.control(77)), "no control 77");
  dialog.control(IDOK).click();
  EXPECT_EQ(thread.result(), IDOK);
  EXPECT_FALSE(dialog.alive());
}

TEST(Harness, TypesAndClicksAsAUserDoes) {
  DialogThread thread(&showDialog);
  const Window dialog = thread.dialog();
  const Window name = dialog.control(nameField);
  name.type("abc");
  EXPECT_EQ(name.text(), "abc");
  EXPECT_EQ(heard.updates, 3);
  name.selectText();
  name.type("x");
  EXPECT_EQ(name.text(), "x");
  dialog.control(markBox).click();
  dialog.settle();
  EXPECT_EQ(dialog.control(markBox).send(BM_GETCHECK), BST_CHECKED);
  dialog.control(IDCANCEL).click();
  EXPECT_EQ(thread.result(), IDCANCEL);
}

TEST(Harness, KeysTakeTheWayOfTheKeyboard) {
  for (const auto& [key, result] : {std::pair{VK_RETURN, IDOK}, std::pair{VK_ESCAPE, IDCANCEL}}) {
    DialogThread thread(&showDialog);
    const Window name = thread.dialog().control(nameField);
    EXPECT_EQ(name.focused(), name);
    name.key(VK_TAB);
    name.settle();
    EXPECT_EQ(name.focused().id(), markBox);
    name.key('Q');
    name.settle();
    EXPECT_EQ(name.text(), "q");
    name.key(static_cast<WPARAM>(key));
    EXPECT_EQ(thread.result(), result);
  }
}

TEST(Harness, DragsWithTheButtonDown) {
  DialogThread thread(&showDialog);
  const Window dialog = thread.dialog();
  dialog.drag({4, 8}, {24, 8});
  dialog.settle();
  ASSERT_EQ(heard.mouse.size(), 6U);
  EXPECT_EQ(heard.mouse.front(), std::pair(UINT{WM_LBUTTONDOWN}, LPARAM{MAKELPARAM(4, 8)}));
  EXPECT_EQ(heard.mouse.at(2), std::pair(UINT{WM_MOUSEMOVE}, LPARAM{MAKELPARAM(14, 8)}));
  EXPECT_EQ(heard.mouse.back(), std::pair(UINT{WM_LBUTTONUP}, LPARAM{MAKELPARAM(24, 8)}));
  dialog.key(VK_ESCAPE);
  EXPECT_EQ(thread.result(), IDCANCEL);
}

TEST(Harness, ADialogLeftOpenFailsTheTest) {
  EXPECT_NONFATAL_FAILURE(
      {
        DialogThread thread(&showDialog);
        static_cast<void>(thread.dialog());
      },
      "a dialog was left open");
}

TEST(Harness, SavesWhatAWindowShows) {
  DialogThread thread(&showDialog);
  const Window dialog = thread.dialog();
  const std::filesystem::path path = std::filesystem::path(KF_SCREENSHOTS) / "harness.png";
  std::filesystem::remove(path);
  EXPECT_GT(test::saveScreenshot(dialog, "harness"), 4U);
  EXPECT_GT(std::filesystem::file_size(path), 500U);
  const test::Picture picture = test::pictureOf(dialog.control(nameField));
  const RECT area = dialog.control(nameField).rectangle();
  EXPECT_EQ(picture.width, area.right - area.left);
  const auto middle =
      static_cast<std::size_t>(picture.height / 2 * picture.width + picture.width / 2);
  EXPECT_EQ(picture.pixels.at(middle * 3), 255) << "an empty field is white";
  dialog.key(VK_ESCAPE);
  EXPECT_EQ(thread.result(), IDCANCEL);
}

HWND makeWindow() {
  return CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
}

TEST(HandleCount, SeesEveryKindOfObject) {
  const HWND first = makeWindow();  // the system adds one of its own to a thread's first window
  const test::HandleCount before = test::countHandles();
  EXPECT_GT(before.gdi, 0U);
  const HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
  const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
  EXPECT_EQ(test::countHandles().gdi, before.gdi + 2);
  DeleteObject(brush);
  DeleteObject(pen);
  const HMENU menu = CreateMenu();
  EXPECT_EQ(test::countHandles().user, before.user + 1);
  DestroyMenu(menu);
  const HWND window = makeWindow();
  EXPECT_EQ(test::countHandles().user, before.user + 1);
  DestroyWindow(window);
  const BYTE bits[128] = {};
  const HICON icon = CreateIcon(nullptr, 16, 16, 1, 1, bits, bits);
  EXPECT_EQ(test::countHandles().user, before.user + 1);
  DestroyIcon(icon);
  EXPECT_EQ(test::countHandles(), before);
  DestroyWindow(first);
}

// Started by the test below.
TEST(Watchdog, DISABLED_AHangingDialog) { showDialog(); }

TEST(Watchdog, EndsAProgramWhoseDialogHangs) {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, sizeof path);
  std::string command = '"' + std::string(path) +
                        "\" --gtest_also_run_disabled_tests --gtest_brief=1 "
                        "--gtest_filter=Watchdog.DISABLED_AHangingDialog";
  SetEnvironmentVariableA("KF_TEST_SECONDS", "1");
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  ASSERT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process));
  SetEnvironmentVariableA("KF_TEST_SECONDS", nullptr);
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 20000), WAIT_OBJECT_0);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  EXPECT_EQ(code, DWORD{test::Watchdog::exitCode});
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

}  // namespace

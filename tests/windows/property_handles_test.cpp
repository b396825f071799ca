// What the property dialog takes from the window system it gives back.
#include <gmock/gmock.h>

#include <cstdlib>

#include "tests/windows/property_files.h"
#include "tests/windows/real_plugin.h"
#include "tests/windows/sheet.h"
#include "tests/windows/support/handle_count.h"

namespace {

using namespace test;

// A property sheet that opens, shows its pages and closes by itself: no thread in between, so
// that a thousand openings take seconds.
constexpr UINT_PTR timer = 99;

// Every tenth opening shows all pages: what one of them keeps would be counted all the same.
int opening = 0;

void CALLBACK turnPages(HWND sheet, UINT, UINT_PTR, DWORD) {
  KillTimer(sheet, timer);
  const bool turns = opening++ % 10 == 0;
  for (const WPARAM page : {1u, 2u, 3u, 4u, 0u}) {
    if (turns) SendMessageA(sheet, PSM_SETCURSEL, page, 0);
  }
  PostMessageA(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

HHOOK hook = nullptr;

LRESULT CALLBACK onActivate(int code, WPARAM wParam, LPARAM lParam) {
  char name[32] = {};
  const auto window = reinterpret_cast<HWND>(wParam);
  if (code == HCBT_ACTIVATE && GetClassNameA(window, name, sizeof name) > 0 &&
      std::string(name) == "#32770") {
    SetTimer(window, timer, USER_TIMER_MINIMUM, &turnPages);
  }
  return CallNextHookEx(hook, code, wParam, lParam);
}

TEST(PropertyHandles, AThousandOpeningsLeaveNone) {
  const ScratchFile scratch(jpegWith({true, true, true, true}));
  const DescribedFile file(scratch.path());
  auto* show = entry<host::ShowPropertyEntry>(host::ordinalShowProperty);
  hook = SetWindowsHookExA(WH_CBT, &onActivate, nullptr, GetCurrentThreadId());
  ASSERT_NE(hook, nullptr);
  // The first openings load what the system keeps for every later one.
  for (int warm = 0; warm < 11; ++warm) EXPECT_EQ(show(nullptr, file.handle(), 0, nullptr, 0), 0);
  const HandleCount before = countHandles();
  for (int time = 0; time < 1000; ++time) {
    ASSERT_EQ(show(nullptr, file.handle(), 0, nullptr, time % 2), 0);
    if (time == 20) {
      ASSERT_EQ(countHandles(), before) << "after 20 openings";
    }
  }
  EXPECT_EQ(countHandles(), before);
  UnhookWindowsHookEx(hook);
}

}  // namespace

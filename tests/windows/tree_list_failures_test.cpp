// The tree-list when something cannot be had: a window, an image, memory. It is whole or not there.
#include <gmock/gmock.h>

#include <cstdlib>
#include <new>
#include <string_view>

#include "frame/module.h"
#include "tests/plugin/doubles/doubles.h"
#include "tests/windows/property_files.h"
#include "tests/windows/support/handle_count.h"
#include "tests/windows/support/window.h"
#include "viewer/tree_list.h"
#include "viewer/tree_list_state.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) noexcept;

namespace {

constexpr int never = 0;

// Both count down to the one that fails; from there none is had while everAfter holds.
struct Countdown {
  int left = never;
  bool everAfter = false;
  bool struck = false;

  bool strikes() {
    if (left == never) return false;
    if (left > 1) return --left, false;
    if (!everAfter) left = never;
    struck = true;
    return true;
  }
};
thread_local Countdown blocks;
thread_local Countdown windows;

// Not the windows that a view makes for itself, without which it lives.
bool isOfTheControl(HWND window) {
  char name[32] = {};
  GetClassNameA(window, name, sizeof name);
  const std::string_view found = name;
  return found == "CiffTreeRef" || found == "Ciff_TreeList" || found == "CiffListRef" ||
         found == "SysTreeView32" || found == "SysListView32";
}

LRESULT CALLBACK refuseWindow(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_CREATEWND && isOfTheControl(reinterpret_cast<HWND>(wParam)) &&
      windows.strikes()) {
    return 1;
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

void* takeBlock(std::size_t size) noexcept {
  return blocks.strikes() ? nullptr : std::malloc(size != 0 ? size : 1);
}

}  // namespace

// Not inlined, so that the compiler does not see malloc behind new.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (void* block = takeBlock(size)) return block;
  throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return takeBlock(size);
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, const std::nothrow_t&) noexcept {
  std::free(block);
}

namespace {

using namespace test;

class TreeListFailures : public testing::Test {
 protected:
  TreeListFailures()
      : hook_(SetWindowsHookExW(WH_CBT, refuseWindow, nullptr, GetCurrentThreadId())),
        parent_(CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr,
                                nullptr, nullptr, nullptr)) {
    doubles::state().reset();
  }
  ~TreeListFailures() override {
    DestroyWindow(parent_);
    UnhookWindowsHookEx(hook_);
    viewer::unregisterTreeListClasses();
  }
  // Makes the control while the countdown runs. Answers whether it struck.
  bool makeWith(Countdown& countdown, int left, bool everAfter) {
    countdown = {left, everAfter, false};
    made_ =
        viewer::createTreeList({frame::moduleHandle(), parent_, {0, 0, 300, 200}, 1, true, heap_});
    const bool struck = countdown.struck;
    countdown = {};
    return struck;
  }
  // The parent has nothing, or the control's three windows with both views.
  void expectNothingOrTheWhole() const {
    if (made_ == nullptr) {
      EXPECT_EQ(Window(parent_).children().size(), 0U);
      return;
    }
    EXPECT_EQ(Window(parent_).children().size(), 3U);
    const std::vector<Window> views = Window(made_).children();
    ASSERT_EQ(views.size(), 2U);
    EXPECT_EQ(views[0].send(TVM_GETCOUNT), 10);
  }
  void destroy() const {
    if (made_ != nullptr) DestroyWindow(made_);
    EXPECT_EQ(Window(parent_).children().size(), 0U);
  }

  const Bytes heap_ = cameraHeap();
  HHOOK hook_;
  HWND parent_;
  HWND made_ = nullptr;
};

TEST_F(TreeListFailures, AWindowThatCannotBeHadLeavesNone) {
  for (const bool everAfter : {false, true}) {
    for (int left = 1; left <= 5; ++left) {
      EXPECT_TRUE(makeWith(windows, left, everAfter)) << left;
      EXPECT_EQ(made_, nullptr) << left;
      expectNothingOrTheWhole();
    }
  }
  EXPECT_FALSE(makeWith(windows, 6, false)) << "there are five";
  ASSERT_NE(made_, nullptr);
  expectNothingOrTheWhole();
  destroy();
}

TEST_F(TreeListFailures, MemoryThatCannotBeHadLeavesNoWindow) {
  for (const bool everAfter : {false, true}) {
    int failures = 0;
    for (int left = 1; makeWith(blocks, left, everAfter); ++left) {
      // Behind the filled tree only the rows of the selected record want memory: the next selection
      // lists them.
      if (failures < 10) {
        EXPECT_EQ(made_, nullptr) << left;
      }
      expectNothingOrTheWhole();
      destroy();
      ++failures;
    }
    EXPECT_GT(failures, 10);
    EXPECT_NE(made_, nullptr);
    destroy();
  }
  const std::vector<host::ErrorReport>& reports = doubles::state().reports;
  ASSERT_FALSE(reports.empty());
  EXPECT_THAT(reports, testing::Each(testing::Field(&host::ErrorReport::code, 1004)));
  EXPECT_THAT(reports, testing::Contains(testing::Field(&host::ErrorReport::position, 548)))
      << "the tree's items";
}

TEST_F(TreeListFailures, ImagesThatAreMissingLeaveNoWindow) {
  // Another module, which has none of them.
  DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_DETACH, nullptr);
  ASSERT_TRUE(DllMain(GetModuleHandleA("kernel32.dll"), DLL_PROCESS_ATTACH, nullptr));
  makeWith(windows, never, false);
  EXPECT_EQ(made_, nullptr);
  expectNothingOrTheWhole();
  viewer::unregisterTreeListClasses();
  DllMain(GetModuleHandleA("kernel32.dll"), DLL_PROCESS_DETACH, nullptr);
  ASSERT_TRUE(DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_ATTACH, nullptr));
}

TEST_F(TreeListFailures, NothingIsLeftOfAHundredFailures) {
  makeWith(windows, 5, false);
  const HandleCount before = countHandles();
  for (int i = 0; i < 100; ++i) {
    makeWith(windows, 1 + i % 5, false);
    EXPECT_EQ(made_, nullptr);
  }
  EXPECT_EQ(countHandles(), before);
}

}  // namespace

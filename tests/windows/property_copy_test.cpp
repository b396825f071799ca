// Ctrl+C on the pages.
#include <gmock/gmock.h>

#include "tests/windows/property_dialog_fixture.h"

namespace {

using namespace test;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// Keys that another thread sees as down while this object lives.
class HeldKeys {
 public:
  HeldKeys(DWORD thread, std::initializer_list<int> keys) : thread_(thread) {
    EXPECT_TRUE(AttachThreadInput(GetCurrentThreadId(), thread_, TRUE));
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    SetKeyboardState(state);
  }
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;
  ~HeldKeys() {
    BYTE state[256] = {};
    SetKeyboardState(state);
    AttachThreadInput(GetCurrentThreadId(), thread_, FALSE);
  }

 private:
  DWORD thread_;
};

class PropertyCopy : public PropertyDialogTest {
 protected:
  // What is on the clipboard after C with these keys.
  std::string copied(const Window& window, std::initializer_list<int> keys, UINT message,
                     WPARAM key) {
    if (OpenClipboard(nullptr)) {
      EmptyClipboard();
      CloseClipboard();
    }
    {
      const HeldKeys held(threadId(), keys);
      window.send(message, key, 1);
    }
    return clipboard();
  }
  std::string copiedByKey(const Window& window, std::initializer_list<int> keys) {
    return copied(window, keys, WM_KEYDOWN, 'C');
  }

 private:
  static std::string clipboard() {
    if (!OpenClipboard(nullptr)) return "the clipboard is not to be had";
    std::string text;
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    if (const platform::LockedGlobal lock(data); lock) {
      char bytes[8192] = {};
      WideCharToMultiByte(CP_UTF8, 0, static_cast<const wchar_t*>(lock.address()), -1, bytes,
                          sizeof bytes, nullptr, nullptr);
      text = bytes;
    }
    CloseClipboard();
    return text;
  }
};

TEST_F(PropertyCopy, AListCopiesItsSelectedValueElseThePage) {
  open(everything);
  const ListView list(sheet().page(2).control(3081));
  const auto isPage = AllOf(StartsWith("Exif version\t2.31\r\n"), HasSubstr("F-number\tF/2.8\r\n"));
  EXPECT_THAT(copiedByKey(list.window(), {VK_CONTROL}), isPage) << "no row is selected";
  list.clickRow(2);
  EXPECT_EQ(copiedByKey(list.window(), {VK_CONTROL}), "F/2.8");
  EXPECT_THAT(copiedByKey(list.window(), {VK_CONTROL, VK_SHIFT}), isPage);
  EXPECT_EQ(copiedByKey(list.window(), {}), "") << "the letter alone";
  close();
}

TEST_F(PropertyCopy, AValueFieldCopiesItsSelectionElseThePage) {
  open(everything);
  const Window field = sheet().page(0).control(3203);
  field.selectText();
  EXPECT_EQ(copied(field, {VK_CONTROL}, WM_CHAR, 3), "24 x 16 pixels");
  field.send(EM_SETSEL, 0, 0);
  EXPECT_THAT(copied(field, {VK_CONTROL}, WM_CHAR, 3),
              AllOf(StartsWith("File name\t"), HasSubstr("Size\t24 x 16 pixels\r\n"),
                    testing::Not(HasSubstr("Images"))));
  close();
}

TEST_F(PropertyCopy, TheTreeCopiesTheWholeHeapAndItsListAValue) {
  open(everything);
  const Window main = sheet().page(1).control(1);
  const std::vector<Window> views = main.children();
  EXPECT_THAT(copiedByKey(views.at(0), {VK_CONTROL}),
              AllOf(StartsWith("Camera data\r\n"), HasSubstr("Owner name\tA. Nother\r\n")));
  const ListView list(views.at(1));
  list.clickRow(1);
  EXPECT_EQ(copiedByKey(list.window(), {VK_CONTROL}), "26");
  sheet().page(0);
  close();
}

}  // namespace

// The template of the save-options dialog: room for every text, keys for every control.
#include <set>

#include "tests/windows/save_options_dialog.h"
#include "tests/windows/support/layout.h"
#include "tests/windows/support/screenshot.h"

namespace {

using namespace test;

class SaveOptionsLayout : public SaveOptionsDialog {
 protected:
  void SetUp() override {
    SaveOptionsDialog::SetUp();
    giveTail(data_);
  }

  FileData data_;
};

TEST_F(SaveOptionsLayout, HasRoomForEverything) {
  const Window dialog = open(data_);
  EXPECT_EQ(layoutFaults(dialog), std::vector<std::string>{});
  EXPECT_GT(saveScreenshot(dialog, "save_options"), 4U);
  end(dialog, IDCANCEL);
}

INT_PTR CALLBACK fillLists(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) EndDialog(dialog, IDCANCEL);
  if (message != WM_INITDIALOG) return FALSE;
  SendDlgItemMessageA(dialog, sampleList, CB_ADDSTRING, 0,
                      reinterpret_cast<LPARAM>("4:2:0 (half width and height)"));
  SendDlgItemMessageA(dialog, sampleList, CB_SETCURSEL, 0, 0);
  return TRUE;
}

TEST_F(SaveOptionsLayout, HasRoomOnFinerScreensToo) {
  for (const int percent : {150, 200}) {
    const HMODULE resources = GetModuleHandleA("KFRES.DLL");
    const auto larger = scaledTemplate(resources, 800, percent);
    DialogThread thread([&] {
      return static_cast<int>(DialogBoxIndirectParamA(
          resources, reinterpret_cast<LPCDLGTEMPLATEA>(larger.data()), nullptr, &fillLists, 0));
    });
    const Window dialog = thread.dialog();
    EXPECT_EQ(layoutFaults(dialog), std::vector<std::string>{}) << percent;
    EXPECT_GT(saveScreenshot(dialog, "save_options_" + std::to_string(percent)), 4U);
    dialog.key(VK_ESCAPE);
    EXPECT_EQ(thread.result(), IDCANCEL);
  }
}

// Alt and the letter behind "&" goes to the control that follows the label.
TEST_F(SaveOptionsLayout, HasAnAccessKeyOfItsOwnForEveryControl) {
  const Window dialog = open(data_);
  std::set<char> keys;
  std::vector<int> reached;
  const std::vector<Window> controls = dialog.children();
  for (std::size_t index = 0; index < controls.size(); ++index) {
    const std::string text = controls[index].text();
    const std::size_t mark = text.find('&');
    if (mark == std::string::npos) continue;
    const char key = static_cast<char>(std::toupper(text.at(mark + 1)));
    EXPECT_TRUE(keys.insert(key).second) << text;
    const bool label = controls[index].className() == "Static";
    reached.push_back(controls.at(label ? index + 1 : index).id());
  }
  EXPECT_EQ(reached, (std::vector<int>{qualityField, qualitySlider, modeList, sampleList, jfifBox,
                                       helpButton}));
  end(dialog, IDCANCEL);
}

TEST_F(SaveOptionsLayout, IsWalkedThroughInOrderByTheTabKey) {
  const Window dialog = open(data_);
  const Window first = dialog.control(qualityField);
  std::vector<int> visited = {first.focused().id()};
  for (int step = 0; step < 8; ++step) {
    first.focused().key(VK_TAB);
    dialog.settle();
    visited.push_back(first.focused().id());
  }
  EXPECT_EQ(visited, (std::vector<int>{qualityField, qualitySlider, modeList, sampleList, jfifBox,
                                       IDOK, IDCANCEL, helpButton, qualityField}));
  end(dialog, IDCANCEL);
}

}  // namespace

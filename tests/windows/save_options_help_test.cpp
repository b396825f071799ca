// What the save-options dialog calls: the dialog start before all else, and help.
#include "tests/windows/save_options_dialog.h"
#include "tests/windows/support/polling.h"

namespace {

using namespace test;

using Calls = std::vector<std::string>;

class SaveOptionsCalls : public SaveOptionsDialog {
 protected:
  void SetUp() override {
    SaveOptionsDialog::SetUp();
    giveTail(data_);
  }

  FileData data_;
};

TEST_F(SaveOptionsCalls, BeginWithTheSettingsThenTheDialogStart) {
  struct Seen {
    int one;
    std::string field;
    LRESULT sliderEnd;
    LRESULT modes;
  };
  std::vector<Seen> seen;
  HWND started = nullptr;
  the().dialogStart = [&](HWND dialog, int one, WPARAM, LPARAM) {
    started = dialog;
    const Window window(dialog);
    seen.push_back({one, window.control(qualityField).text(),
                    window.control(qualitySlider).send(TBM_GETRANGEMIN),
                    window.control(modeList).send(CB_GETCOUNT)});
    return 0;
  };
  const Window dialog = open(data_);
  EXPECT_EQ(started, dialog.handle());
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].one, 1);
  EXPECT_EQ(seen[0].field, "") << "nothing is set up before";
  EXPECT_EQ(seen[0].modes, 0);
  EXPECT_EQ(end(dialog, IDOK), 1);
  EXPECT_EQ(the().calls, (Calls{"k32GetKavroIniFileName:260", "k32MiscDialogStart",
                                "k32GetKavroIniFileName:260"}))
      << "settings loaded, dialog started, settings stored; no help to close";
}

// The dialog start gets what the initialisation message brought: the control that would have the
// focus, and the dialog's values.
TEST_F(SaveOptionsCalls, HandTheInitialisationOn) {
  WPARAM focus = 0;
  host::i32 values[4] = {};
  the().dialogStart = [&](HWND, int, WPARAM wParam, LPARAM lParam) {
    focus = wParam;
    std::memcpy(values, reinterpret_cast<const void*>(lParam), sizeof values);
    return 0;
  };
  const Window dialog = open(data_);
  EXPECT_EQ(reinterpret_cast<HWND>(focus), dialog.control(qualityField).handle());
  EXPECT_THAT(values, testing::ElementsAre(70, 0, 2, 1)) << "quality, mode, sample, JFIF";
  EXPECT_EQ(end(dialog, IDCANCEL), 0);
}

TEST_F(SaveOptionsCalls, ShowHelpByButtonAndByKeyAndCloseItAtTheEnd) {
  for (const int button : {IDOK, IDCANCEL}) {
    for (const bool byKey : {false, true}) {
      the().calls.clear();
      std::vector<HWND> dialogs;
      the().winHelp = [&](HWND dialog, auto...) {
        dialogs.push_back(dialog);
        return 1;
      };
      const Window dialog = open(data_);
      if (byKey) {
        pressOnKeyboard(VK_F1);
      } else {
        dialog.control(helpButton).click();
      }
      EXPECT_TRUE(eventually([&] { return dialogs.size() == 1; }));
      dialog.settle();
      EXPECT_EQ(callsOf({"kFioWinHelp"}), Calls{"kFioWinHelp:1:1203"});
      end(dialog, button);
      EXPECT_EQ(callsOf({"kFioWinHelp"}), (Calls{"kFioWinHelp:1:1203", "kFioWinHelp:2:0"}));
      EXPECT_EQ(dialogs, (std::vector<HWND>{dialog.handle(), dialog.handle()}));
    }
  }
}

TEST_F(SaveOptionsCalls, ForgetTheHelpOfTheLastTime) {
  const Window first = open(data_);
  first.control(helpButton).click();
  first.settle();
  end(first, IDCANCEL);
  the().calls.clear();
  end(open(data_), IDCANCEL);
  EXPECT_EQ(callsOf({"kFioWinHelp"}), Calls{});
}

}  // namespace

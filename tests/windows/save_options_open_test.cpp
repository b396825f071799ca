// The save-options dialog with the open companions, as fiohost has them.
#include "host/file_data.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_module.h"
#include "tests/support/scratch_file.h"
#include "tests/windows/support/dialog_thread.h"
#include "tests/windows/support/layout.h"
#include "tests/windows/support/polling.h"
#include "tests/windows/support/screenshot.h"

namespace {

using test::DialogThread;
using test::Window;

constexpr int helpButton = 3101;
constexpr char helpTitle[] = "Options of a JPEG file";

// The companions are looked for in "fio" beside this program, so the built ones are loaded first.
class SaveOptionsOpen : public testing::Test {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", settings_.path().c_str());
    record_ = platform::OwnedGlobal(platform::movableZeroed, sizeof(host::FileDataRecord));
  }

  [[nodiscard]] int show() const {
    const auto entry =
        plugin_.function<host::JpgShowDlgEntry>(WORD{host::ordinalJpgShowDlgSaveOption});
    return entry != nullptr ? entry(0, nullptr, record_.get()) : -1;
  }
  [[nodiscard]] static std::vector<Window> helpWindows(const DialogThread& thread) {
    std::vector<Window> found;
    for (const Window& window : test::threadWindows(thread.threadId(), "#32770")) {
      if (window.text() == helpTitle) found.push_back(window);
    }
    return found;
  }

  test::ScratchFile settings_;
  test::LoadedModule resources_{"KFRES.DLL"};
  test::LoadedModule common_{"fio/k32Comm.dll"};
  test::LoadedModule start_{"fio/K32MISC.dll"};
  test::LoadedModule utilities_{"fio/kFioUtil.dll"};
  test::LoadedModule plugin_{"fio/K32JPG.FIO"};
  platform::OwnedGlobal record_;
};

TEST_F(SaveOptionsOpen, EndsWithTheRecordAndTheSettingsFile) {
  DialogThread thread([this] { return show(); });
  const Window dialog = thread.dialog();
  EXPECT_EQ(dialog.control(3051).text(), "85");
  dialog.control(3051).selectText();
  dialog.control(3051).type("7");
  dialog.control(IDOK).click();
  EXPECT_EQ(thread.result(), 1);
  EXPECT_EQ(GlobalSize(record_.get()), sizeof(host::JpegFileData));
  EXPECT_EQ(GetPrivateProfileIntA("KF_IJPG", "Quality", -1, settings_.path().c_str()), 7U);
}

TEST_F(SaveOptionsOpen, ShowsItsHelpBesideItAndTakesItAlong) {
  DialogThread thread([this] { return show(); });
  const Window dialog = thread.dialog();
  dialog.control(helpButton).click();
  ASSERT_TRUE(test::eventually([&] { return helpWindows(thread).size() == 1; }));
  const Window help = helpWindows(thread).front();
  help.settle();
  EXPECT_NE(help.children().at(0).text().find("Quality:"), std::string::npos);
  EXPECT_NE(help.children().at(0).text().find("JFIF header:"), std::string::npos);
  EXPECT_TRUE(dialog.enabled()) << "help is not modal";
  EXPECT_GT(test::saveScreenshot(help, "save_options_help"), 4U);
  dialog.control(helpButton).click();
  dialog.settle();
  EXPECT_EQ(helpWindows(thread).size(), 1U) << "asking again opens no second window";
  dialog.control(IDCANCEL).click();
  EXPECT_EQ(thread.result(), 0);
  EXPECT_FALSE(help.alive());
}

TEST_F(SaveOptionsOpen, GoesOnWhenItsHelpIsClosed) {
  DialogThread thread([this] { return show(); });
  const Window dialog = thread.dialog();
  test::pressOnKeyboard(VK_F1);
  ASSERT_TRUE(test::eventually([&] { return helpWindows(thread).size() == 1; }));
  helpWindows(thread).front().post(WM_CLOSE);
  EXPECT_TRUE(test::eventually([&] { return helpWindows(thread).empty(); }));
  dialog.control(IDOK).click();
  EXPECT_EQ(thread.result(), 1);
}

}  // namespace

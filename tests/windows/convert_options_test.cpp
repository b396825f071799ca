// fiohost convert --options: the built program asks in the plug-in's dialog before it saves.
#include <future>

#include "tests/fiohost/support/program_fixture.h"
#include "tests/windows/support/polling.h"
#include "tests/windows/support/window.h"

namespace fiohostTest {
namespace {

using test::Window;

constexpr int qualityField = 3051;

class ConvertOptionsTest : public ProgramTest {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
    addJpeg("in.jpg", {});
  }

  // Runs the program while the test drives its dialog. A dialog that does not appear means that the
  // program has ended by itself.
  std::future<ProcessResult> start() {
    return std::async(std::launch::async, [this] {
      return run({"convert", "in.jpg", "-o", "out.jpg", "--quality", "70", "--options"});
    });
  }
  static Window dialog() {
    HWND found = nullptr;
    EXPECT_TRUE(test::eventually([&] {
      found = FindWindowA("#32770", "JPEG Options");
      return found != nullptr && Window(found).visible();
    }));
    return Window(found);
  }
};

TEST_F(ConvertOptionsTest, SavesWithWhatTheUserConfirms) {
  auto result = start();
  const Window shown = dialog();
  const Window field = shown.control(qualityField);
  EXPECT_EQ(field.text(), "70") << "the command line's";
  field.send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>("31"));
  shown.control(IDOK).click();
  EXPECT_EQ(result.get().exitCode, 0);
  EXPECT_THAT(readText(file("settings.ini")), testing::HasSubstr("Quality=31"));
  EXPECT_EQ(decodeJpeg(readBytes(file("out.jpg"))).width, 64U);

  // The same quality without the dialog gives the same file.
  EXPECT_EQ(run({"convert", "in.jpg", "-o", "same.jpg", "--quality", "31"}).exitCode, 0);
  EXPECT_EQ(readBytes(file("out.jpg")), readBytes(file("same.jpg")));
}

TEST_F(ConvertOptionsTest, WritesNothingWhenTheUserCancels) {
  auto result = start();
  dialog().control(IDCANCEL).click();
  const ProcessResult ended = result.get();
  EXPECT_EQ(ended.exitCode, 1);
  EXPECT_THAT(ended.err, testing::HasSubstr("saving was cancelled; nothing was written"));
  EXPECT_FALSE(std::filesystem::exists(file("out.jpg")));
  EXPECT_FALSE(std::filesystem::exists(file("settings.ini")));
}

}  // namespace
}  // namespace fiohostTest

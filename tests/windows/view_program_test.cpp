// fiohost with files and nothing else, as when they are dropped on it: the window shows them. A
// double click starts it without any.
#include <future>

#include "tests/fiohost/support/program_fixture.h"
#include "tests/windows/support/polling.h"
#include "tests/windows/support/window.h"

namespace fiohostTest {
namespace {

using test::Window;

class ViewProgramTest : public ProgramTest {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
    addJpeg("a.jpg", {});
  }
  std::future<ProcessResult> start(const std::vector<std::string>& arguments) {
    return std::async(std::launch::async, [this, arguments] { return run(arguments); });
  }
  // The program's window once it shows a title.
  static Window window(const std::wstring& title) {
    HWND found = nullptr;
    EXPECT_TRUE(test::eventually([&] {
      found = FindWindowW(L"KfPictureWindow", title.c_str());
      return found != nullptr && Window(found).visible();
    })) << testing::PrintToString(title);
    return Window(found);
  }
  // The only picture of its folder.
  void expectShown(const std::string& name, const std::wstring& title) {
    addJpeg(name, {});
    auto result = start({"view", name});
    window(title + L" (1 of 1) - fiohost").post(WM_CLOSE);
    const ProcessResult ended = result.get();
    EXPECT_EQ(ended.exitCode, 0) << ended.err;
  }
};

TEST_F(ViewProgramTest, TheCommandShowsAFile) {
  auto result = start({"view", "a.jpg"});
  window(L"a.jpg (1 of 1) - fiohost").post(WM_CLOSE);
  const ProcessResult ended = result.get();
  EXPECT_EQ(ended.exitCode, 0);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "");
  EXPECT_THAT(readText(file("settings.ini")), testing::HasSubstr("[KF_VIEW]"));
}

TEST_F(ViewProgramTest, FilesAloneMeanTheWindow) {
  addJpeg("b.jpg", {});
  auto result = start({platform::displayPath(file("b.jpg")), platform::displayPath(file("a.jpg"))});
  window(L"b.jpg (1 of 2) - fiohost").post(WM_CLOSE);
  EXPECT_EQ(result.get().exitCode, 0);
}

TEST_F(ViewProgramTest, NamesMayBeOfAnyScript) {
  std::filesystem::create_directory(file("\u8A18\u9332"));
  expectShown("\u8A18\u9332/\u5199\u771F \u00FC.jpg", L"\u5199\u771F \u00FC.jpg");
}

TEST_F(ViewProgramTest, PathsMayHaveMoreThan260Characters) {
  DeepFolders deep(folder());
  expectShown(deep.file("picture.jpg"), L"picture.jpg");
}

TEST_F(ViewProgramTest, WithoutFilesItIsEmpty) {
  auto result = start({"view"});
  const Window empty = window(L"fiohost");
  empty.post(WM_COMMAND, 108);  // Exit
  EXPECT_EQ(result.get().exitCode, 0);
}

// What the system does for a double click on a console program: no arguments, and a console that
// nobody else has.
class StartedByDoubleClick {
 public:
  StartedByDoubleClick() {
    STARTUPINFOW own = {};
    GetStartupInfoW(&own);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.lpDesktop = own.lpDesktop;
    std::wstring command = L"\"" + (distributionFolder() / programName).wstring() + L"\"";
    EXPECT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE,
                               nullptr, nullptr, &startup, &process_));
  }
  StartedByDoubleClick(const StartedByDoubleClick&) = delete;
  StartedByDoubleClick& operator=(const StartedByDoubleClick&) = delete;
  ~StartedByDoubleClick() {
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }

  [[nodiscard]] DWORD exitCode() const {
    DWORD code = STILL_ACTIVE;
    WaitForSingleObject(process_.hProcess, 20000);
    GetExitCodeProcess(process_.hProcess, &code);
    return code;
  }

 private:
  PROCESS_INFORMATION process_ = {};
};

TEST_F(ViewProgramTest, ADoubleClickOpensTheEmptyWindow) {
  const StartedByDoubleClick started;
  window(L"fiohost").post(WM_CLOSE);
  EXPECT_EQ(started.exitCode(), 0U);
}

TEST_F(ViewProgramTest, WithoutArgumentsWhereOutputIsTakenItTellsHowToUseIt) {
  const ProcessResult ended = run({});
  EXPECT_EQ(ended.exitCode, 2);
  EXPECT_THAT(ended.err, testing::HasSubstr("--help"));
}

}  // namespace
}  // namespace fiohostTest

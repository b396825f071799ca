#include <filesystem>
#include <optional>
#include <string>

#include "host/k32comm.h"
#include "tests/companions/loaded_module.h"
#include "tests/support/scoped_variable.h"

namespace {

using test::ScopedVariable;

namespace fs = std::filesystem;

class SettingsFile : public testing::Test {
 protected:
  SettingsFile() { fs::remove_all(home_); }
  ~SettingsFile() override { fs::remove_all(home_); }

  [[nodiscard]] std::string path(int capacity = 260) const {
    std::string buffer(300, '#');
    get_(buffer.data(), capacity);
    EXPECT_EQ(buffer.find_first_not_of('#', static_cast<std::size_t>(std::max(capacity, 0))),
              std::string::npos)
        << "wrote behind the capacity";
    return capacity > 0 ? std::string(buffer.c_str()) : buffer;
  }

  test::LoadedModule module_{"fio/k32Comm.dll"};
  decltype(k32GetKavroIniFileName)* get_ =
      module_.function<decltype(k32GetKavroIniFileName)>("k32GetKavroIniFileName");
  // Each test has its own: they may run side by side.
  fs::path home_ =
      test::programFolder() / testing::UnitTest::GetInstance()->current_test_info()->name();
  std::string homeText_ = home_.string();
};

TEST_F(SettingsFile, IsNamedByItsVariable) {
  const ScopedVariable variable("KFIO_INI", "somewhere/my own.ini");
  EXPECT_EQ(path(), "somewhere/my own.ini");
}

TEST_F(SettingsFile, FollowsAChangeOfTheVariable) {
  const ScopedVariable first("KFIO_INI", "first.ini");
  EXPECT_EQ(path(), "first.ini");
  const ScopedVariable second("KFIO_INI", "second.ini");
  EXPECT_EQ(path(), "second.ini");
}

TEST_F(SettingsFile, FillsTheBufferExactly) {
  const ScopedVariable variable("KFIO_INI", "12345");
  EXPECT_EQ(path(6), "12345");
}

TEST_F(SettingsFile, IsEmptyRatherThanCutShort) {
  const ScopedVariable variable("KFIO_INI", "12345");
  EXPECT_EQ(path(5), "");
  EXPECT_EQ(path(1), "");
}

TEST_F(SettingsFile, BearsNoBuffer) {
  const ScopedVariable variable("KFIO_INI", "12345");
  EXPECT_EQ(path(0), std::string(300, '#'));
  EXPECT_EQ(path(-1), std::string(300, '#'));
  get_(nullptr, 260);
}

// Every variable that some system takes for the place of settings points to one folder.
TEST_F(SettingsFile, LiesInTheUsersSettingsInAFolderThatIsMade) {
  const ScopedVariable none("KFIO_INI", nullptr);
  const ScopedVariable roaming("APPDATA", homeText_.c_str());
  const ScopedVariable configuration("XDG_CONFIG_HOME", homeText_.c_str());
  fs::create_directories(home_);
  EXPECT_EQ(fs::path(path()), home_ / "kfio" / "kfio.ini");
  EXPECT_TRUE(fs::is_directory(home_ / "kfio"));
}

TEST_F(SettingsFile, CanBeWrittenAndReadAtItsPlace) {
  const ScopedVariable none("KFIO_INI", nullptr);
  const ScopedVariable roaming("APPDATA", homeText_.c_str());
  const ScopedVariable configuration("XDG_CONFIG_HOME", homeText_.c_str());
  fs::create_directories(home_);
  const std::string file = path();
  EXPECT_TRUE(WritePrivateProfileStringA("KF_IJPG", "Quality", "42", file.c_str()));
  EXPECT_EQ(GetPrivateProfileIntA("KF_IJPG", "Quality", 0, file.c_str()), 42U);
}

TEST_F(SettingsFile, IsUnknownWithoutAnyPlace) {
  const ScopedVariable none("KFIO_INI", nullptr);
  const ScopedVariable roaming("APPDATA", nullptr);
  const ScopedVariable configuration("XDG_CONFIG_HOME", nullptr);
  const ScopedVariable home("HOME", nullptr);
  EXPECT_EQ(path(), "");
}

}  // namespace

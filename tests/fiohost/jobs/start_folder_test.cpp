#include "platform/console/start_folder.h"

#include <gtest/gtest.h>

#include "platform/console/console.h"
#include "platform/environment.h"
#include "tests/fiohost/support/files.h"

namespace platform {
namespace {

class StartFolderTest : public testing::Test {
 protected:
  StartFolderTest() { std::filesystem::current_path(start_.path()); }
  ~StartFolderTest() override { std::filesystem::current_path(before_); }

  std::filesystem::path before_ = std::filesystem::current_path();
  fiohostTest::TemporaryFolder start_;
  fiohostTest::TemporaryFolder other_;
};

TEST_F(StartFolderTest, NamesKeepTheirMeaningWhenTheCurrentDirectoryChanges) {
  const std::filesystem::path meant = systemPath("album/one.jpg");
  const StartFolder start;
  std::filesystem::current_path(other_.path());
  EXPECT_EQ(systemPath("album/one.jpg"), meant);
}

TEST_F(StartFolderTest, AbsoluteNamesAreTakenAsTheyAre) {
  const std::filesystem::path name = other_.path() / "one.jpg";
  const StartFolder start;
  EXPECT_EQ(systemPath(displayPath(name)), name);
}

TEST_F(StartFolderTest, AtItsEndTheDirectoryIsCurrentAgain) {
  const std::filesystem::path current = std::filesystem::current_path();
  {
    const StartFolder start;
    std::filesystem::current_path(other_.path());
  }
  EXPECT_EQ(std::filesystem::current_path(), current);
  EXPECT_EQ(systemPath("x"), current / "x");
}

TEST_F(StartFolderTest, TheSettingsFileIsNamedAbsolutely) {
  const std::string before = environmentValue("KFIO_INI");
  SetEnvironmentVariableA("KFIO_INI", "folder/own.ini");
  const std::filesystem::path meant = std::filesystem::absolute("folder/own.ini");
  { const StartFolder start; }
  EXPECT_EQ(std::filesystem::path(environmentValue("KFIO_INI")), meant);
  SetEnvironmentVariableA("KFIO_INI", before.empty() ? nullptr : before.c_str());
}

}  // namespace
}  // namespace platform

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/system.h"

namespace {

class PosixDirectories : public ::testing::Test {
 protected:
  PosixDirectories() {
    if (const char* value = std::getenv("TMPDIR")) before_ = value;
  }
  ~PosixDirectories() override {
    SetEnvironmentVariableA("TMPDIR", before_ ? before_->c_str() : nullptr);
  }

  static std::string temporaryFolder(const char* variable) {
    SetEnvironmentVariableA("TMPDIR", variable);
    char buffer[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, buffer);
    return buffer;
  }

  std::optional<std::string> before_;
};

TEST_F(PosixDirectories, TemporaryFolderIsTheVariableOrTmp) {
  EXPECT_EQ(temporaryFolder("/var/tmp"), "/var/tmp/");
  EXPECT_EQ(temporaryFolder("/var/tmp/"), "/var/tmp/");
  EXPECT_EQ(temporaryFolder(""), "/tmp/");
  EXPECT_EQ(temporaryFolder(nullptr), "/tmp/");
}

TEST_F(PosixDirectories, RelativeTemporaryFolderIsMadeWhole) {
  EXPECT_EQ(temporaryFolder("inner"), (std::filesystem::current_path() / "inner").string() + "/");
}

}  // namespace

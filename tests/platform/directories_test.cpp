#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "platform/working_directory.h"
#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

bool isSeparator(wchar_t character) { return character == L'/' || character == L'\\'; }

std::wstring currentDirectory() {
  wchar_t buffer[MAX_PATH] = {};
  EXPECT_GT(GetCurrentDirectoryW(MAX_PATH, buffer), 0u);
  return buffer;
}

class Directories : public ::testing::Test {
 protected:
  ~Directories() override { fs::current_path(before_); }

  fs::path before_ = fs::current_path();
  TemporaryFolder folder_;
};

TEST_F(Directories, CurrentDirectoryIsSetAndTold) {
  ASSERT_TRUE(SetCurrentDirectoryA(folder_.path().string().c_str()));
  EXPECT_TRUE(fs::equivalent(currentDirectory(), folder_.path()));
  EXPECT_TRUE(fs::equivalent(fs::current_path(), folder_.path()));

  ASSERT_TRUE(SetCurrentDirectoryW(before_.wstring().c_str()));
  wchar_t wide[MAX_PATH] = {};
  const DWORD length = GetCurrentDirectoryW(MAX_PATH, wide);
  EXPECT_EQ(length, std::wcslen(wide));
  EXPECT_TRUE(fs::equivalent(fs::path(wide), before_));
}

TEST_F(Directories, BufferThatIsTooSmallTellsTheSizeWithTheNul) {
  const DWORD length = static_cast<DWORD>(currentDirectory().size());
  wchar_t wide[MAX_PATH] = {};
  EXPECT_EQ(GetCurrentDirectoryW(length + 1, wide), length);
  EXPECT_EQ(GetCurrentDirectoryW(length, wide), length + 1);
  EXPECT_EQ(GetCurrentDirectoryW(0, nullptr), length + 1);
}

TEST_F(Directories, OnlyAFolderBecomesCurrent) {
  EXPECT_FALSE(SetCurrentDirectoryA(folder_.file("missing").c_str()));
  EXPECT_EQ(lastError(), 2u);
  EXPECT_FALSE(SetCurrentDirectoryA(folder_.file("nowhere/missing").c_str()));
  EXPECT_EQ(lastError(), 3u);
  EXPECT_FALSE(SetCurrentDirectoryA(folder_.write("file", "x").c_str()));
  EXPECT_EQ(lastError(), 267u);
  EXPECT_TRUE(fs::equivalent(currentDirectory(), before_));
}

TEST_F(Directories, TemporaryFolderEndsInASeparator) {
  wchar_t wide[MAX_PATH] = {};
  const DWORD length = GetTempPathW(MAX_PATH, wide);
  ASSERT_GT(length, 1u);
  EXPECT_EQ(length, std::wcslen(wide));
  EXPECT_TRUE(isSeparator(wide[length - 1]));
  EXPECT_TRUE(fs::is_directory(fs::path(wide)));

  char narrow[MAX_PATH] = {};
  EXPECT_EQ(GetTempPathA(MAX_PATH, narrow), length);
  EXPECT_EQ(fs::path(narrow), fs::path(wide));
  EXPECT_EQ(GetTempPathA(length, narrow), length + 1);
}

TEST_F(Directories, WorkingDirectoryIsTheTemporaryOneForAScope) {
  wchar_t temporary[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, temporary);
  {
    platform::TemporaryWorkingDirectory scope;
    // Without the separator at its end, which not every stat takes.
    EXPECT_TRUE(fs::equivalent(fs::current_path(), fs::path(temporary).parent_path()));
    scope.restore();
    EXPECT_TRUE(fs::equivalent(fs::current_path(), before_));
  }
  { const platform::TemporaryWorkingDirectory scope; }
  EXPECT_TRUE(fs::equivalent(fs::current_path(), before_));
}

}  // namespace

// How paths reach the system: backslashes, and bytes that are not UTF-8.
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

OwnedHandle openWide(const wchar_t* path) {
  return OwnedHandle(
      CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
}

class PosixPaths : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(PosixPaths, BackslashesSeparateFolders) {
  std::filesystem::create_directory(folder_.file("inner"));
  folder_.write("inner/file", "x");
  EXPECT_TRUE(isOpen(openForReading(folder_.path().string() + "\\inner\\file")));
  EXPECT_TRUE(isOpen(openFile(folder_.file("inner\\new"), GENERIC_WRITE, CREATE_NEW)));
  EXPECT_TRUE(std::filesystem::exists(folder_.file("inner/new")));
}

TEST_F(PosixPaths, NameThatHasABackslashIsTakenAsItIs) {
  folder_.write("odd\\name", "x");
  EXPECT_TRUE(isOpen(openForReading(folder_.file("odd\\name"))));
}

TEST_F(PosixPaths, NarrowAndWideNamesAreUtf8) {
  folder_.write("\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", "x");
  const std::wstring path = folder_.path().wstring() + L"/\u00FC\u20AC\U0001F600";
  EXPECT_TRUE(isOpen(openWide(path.c_str())));
}

TEST_F(PosixPaths, FolderWhoseNameIsNotUtf8ComesBack) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::string inner = folder_.file("a\xFF\xE2\x82z");
  ASSERT_TRUE(std::filesystem::create_directory(inner));
  ASSERT_TRUE(SetCurrentDirectoryA(inner.c_str()));
  wchar_t wide[MAX_PATH] = {};
  EXPECT_GT(GetCurrentDirectoryW(MAX_PATH, wide), 0u);
  ASSERT_TRUE(SetCurrentDirectoryA("/"));
  EXPECT_TRUE(SetCurrentDirectoryW(wide));
  EXPECT_EQ(std::filesystem::current_path(), std::filesystem::path(inner));
  std::filesystem::current_path(before);
}

TEST_F(PosixPaths, WidePathThatIsNoTextIsNotFound) {
  const wchar_t path[] = {L'a', static_cast<wchar_t>(0xD800), L'\0'};
  EXPECT_FALSE(isOpen(openWide(path)));
  EXPECT_EQ(lastError(), 3u);
}

TEST_F(PosixPaths, NullIsNoPath) {
  EXPECT_FALSE(SetCurrentDirectoryW(nullptr));
  EXPECT_FALSE(isOpen(openWide(nullptr)));
}

}  // namespace

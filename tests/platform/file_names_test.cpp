#include <gtest/gtest.h>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

class FileNames : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(FileNames, DeletedFileIsGone) {
  EXPECT_TRUE(DeleteFileA(folder_.write("first", "x").c_str()));
  EXPECT_FALSE(std::filesystem::exists(folder_.file("first")));
  folder_.write("second", "x");
  EXPECT_TRUE(DeleteFileW(folder_.wideFile("second").c_str()));
  EXPECT_FALSE(std::filesystem::exists(folder_.file("second")));
}

TEST_F(FileNames, OnlyFilesThatAreThereAreDeleted) {
  EXPECT_FALSE(DeleteFileA(folder_.file("missing").c_str()));
  EXPECT_EQ(lastError(), 2u);
  EXPECT_FALSE(DeleteFileA(folder_.file("nowhere/missing").c_str()));
  EXPECT_EQ(lastError(), 3u);
  std::filesystem::create_directory(folder_.file("inner"));
  EXPECT_FALSE(DeleteFileA(folder_.file("inner").c_str()));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_TRUE(std::filesystem::is_directory(folder_.file("inner")));
}

TEST_F(FileNames, OpenFileIsDeletedOnlyWhenItsHandlesShareThat) {
  const std::string path = folder_.write("open", "x");
  {
    const OwnedHandle file = openForReading(path);
    EXPECT_FALSE(DeleteFileA(path.c_str()));
    EXPECT_EQ(lastError(), 32u);
    EXPECT_TRUE(std::filesystem::exists(path));
  }
  EXPECT_TRUE(DeleteFileA(path.c_str()));
}

TEST_F(FileNames, ReadOnlyFileIsNotDeleted) {
  namespace fs = std::filesystem;
  constexpr fs::perms anyWrite =
      fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  const std::string path = folder_.write("fixed", "abc");
  fs::permissions(path, anyWrite, fs::perm_options::remove);
  EXPECT_EQ(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_READONLY);
  EXPECT_FALSE(DeleteFileA(path.c_str()));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_EQ(folder_.read("fixed"), "abc");
  fs::permissions(path, anyWrite, fs::perm_options::add);
}

TEST_F(FileNames, MovingGivesTheFileItsNewName) {
  const std::string from = folder_.write("from", "content");
  EXPECT_TRUE(MoveFileExA(from.c_str(), folder_.file("to").c_str(), 0));
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(folder_.read("to"), "content");
}

TEST_F(FileNames, ExistingFileIsReplacedOnlyOnDemand) {
  folder_.write("from", "new");
  folder_.write("to", "old");
  EXPECT_FALSE(MoveFileExW(folder_.wideFile("from").c_str(), folder_.wideFile("to").c_str(), 0));
  EXPECT_EQ(lastError(), 183u);
  EXPECT_EQ(folder_.read("to"), "old");
  EXPECT_TRUE(MoveFileExW(folder_.wideFile("from").c_str(), folder_.wideFile("to").c_str(),
                          MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(folder_.read("to"), "new");
  EXPECT_FALSE(std::filesystem::exists(folder_.file("from")));
}

TEST_F(FileNames, MissingSourceIsTold) {
  EXPECT_FALSE(MoveFileExA(folder_.file("missing").c_str(), folder_.file("to").c_str(),
                           MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(lastError(), 2u);
}

TEST_F(FileNames, FolderIsNotReplacedByAFile) {
  const std::string from = folder_.write("from", "new");
  std::filesystem::create_directory(folder_.file("to"));
  EXPECT_FALSE(MoveFileExA(from.c_str(), folder_.file("to").c_str(), MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_EQ(folder_.read("from"), "new");
}

TEST_F(FileNames, OpenFilesAreNeitherMovedNorReplaced) {
  const std::string from = folder_.write("from", "new");
  const std::string to = folder_.write("to", "old");
  {
    const OwnedHandle source = openForReading(from);
    EXPECT_FALSE(MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(lastError(), 32u);
  }
  const OwnedHandle target = openForReading(to);
  EXPECT_FALSE(MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_EQ(folder_.read("to"), "old");
}

TEST_F(FileNames, AttributesTellFilesFromFolders) {
  const std::string file = folder_.write("file", "x");
  EXPECT_EQ(GetFileAttributesA(file.c_str()) & FILE_ATTRIBUTE_DIRECTORY, 0u);
  EXPECT_EQ(GetFileAttributesA(file.c_str()) & FILE_ATTRIBUTE_READONLY, 0u);
  EXPECT_EQ(GetFileAttributesW(folder_.path().wstring().c_str()) & FILE_ATTRIBUTE_DIRECTORY,
            FILE_ATTRIBUTE_DIRECTORY);
  EXPECT_EQ(GetFileAttributesA(folder_.file("missing").c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(lastError(), 2u);
}

}  // namespace

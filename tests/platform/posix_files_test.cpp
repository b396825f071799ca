#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

class PosixFiles : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(PosixFiles, FullDiskIsTold) {
  const OwnedHandle full = openFile("/dev/full", GENERIC_WRITE, OPEN_EXISTING);
  ASSERT_TRUE(isOpen(full));
  DWORD written = 9;
  EXPECT_FALSE(WriteFile(full.get(), "abc", 3, &written, nullptr));
  EXPECT_EQ(lastError(), 112u);
  EXPECT_EQ(written, 0u);
}

TEST_F(PosixFiles, ReadOnlyFileIsNotOpenedForWriting) {
  const std::string path = folder_.write("fixed", "abc");
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);  // binds the superuser, too
  EXPECT_FALSE(isOpen(openFile(path, GENERIC_WRITE, OPEN_EXISTING)));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_FALSE(isOpen(openFile(path, GENERIC_WRITE, CREATE_ALWAYS)));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_TRUE(isOpen(openForReading(path)));
}

TEST_F(PosixFiles, ReadOnlyIniFileIsNotChanged) {
  const std::string path = folder_.write("fixed", "abc");
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  EXPECT_FALSE(WritePrivateProfileStringA("S", "key", "1", path.c_str()));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_EQ(folder_.read("fixed"), "abc");
}

TEST_F(PosixFiles, CountIsNeeded) {
  const std::string path = folder_.write("file", "abc");
  const OwnedHandle file = openFile(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
  char buffer[4];
  EXPECT_FALSE(ReadFile(file.get(), buffer, 4, nullptr, nullptr));
  EXPECT_FALSE(WriteFile(file.get(), buffer, 4, nullptr, nullptr));
  EXPECT_EQ(lastError(), 87u);
}

TEST_F(PosixFiles, ShareModeFollowsTheFileNotItsName) {
  const std::string path = folder_.write("file", "abc");
  std::filesystem::create_hard_link(path, folder_.file("other"));
  const OwnedHandle reader = openForReading(path);
  EXPECT_FALSE(isOpen(openFile(folder_.file("other"), GENERIC_WRITE, OPEN_EXISTING)));
  EXPECT_EQ(lastError(), 32u);
}

TEST_F(PosixFiles, DescriptorsAreNotInherited) {
  const OwnedHandle file = openForReading(folder_.write("file", "abc"));
  const std::string command = "ls -l /proc/self/fd | grep -q '" + folder_.file("file") + "'";
  EXPECT_NE(std::system(command.c_str()), 0);
}

TEST_F(PosixFiles, ClosingWhileAnotherThreadReadsIsSafe) {
  const std::string path = folder_.write("file", std::string(100000, 'a'));
  for (int i = 0; i < 20; ++i) {
    OwnedHandle file = openForReading(path);
    HANDLE handle = file.get();
    std::thread reader([handle] {
      char buffer[64];
      DWORD count = 1;
      while (count != 0 && ReadFile(handle, buffer, sizeof(buffer), &count, nullptr)) {
        EXPECT_EQ(buffer[0], 'a');
      }
    });
    file.reset();
    reader.join();
  }
}

TEST_F(PosixFiles, IniFileKeepsItsModeAndItsLink) {
  const std::string path = folder_.write("real.ini", "[S]\nkey=1\n");
  chmod(path.c_str(), 0600);
  std::filesystem::create_symlink(path, folder_.file("link.ini"));
  EXPECT_TRUE(WritePrivateProfileStringA("S", "key", "2", folder_.file("link.ini").c_str()));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.file("link.ini")));
  EXPECT_EQ(folder_.read("real.ini"), "[S]\nkey=2\n");  // and the kind of line ends
  struct stat status;
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(PosixFiles, NewIniFileHasTheLineEndsOfWindows) {
  const std::string path = folder_.file("new.ini");
  EXPECT_TRUE(WritePrivateProfileStringA("S", "key", "2", path.c_str()));
  EXPECT_EQ(folder_.read("new.ini"), "[S]\r\nkey=2\r\n");
}

TEST_F(PosixFiles, IniFunctionsNeedTheirNames) {
  const std::string path = folder_.write("file.ini", "[S]\nkey=1\n");
  EXPECT_EQ(GetPrivateProfileIntA(nullptr, "key", 4, path.c_str()), 4u);
  EXPECT_FALSE(WritePrivateProfileStringA("S", "key", nullptr, path.c_str()));
  EXPECT_EQ(folder_.read("file.ini"), "[S]\nkey=1\n");
}

}  // namespace

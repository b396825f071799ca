#include <gtest/gtest.h>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

constexpr DWORD readAndWrite = GENERIC_READ | GENERIC_WRITE;

std::string readAll(HANDLE file, DWORD count) {
  std::string text(count, '\0');
  DWORD read = 0;
  EXPECT_TRUE(ReadFile(file, text.data(), count, &read, nullptr));
  text.resize(read);
  return text;
}

bool writeAll(HANDLE file, const std::string& text) {
  DWORD written = 0;
  return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
         written == text.size();
}

// Where the position is afterwards, or -1.
LONGLONG seek(HANDLE file, LONGLONG distance, DWORD origin) {
  LARGE_INTEGER wanted = {};
  LARGE_INTEGER reached = {};
  wanted.QuadPart = distance;
  return SetFilePointerEx(file, wanted, &reached, origin) ? reached.QuadPart : -1;
}

class Files : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(Files, WhatIsWrittenIsRead) {
  const std::string path = folder_.file("new.bin");
  {
    const OwnedHandle file = openFile(path, GENERIC_WRITE, CREATE_NEW);
    ASSERT_TRUE(isOpen(file));
    EXPECT_TRUE(writeAll(file.get(), "first "));
    EXPECT_TRUE(writeAll(file.get(), "second"));
  }
  const OwnedHandle file = openForReading(path);
  EXPECT_EQ(readAll(file.get(), 100), "first second");
}

TEST_F(Files, ReadingAtTheEndGivesNothingAndSucceeds) {
  const OwnedHandle file = openForReading(folder_.write("three", "abc"));
  EXPECT_EQ(readAll(file.get(), 2), "ab");
  EXPECT_EQ(readAll(file.get(), 2), "c");
  EXPECT_EQ(readAll(file.get(), 2), "");
}

TEST_F(Files, WidePathOpensTheSameFile) {
  folder_.write("wide", "abc");
  const OwnedHandle file(CreateFileW(folder_.wideFile("wide").c_str(), GENERIC_READ,
                                     FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                     nullptr));
  ASSERT_TRUE(isOpen(file));
  EXPECT_EQ(readAll(file.get(), 9), "abc");
}

TEST_F(Files, MissingFileAndMissingFolderDiffer) {
  EXPECT_FALSE(isOpen(openForReading(folder_.file("missing"))));
  EXPECT_EQ(lastError(), 2u);
  EXPECT_FALSE(isOpen(openForReading(folder_.file("nowhere/missing"))));
  EXPECT_EQ(lastError(), 3u);
  EXPECT_FALSE(isOpen(openForReading("")));
  EXPECT_EQ(lastError(), 3u);
}

TEST_F(Files, FolderDoesNotOpenAsAFile) {
  EXPECT_FALSE(isOpen(openForReading(folder_.path().string())));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_FALSE(isOpen(openFile(folder_.path().string(), GENERIC_WRITE, OPEN_EXISTING)));
  EXPECT_EQ(lastError(), 5u);
}

TEST_F(Files, CreateNewLeavesAnExistingFileAlone) {
  const std::string path = folder_.write("there", "abc");
  EXPECT_FALSE(isOpen(openFile(path, GENERIC_WRITE, CREATE_NEW)));
  EXPECT_EQ(lastError(), 80u);
  EXPECT_EQ(folder_.read("there"), "abc");
}

TEST_F(Files, CreateAlwaysEmptiesAnExistingFileAndSaysSo) {
  const std::string path = folder_.write("there", "abc");
  EXPECT_TRUE(isOpen(openFile(path, GENERIC_WRITE, CREATE_ALWAYS)));
  EXPECT_EQ(lastError(), 183u);
  EXPECT_EQ(folder_.read("there"), "");
  EXPECT_TRUE(isOpen(openFile(folder_.file("new"), GENERIC_WRITE, CREATE_ALWAYS)));
  EXPECT_EQ(lastError(), 0u);
}

TEST_F(Files, OpenAlwaysKeepsAnExistingFileAndMakesAMissingOne) {
  const std::string path = folder_.write("there", "abc");
  {
    const OwnedHandle file = openFile(path, GENERIC_READ, OPEN_ALWAYS);
    EXPECT_EQ(lastError(), 183u);
    EXPECT_EQ(readAll(file.get(), 9), "abc");
  }
  EXPECT_TRUE(isOpen(openFile(folder_.file("new"), readAndWrite, OPEN_ALWAYS)));
  EXPECT_EQ(lastError(), 0u);
}

TEST_F(Files, UnknownDispositionIsRefused) {
  EXPECT_FALSE(isOpen(openFile(folder_.write("there", "abc"), GENERIC_READ, 99)));
  EXPECT_EQ(lastError(), 87u);
}

TEST_F(Files, AccessThatWasNotAskedForIsDenied) {
  const std::string path = folder_.write("there", "abc");
  DWORD count = 7;
  char buffer[4];
  {
    const OwnedHandle reader = openForReading(path);
    EXPECT_FALSE(WriteFile(reader.get(), "x", 1, &count, nullptr));
    EXPECT_EQ(lastError(), 5u);
    EXPECT_EQ(count, 0u);
  }
  const OwnedHandle writer = openFile(path, GENERIC_WRITE, OPEN_EXISTING);
  EXPECT_FALSE(ReadFile(writer.get(), buffer, sizeof(buffer), &count, nullptr));
  EXPECT_EQ(lastError(), 5u);
  EXPECT_EQ(folder_.read("there"), "abc");
}

TEST_F(Files, PositionMovesFromStartCurrentAndEnd) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  EXPECT_EQ(seek(file.get(), 4, FILE_BEGIN), 4);
  EXPECT_EQ(readAll(file.get(), 1), "4");
  EXPECT_EQ(seek(file.get(), -2, FILE_CURRENT), 3);
  EXPECT_EQ(seek(file.get(), -1, FILE_END), 9);
  EXPECT_EQ(readAll(file.get(), 5), "9");
}

TEST_F(Files, PositionBeforeTheStartIsRefused) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  EXPECT_EQ(seek(file.get(), 4, FILE_BEGIN), 4);
  EXPECT_EQ(seek(file.get(), -5, FILE_CURRENT), -1);
  EXPECT_EQ(lastError(), 131u);
  EXPECT_EQ(readAll(file.get(), 1), "4");  // it did not move
}

TEST_F(Files, PositionHas64Bits) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  EXPECT_EQ(seek(file.get(), 0x300000005LL, FILE_BEGIN), 0x300000005LL);
  EXPECT_EQ(seek(file.get(), -0x300000001LL, FILE_CURRENT), 4);
}

TEST_F(Files, SizeIsTold) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  LARGE_INTEGER size = {};
  EXPECT_TRUE(GetFileSizeEx(file.get(), &size));
  EXPECT_EQ(size.QuadPart, 10);
}

TEST_F(Files, ClosedAndForeignHandlesAreRefused) {
  OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  HANDLE closed = file.release();
  EXPECT_TRUE(CloseHandle(closed));
  EXPECT_FALSE(CloseHandle(closed));
  EXPECT_EQ(lastError(), 6u);
  char buffer[4];
  DWORD read = 9;
  EXPECT_FALSE(ReadFile(closed, buffer, sizeof(buffer), &read, nullptr));
  EXPECT_EQ(lastError(), 6u);
  LARGE_INTEGER size = {};
  EXPECT_FALSE(GetFileSizeEx(INVALID_HANDLE_VALUE, &size));
  EXPECT_EQ(seek(INVALID_HANDLE_VALUE, 0, FILE_BEGIN), -1);
}

TEST_F(Files, ReadersShareAndAWriterIsKeptOut) {
  const std::string path = folder_.write("shared", "abc");
  const OwnedHandle first = openForReading(path);
  EXPECT_TRUE(isOpen(openForReading(path)));
  EXPECT_FALSE(isOpen(openFile(path, GENERIC_WRITE, OPEN_EXISTING)));
  EXPECT_EQ(lastError(), 32u);
  EXPECT_FALSE(isOpen(openFile(path, GENERIC_WRITE, CREATE_ALWAYS)));
  EXPECT_EQ(folder_.read("shared"), "abc");  // it was not emptied
}

TEST_F(Files, WriterKeepsOutWhoDoesNotShareWriting) {
  const std::string path = folder_.write("shared", "abc");
  const OwnedHandle writer = openFile(path, GENERIC_WRITE, OPEN_EXISTING);
  EXPECT_FALSE(isOpen(openForReading(path)));
  EXPECT_EQ(lastError(), 32u);
  EXPECT_TRUE(
      isOpen(openFile(path, GENERIC_READ, OPEN_EXISTING, FILE_SHARE_READ | FILE_SHARE_WRITE)));
}

TEST_F(Files, ClosingEndsTheShareMode) {
  const std::string path = folder_.write("shared", "abc");
  openFile(path, GENERIC_READ, OPEN_EXISTING, 0).reset();
  EXPECT_TRUE(isOpen(openFile(path, readAndWrite, OPEN_EXISTING, 0)));
}

}  // namespace

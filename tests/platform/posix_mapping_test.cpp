#include <gtest/gtest.h>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

TEST(PosixMapping, MappingHandleIsNoFile) {
  const TemporaryFolder folder;
  const OwnedHandle file = openForReading(folder.write("ten", "0123456789"));
  const OwnedHandle mapping(CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
  LARGE_INTEGER size = {};
  EXPECT_FALSE(GetFileSizeEx(mapping.get(), &size));
  EXPECT_EQ(lastError(), 6u);
}

TEST(PosixMapping, OnlyWhatIsUsedIsThere) {
  const TemporaryFolder folder;
  const OwnedHandle file = openForReading(folder.write("ten", "0123456789"));
  constexpr DWORD pageReadWrite = 4;
  constexpr DWORD fileMapWrite = 2;
  EXPECT_EQ(CreateFileMappingA(file.get(), nullptr, pageReadWrite, 0, 0, nullptr), nullptr);
  EXPECT_EQ(CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, "name"), nullptr);
  EXPECT_EQ(lastError(), 87u);
  const OwnedHandle mapping(CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
  EXPECT_EQ(MapViewOfFile(mapping.get(), fileMapWrite, 0, 0, 0), nullptr);
  EXPECT_EQ(lastError(), 5u);
}

}  // namespace

#include <gtest/gtest.h>

#include <cstring>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

OwnedHandle mapReadOnly(HANDLE file, DWORD size = 0) {
  return OwnedHandle(CreateFileMappingA(file, nullptr, PAGE_READONLY, 0, size, nullptr));
}

class Mapping : public ::testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(Mapping, ViewShowsTheFile) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  const OwnedHandle mapping = mapReadOnly(file.get());
  ASSERT_TRUE(isOpen(mapping));
  const void* view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(std::memcmp(view, "0123456789", 10), 0);
  EXPECT_TRUE(UnmapViewOfFile(view));
}

TEST_F(Mapping, ViewOutlivesBothHandles) {
  OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  OwnedHandle mapping(CreateFileMappingA(file.get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
  const void* view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
  mapping.reset();
  file.reset();
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(std::memcmp(view, "0123456789", 10), 0);
  EXPECT_TRUE(UnmapViewOfFile(view));
}

TEST_F(Mapping, EmptyFileCannotBeMapped) {
  const OwnedHandle file = openForReading(folder_.write("empty", ""));
  EXPECT_FALSE(isOpen(mapReadOnly(file.get())));
  EXPECT_EQ(lastError(), 1006u);
}

TEST_F(Mapping, ReadOnlyMappingIsNotLargerThanItsFile) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  EXPECT_FALSE(isOpen(mapReadOnly(file.get(), 11)));
  EXPECT_EQ(lastError(), 8u);
  EXPECT_TRUE(isOpen(mapReadOnly(file.get(), 5)));
}

TEST_F(Mapping, FileMustBeReadable) {
  const OwnedHandle file =
      openFile(folder_.write("ten", "0123456789"), GENERIC_WRITE, OPEN_EXISTING);
  EXPECT_FALSE(isOpen(mapReadOnly(file.get())));
  EXPECT_EQ(lastError(), 5u);
}

TEST_F(Mapping, LaterPartIsMappedFromAMultipleOf64K) {
  std::string content(0x20000, 'a');
  content[0x10000] = 'b';
  const OwnedHandle file = openForReading(folder_.write("large", content));
  const OwnedHandle mapping = mapReadOnly(file.get());
  const auto* view =
      static_cast<const char*>(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0x10000, 2));
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(view[0], 'b');
  EXPECT_TRUE(UnmapViewOfFile(view));
  EXPECT_EQ(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0x1000, 2), nullptr);
  EXPECT_EQ(lastError(), 1132u);
  EXPECT_EQ(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0x10000, 0x20000), nullptr);
  EXPECT_EQ(lastError(), 5u);
}

TEST_F(Mapping, OnlyViewsAreUnmapped) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  const OwnedHandle mapping = mapReadOnly(file.get());
  const void* view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
  EXPECT_TRUE(UnmapViewOfFile(view));
  EXPECT_FALSE(UnmapViewOfFile(view));
  EXPECT_EQ(lastError(), 487u);
  EXPECT_FALSE(UnmapViewOfFile(nullptr));
}

TEST_F(Mapping, FileHandleIsNoMapping) {
  const OwnedHandle file = openForReading(folder_.write("ten", "0123456789"));
  EXPECT_EQ(MapViewOfFile(file.get(), FILE_MAP_READ, 0, 0, 0), nullptr);
  EXPECT_EQ(lastError(), 6u);
}

TEST_F(Mapping, MappedFileIsNotCut) {
  const std::string path = folder_.write("ten", "0123456789");
  OwnedHandle file = openForReading(path);
  OwnedHandle mapping = mapReadOnly(file.get());
  const void* view = MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0);
  mapping.reset();
  file.reset();
  EXPECT_FALSE(isOpen(openFile(path, GENERIC_WRITE, CREATE_ALWAYS)));
  EXPECT_EQ(lastError(), 1224u);
  EXPECT_TRUE(isOpen(openFile(path, GENERIC_WRITE, OPEN_EXISTING)));
  EXPECT_TRUE(UnmapViewOfFile(view));
  EXPECT_EQ(folder_.read("ten"), "0123456789");
  EXPECT_TRUE(isOpen(openFile(path, GENERIC_WRITE, CREATE_ALWAYS)));
}

}  // namespace

// Entering written images into the index: places, values, refusals, the file's position.
#include <gtest/gtest.h>

#include <cstring>

#include "mpo/mpf_segment.h"
#include "tests/support/scratch_file.h"

namespace {

using host::u32;
using host::u64;
using support::Bytes;

// A first stream whose APP2 segment is the module's own, and bytes behind it.
Bytes fileOf(std::size_t imageCount) {
  std::vector<host::MpoImageDesc> images(imageCount, host::MpoImageDesc{});
  const host::MpoCountAnswer counts = {static_cast<u32>(imageCount), 0};
  Bytes payload(mpo::MpfBuildSegment(images, counts, {}, nullptr));
  mpo::MpfBuildSegment(images, counts, payload, nullptr);
  const std::size_t length = payload.size() + 2;
  const Bytes head = {0xFF,
                      0xD8,
                      0xFF,
                      0xE1,
                      0,
                      4,
                      1,
                      2,
                      0xFF,
                      0xE2,
                      static_cast<host::u8>(length >> 8),
                      static_cast<host::u8>(length)};
  return support::joined(support::joined(head, payload), Bytes(40, 0xEE));
}
constexpr std::size_t byteOrder = 8 + 4 + 4;
constexpr std::size_t table = byteOrder + 14 + 12 * 4;

u32 word(const Bytes& bytes, std::size_t at) {
  u32 value = 0;
  std::memcpy(&value, bytes.data() + at, 4);
  return value;
}

struct Patched {
  int result;
  std::optional<u64> position;
  Bytes content;
};

Patched patch(const Bytes& content, u32 count, u32 image, u64 start, u32 size) {
  const test::ScratchFile scratch(content);
  Patched patched{};
  {
    const platform::OpenFile file = scratch.openForWriting();
    platform::moveTo(file.get(), 33);
    patched.result = mpo::MpfPatchEntry(file.get(), count, image, start, size);
    patched.position = platform::moveTo(file.get(), 0, FILE_CURRENT);
  }
  patched.content = scratch.read();
  return patched;
}

TEST(MpfPatch, SizeAndOffsetGoIntoTheImagesEntryAlone) {
  for (const u32 image : {0u, 1u, 4u}) {
    const Bytes before = fileOf(5);
    const Patched patched = patch(before, 5, image, 70000, 12345);
    EXPECT_EQ(patched.result, 1);
    EXPECT_EQ(patched.position, 33u) << "restored";
    Bytes expected = before;
    const u32 fields[] = {12345, image == 0 ? 0 : static_cast<u32>(70000 - byteOrder)};
    std::memcpy(expected.data() + table + 16 * image + 4, fields, sizeof fields);
    EXPECT_EQ(patched.content, expected) << image;
  }
}

TEST(MpfPatch, OffsetsCountFromTheByteOrderField) {
  const Patched patched = patch(fileOf(2), 2, 1, 0x80000000, 1);
  EXPECT_EQ(word(patched.content, table + 16 + 8), 0x80000000u - byteOrder);
}

TEST(MpfPatch, AnOffsetThatDoesNotFitIsRefused) {
  EXPECT_EQ(patch(fileOf(2), 2, 1, u64{0x100000000} + byteOrder, 1).result, 0);
  EXPECT_EQ(patch(fileOf(2), 2, 1, u64{0xFFFFFFFF} + byteOrder, 1).result, 1);
}

TEST(MpfPatch, AnImageThatIsNoneOfTheFilesIsRefused) {
  EXPECT_EQ(patch(fileOf(2), 2, 2, 100, 1).result, 0);
  EXPECT_EQ(patch(fileOf(2), 0, 0, 100, 1).result, 0);
}

// Each refusal leaves the content and the position alone.
void expectRefused(const Bytes& content, u32 image = 0) {
  const Patched patched = patch(content, 9, image, 100, 1);
  EXPECT_EQ(patched.result, 0);
  EXPECT_EQ(patched.position, 33u);
  EXPECT_EQ(patched.content, content);
}

TEST(MpfPatch, AFileWithoutTheSegmentIsRefused) {
  expectRefused({0xFF, 0xD8, 0xFF, 0xD9});
  expectRefused({});
}

TEST(MpfPatch, AFirstIfdElsewhereIsRefused) {
  Bytes content = fileOf(2);
  content[byteOrder + 4] = 10;
  expectRefused(content);
}

TEST(MpfPatch, AnIndexWithoutATableIsRefused) {
  Bytes content = fileOf(2);
  content[byteOrder + 10 + 24] = 0x05;  // 0xB002 becomes another tag
  expectRefused(content);
  content = fileOf(2);
  content[byteOrder + 8] = 2;  // the table's entry lies past the count
  expectRefused(content);
}

TEST(MpfPatch, TagsAreReadLittleEndian) {
  Bytes content = fileOf(2);
  content[byteOrder + 10 + 24] = 0xB0;
  content[byteOrder + 10 + 25] = 0x02;
  expectRefused(content);
}

TEST(MpfPatch, AnEntryPastTheSegmentIsRefused) {
  const Bytes content = fileOf(2);
  // Behind the table lie the attribute IFD's 30 bytes, room for one entry more.
  expectRefused(content, 3);
  Bytes distant = content;
  const u32 offset = 0xFFFFFFF0;
  std::memcpy(distant.data() + byteOrder + 10 + 24 + 8, &offset, 4);
  expectRefused(distant, 1);
}

TEST(MpfPatch, AFileCutShortIsRefused) {
  const Bytes content = fileOf(2);
  for (const std::size_t size :
       {byteOrder, byteOrder + 5, byteOrder + 9, byteOrder + 20, byteOrder + 45}) {
    expectRefused(Bytes(content.begin(), content.begin() + static_cast<std::ptrdiff_t>(size)));
  }
}

}  // namespace

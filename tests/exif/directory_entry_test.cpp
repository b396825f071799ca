// Directory entries: element sizes and the value word in both byte orders.
#include "exif/directory_entry.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;
using exif::readEntry;

Bytes entryBytes(FileOrder order, host::u16 tag, host::u16 type, host::u32 count, Bytes word) {
  support::OrderedBytes out(order);
  out.u16(tag);
  out.u16(type);
  out.u32(count);
  out.append(word);
  return out.bytes();
}

TEST(DirectoryEntry, ElementSizesAreThoseOfTheTwelveTypes) {
  const host::u32 sizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
  for (host::u16 type = 0; type < 13; ++type) {
    EXPECT_EQ(exif::elementSize(type), sizes[type]) << type;
    EXPECT_EQ(exif::isKnownType(type), type != 0);
  }
  for (const int type : {13, 14, 255, 0x0100, 0xFFFF}) {
    EXPECT_EQ(exif::elementSize(static_cast<host::u16>(type)), 0u);
    EXPECT_FALSE(exif::isKnownType(static_cast<host::u16>(type)));
  }
}

TEST(DirectoryEntry, NumbersFollowTheByteOrder) {
  for (const FileOrder order : bothOrders) {
    const auto entry = readEntry(
        readerOf(entryBytes(order, 0x8769, 4, 0x01020304, bytesOfNumbers(order, 4, {0x0A0B0C0D})),
                 order),
        0);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->tag, 0x8769);
    EXPECT_EQ(entry->type, 4);
    EXPECT_EQ(entry->count, 0x01020304);
    EXPECT_EQ(entry->valueOrOffset, 0x0A0B0C0Du);
  }
}

// The word 01 02 03 04 as it comes out of an entry.
TEST(DirectoryEntry, TheValueWordOfABigEndianEntryIsTurnedByTypeAndCount) {
  constexpr host::u32 asItStands = 0x04030201;
  constexpr host::u32 halves = 0x03040102;
  constexpr host::u32 whole = 0x01020304;
  const struct {
    host::u16 type;
    host::u32 count;
    host::u32 value;
  } rows[] = {{1, 4, asItStands},     {2, 4, asItStands},
              {6, 1, asItStands},     {7, 0, asItStands},
              {1, 5, whole},          {2, 5, whole},
              {6, 5, whole},          {7, 5, whole},
              {3, 1, halves},         {3, 2, halves},
              {8, 2, halves},         {3, 3, whole},
              {8, 3, whole},          {4, 1, whole},
              {9, 1, whole},          {5, 1, whole},
              {10, 1, whole},         {11, 1, whole},
              {12, 1, whole},         {13, 1, whole},
              {0, 1, whole},          {2, 0xFFFFFFFF, asItStands},
              {3, 0x80000000, halves}};
  for (const auto& row : rows) {
    const Bytes big = entryBytes(FileOrder::big, 1, row.type, row.count, {1, 2, 3, 4});
    EXPECT_EQ(readEntry(readerOf(big, FileOrder::big), 0)->valueOrOffset, row.value)
        << row.type << " x " << row.count;
    const Bytes little = entryBytes(FileOrder::little, 1, row.type, row.count, {1, 2, 3, 4});
    EXPECT_EQ(readEntry(readerOf(little), 0)->valueOrOffset, asItStands);
  }
}

TEST(DirectoryEntry, WhatDoesNotLieInsideWholeIsNotRead) {
  Bytes bytes = entryBytes(FileOrder::little, 1, 3, 1, {1, 2, 3, 4});
  EXPECT_TRUE(readEntry(readerOf(bytes), 0));
  EXPECT_FALSE(readEntry(readerOf(bytes), 1));
  EXPECT_FALSE(readEntry(readerOf(bytes), ~host::u64{0}));
  bytes.pop_back();
  EXPECT_FALSE(readEntry(readerOf(bytes), 0));
}

TEST(DirectoryEntry, ACountOutsideIsZero) {
  const Bytes bytes = {5, 0, 7};
  EXPECT_EQ(exif::readEntryCount(readerOf(bytes), 0), 5);
  EXPECT_EQ(exif::readEntryCount(readerOf(bytes, FileOrder::big), 0), 0x500);
  EXPECT_EQ(exif::readEntryCount(readerOf(bytes), 2), 0);
  EXPECT_EQ(exif::readEntryCount(readerOf(bytes), 0xFFFFFFFF), 0);
}

}  // namespace

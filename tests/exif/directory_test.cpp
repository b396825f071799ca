// IFD0, EXIF and GPS directories: which entries become fields, and with what.
#include "exif/directory.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;

constexpr host::u32 directoryAt = 8;  // where the builder puts IFD0

class Directory : public ReaderTest {
 protected:
  bool read(const TiffBuilder& tiff, FileOrder order = FileOrder::little) {
    return readBytes(tiff.build(), order);
  }
  bool readBytes(const Bytes& tiff, FileOrder order = FileOrder::little,
                 const exif::PointerOuts& outs = {}, host::u32 offset = directoryAt) {
    exif::ValueBudget budget;
    return exif::readDirectory(readerOf(tiff, order), offset, slot_.address(), budget, outs);
  }
  bool readGps(const Bytes& tiff, FileOrder order = FileOrder::little,
               host::u32 offset = directoryAt) {
    exif::ValueBudget budget;
    return exif::readGpsDirectory(readerOf(tiff, order), offset, slot_.address(), budget);
  }
};

TEST_F(Directory, AnEntryBecomesAFieldAsItsRowSays) {
  exif_.set(3, 0x010F, host::kindText, 4006, 2401);
  exif_.set(80, 0x0112, host::kindNumber16, 4009, host::noLabel);
  for (const FileOrder order : bothOrders) {
    PropertySlot fresh;
    exif::ValueBudget budget;
    TiffBuilder tiff(order);
    tiff.ifd0().text(0x010F, "Maker").shorts(0x0112, {6});
    const Bytes bytes = tiff.build();
    ASSERT_TRUE(exif::readDirectory(readerOf(bytes, order), 8, fresh.address(), budget));
    const std::vector<StoredField> fields = fresh.fields();
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[0].id(), 4006);
    EXPECT_EQ(fields[0].descriptor.valueKind, 1);
    EXPECT_EQ(fields[0].descriptor.sourceGroup, 2) << "the TIFF type";
    EXPECT_EQ(fields[0].name(), "Object name");
    EXPECT_EQ(fields[0].text(), std::string("Maker\0", 6));
    EXPECT_EQ(fields[1].id(), 4009);
    EXPECT_EQ(fields[1].descriptor.sourceGroup, 3);
    EXPECT_EQ(fields[1].number(), 6u);
    EXPECT_EQ(fields[1].size(), 0u);
    EXPECT_EQ(fields[1].name(), "");
  }
}

TEST_F(Directory, RoomIsReservedForFourFieldsMoreThanEntries) {
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1}).shorts(2, {2}).shorts(3, {3});
  EXPECT_TRUE(read(tiff));
  EXPECT_THAT(the().calls, testing::ElementsAre("Prop_ReAllocFieldSpace:7"));
  EXPECT_EQ(the().reservedSlots, std::vector{slot_.address()});
}

TEST_F(Directory, ARefusedReservationStoresNothing) {
  exif_.set(0, 1, host::kindNumber16, 5200);
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1});
  the().refuseReservation = true;
  EXPECT_FALSE(read(tiff));
  EXPECT_EQ(slot_.handle(), nullptr);
}

TEST_F(Directory, FieldsFollowThoseThatAreThereAndTheSizeWordStays) {
  exif_.set(0, 1, host::kindNumber16, 5200);
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1});
  EXPECT_TRUE(read(tiff));
  EXPECT_TRUE(read(tiff));
  EXPECT_EQ(slot_.ids(), (std::vector{5200, 5200}));
  platform::LockedGlobal lock(slot_.handle());
  EXPECT_EQ(lock.as<host::PropertyHeader>()->fieldCount, 3);
  EXPECT_EQ(lock.as<host::PropertyHeader>()->recordSize, 8u + 88u) << "only the count is raised";
}

TEST_F(Directory, NegativeCountsAndUnknownTypesAreSkippedAndGiveNoPointers) {
  exif_.set(0, 1, host::kindNumber32, 5200);
  TiffBuilder tiff;
  tiff.ifd0()
      .lying(1, 4, 0x80000000, 1)
      .lying(1, 0, 1, 2)
      .lying(1, 13, 1, 3)
      .lying(0x83BB, 7, 0xFFFFFFFF, 4)
      .lying(0x927C, 13, 1, 5)
      .lying(1, 12, 1, 6)
      .lying(1, 1, 0x7FFFFFFF, 7);
  host::u32 makerNote = 99, iptcOffset = 99;
  host::i32 iptcCount = 99;
  ASSERT_TRUE(
      readBytes(tiff.build(), FileOrder::little,
                {.makerNote = &makerNote, .iptcOffset = &iptcOffset, .iptcCount = &iptcCount}));
  const std::vector<StoredField> fields = slot_.fields();
  ASSERT_EQ(fields.size(), 2u);
  EXPECT_EQ(fields[0].number(), 6u);
  EXPECT_EQ(fields[1].number(), 7u);
  EXPECT_EQ(makerNote, 99u);
  EXPECT_EQ(iptcOffset, 99u);
  EXPECT_EQ(iptcCount, 99);
}

TEST_F(Directory, PointersAreNotedAndTheirEntriesStoredAllTheSame) {
  exif_.set(0, 0x927C, host::kindNumber32, 5207);
  exif_.set(1, 0x8649, host::kindNumber32, 5208);
  TiffBuilder tiff;
  tiff.ifd0().lying(0x927C, 7, 100, 1000).lying(0x8649, 1, 50, 2000).lying(0x83BB, 4, 25, 3000);
  host::u32 makerNote = 0, photoshop = 0, iptcOffset = 0;
  host::i32 iptcCount = 0;
  ASSERT_TRUE(readBytes(tiff.build(), FileOrder::little,
                        {&makerNote, &photoshop, &iptcOffset, &iptcCount}));
  EXPECT_EQ(makerNote, 1000u);
  EXPECT_EQ(photoshop, 2000u);
  EXPECT_EQ(iptcOffset, 3000u);
  EXPECT_EQ(iptcCount, 25);
  EXPECT_EQ(slot_.ids(), (std::vector{5207, 5208}));
  EXPECT_TRUE(readBytes(tiff.build())) << "outs that are not asked for";
}

TEST_F(Directory, ATagWithoutARowAndAKindThatStoresNothingGiveNoField) {
  exif_.set(0, 1, 3, 5200);
  exif_.set(1, 2, 6, 5201);
  exif_.set(2, 3, 17, 5202);
  exif_.set(3, 4, host::kindNumber16, 5203);
  exif_.set(4, 5, 0, 5204);
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1}).shorts(2, {2}).shorts(3, {3}).shorts(4, {4}).shorts(5, {5}).shorts(
      6, {6});
  ASSERT_TRUE(read(tiff));
  EXPECT_EQ(slot_.ids(), std::vector{5203});
}

TEST_F(Directory, WhatARefusedEntryLeftDoesNotShineThrough) {
  exif_.set(0, 1, host::kindBlock, 5200, 2401);
  exif_.set(1, 2, host::kindNumber16, 5201, host::noLabel);
  TiffBuilder tiff;
  tiff.ifd0().lying(1, 5, 1, 0xFFFFFF).shorts(2, {2});
  ASSERT_TRUE(read(tiff));
  const std::vector<StoredField> fields = slot_.fields();
  ASSERT_EQ(fields.size(), 1u);
  EXPECT_EQ(fields[0].id(), 5201);
  EXPECT_EQ(fields[0].name(), "");
}

TEST_F(Directory, BigEndianShortsStayInlineUpToTwo) {
  exif_.set(0, 1, host::kindBlock, 5200);
  TiffBuilder tiff(FileOrder::big);
  tiff.ifd0().shorts(1, {0x1122, 0x3344}).shorts(1, {0x1122, 0x3344, 0x5566});
  ASSERT_TRUE(read(tiff, FileOrder::big));
  const std::vector<StoredField> fields = slot_.fields();
  ASSERT_EQ(fields.size(), 2u);
  EXPECT_EQ(fields[0].payload(), (Bytes{0x22, 0x11, 0x44, 0x33}));
  EXPECT_EQ(fields[1].payload(), (Bytes{0x22, 0x11, 0x44, 0x33, 0x66, 0x55}));
}

TEST_F(Directory, ADirectoryOutsideIsOneWithoutEntries) {
  EXPECT_TRUE(readBytes(Bytes(20), FileOrder::little, {}, 19));
  EXPECT_TRUE(readBytes(Bytes(20), FileOrder::little, {}, 0xFFFFFFFF));
  EXPECT_THAT(the().calls,
              testing::ElementsAre("Prop_ReAllocFieldSpace:4", "Prop_ReAllocFieldSpace:4"));
  EXPECT_TRUE(slot_.ids().empty());
}

TEST_F(Directory, WhatLiesBehindTheLastEntryIsNone) {
  exif_.set(0, 1, host::kindNumber16, 5200);
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1}).shorts(1, {2}).claimCount(1);
  ASSERT_TRUE(readBytes(tiff.build()));
  EXPECT_EQ(slot_.ids(), std::vector{5200});
}

TEST_F(Directory, EntriesPastTheEndAreLeftOut) {
  exif_.set(0, 1, host::kindNumber16, 5200);
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1}).shorts(1, {2}).claimCount(0xFFFF);
  Bytes bytes = tiff.build();
  bytes.resize(directoryAt + 2 + 24 + 11);
  ASSERT_TRUE(readBytes(bytes));
  EXPECT_EQ(slot_.ids(), (std::vector{5200, 5200}));
  EXPECT_THAT(the().calls, testing::ElementsAre("Prop_ReAllocFieldSpace:65539"));
}

TEST_F(Directory, ABlockWithoutRoomForAllEntriesIsNotOverrun) {
  exif_.set(0, 1, host::kindBlock, 5200);
  TiffBuilder tiff;
  tiff.ifd0().rationals(1, {{1, 2}}).rationals(1, {{3, 4}}).rationals(1, {{5, 6}});
  exif::ValueBudget budget;
  const Bytes bytes = tiff.build();
  // A record that is said to have been grown, and was not.
  doubles::reserveFields(slot_.address(), 1);
  the().reserveNothing = true;
  ASSERT_TRUE(exif::readDirectory(readerOf(bytes), directoryAt, slot_.address(), budget));
  EXPECT_EQ(slot_.ids(), std::vector{5200});
}

TEST_F(Directory, ADirectoryOf65535EntriesIsReadInOneGo) {
  exif_.set(112, 1, host::kindNumber16, 4000, 2401);
  Bytes bytes(8);
  const Bytes head = {0xFF, 0xFF};
  bytes.insert(bytes.end(), head.begin(), head.end());
  for (int index = 0; index < 0xFFFF; ++index) {
    const Bytes entry = {1, 0, 3, 0, 1, 0, 0, 0, 7, 0, 0, 0};
    bytes.insert(bytes.end(), entry.begin(), entry.end());
  }
  ASSERT_TRUE(readBytes(bytes));
  EXPECT_EQ(slot_.ids().size(), 65535u);
}

TEST_F(Directory, ValuesOfOneSegmentEndAt64MiB) {
  exif_.set(0, 1, host::kindBlock, 5200);
  exif_.set(1, 2, host::kindNumber16, 5201);
  constexpr host::u32 large = 24u << 20;
  TiffBuilder tiff;
  tiff.ifd0()
      .lying(1, 1, large, 0)
      .lying(1, 1, large, 0)
      .shorts(2, {2})
      .lying(1, 1, large, 0)
      .shorts(2, {3});
  Bytes bytes = tiff.build();
  bytes.resize(large);
  ASSERT_TRUE(readBytes(bytes));
  EXPECT_EQ(slot_.ids(), (std::vector{5200, 5200, 5201}));
}

TEST_F(Directory, GpsFieldsAreNumberedByTheirRows) {
  gps_.set(0, 0, host::kindBlock, 1, 2401);
  gps_.set(17, 2, host::kindBlock, 2, 2402);
  for (const FileOrder order : bothOrders) {
    PropertySlot fresh;
    exif::ValueBudget budget;
    TiffBuilder tiff(order);
    tiff.ifd0().bytes(0, {2, 3, 0, 0}).rationals(2, {{48, 1}, {7, 1}, {30, 100}});
    const Bytes bytes = tiff.build();
    ASSERT_TRUE(exif::readGpsDirectory(readerOf(bytes, order), 8, fresh.address(), budget));
    const std::vector<StoredField> fields = fresh.fields();
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[0].id(), 5300);
    EXPECT_EQ(fields[0].name(), "Object name");
    EXPECT_EQ(fields[0].payload(), (Bytes{2, 3, 0, 0}));
    EXPECT_EQ(fields[1].id(), 5317);
    EXPECT_EQ(fields[1].descriptor.sourceGroup, 5);
    EXPECT_EQ(fields[1].payload(), bytesOfNumbers(FileOrder::little, 4, {48, 1, 7, 1, 30, 100}));
  }
}

TEST_F(Directory, AGpsDirectoryHas1To32Entries) {
  gps_.set(0, 1, host::kindNumber16, 0);
  for (const host::u16 count : std::initializer_list<host::u16>{0, 33, 0xFFFF}) {
    TiffBuilder tiff;
    for (int entry = 0; entry < std::min<int>(count, 40); ++entry) tiff.ifd0().shorts(1, {1});
    tiff.ifd0().claimCount(count);
    EXPECT_FALSE(readGps(tiff.build())) << count;
  }
  EXPECT_TRUE(the().calls.empty());
  TiffBuilder tiff;
  for (int entry = 0; entry < 32; ++entry) tiff.ifd0().shorts(1, {1});
  EXPECT_TRUE(readGps(tiff.build()));
  EXPECT_EQ(slot_.ids(), std::vector(32, 5300));
  EXPECT_THAT(the().calls, testing::ElementsAre("Prop_ReAllocFieldSpace:32")) << "no spare room";
}

TEST_F(Directory, GpsEntriesAreCheckedByNothingButTheirKind) {
  gps_.set(0, 1, host::kindNumber32, 0);
  gps_.set(1, 2, host::kindBlock, 0);
  gps_.set(2, 3, host::kindText, 0);
  TiffBuilder tiff;
  tiff.ifd0()
      .lying(1, 0, 1, 10)
      .lying(1, 4, 0xFFFFFFFF, 11)
      .lying(2, 0, 1, 12)
      .lying(2, 13, 1, 13)
      .lying(2, 1, 0xFFFFFFFF, 14)
      .lying(3, 2, 0xFFFFFFFF, 15)
      .lying(3, 99, 1, 'x');
  ASSERT_TRUE(readGps(tiff.build()));
  EXPECT_EQ(slot_.ids(), (std::vector{5300, 5300, 5302}));
}

TEST_F(Directory, AGpsDirectoryOutsideOrRefusedStoresNothing) {
  gps_.set(0, 1, host::kindNumber16, 0);
  EXPECT_FALSE(readGps(Bytes(20), FileOrder::little, 19));
  TiffBuilder tiff;
  tiff.ifd0().shorts(1, {1});
  the().refuseReservation = true;
  EXPECT_FALSE(readGps(tiff.build()));
  EXPECT_EQ(slot_.handle(), nullptr);
}

}  // namespace

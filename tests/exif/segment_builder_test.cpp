// The EXIF segment made from fields: directories, pointers, values, the thumbnail, the descriptor.
#include "exif/segment_builder.h"

#include "tests/exif/built_segment.h"

namespace {

using namespace test;

using Entries = std::vector<WrittenEntry>;
const Bytes thumbnail = {0xFF, 0xD8, 'j', 'p', 'g', 0xFF, 0xD9};

using SegmentBuilder = BuilderTest;

TEST_F(SegmentBuilder, AWholeSegmentLiesByteForByte) {
  slot_.addText(exifText, "2010:12:02");
  slot_.addText(hostText, "Maker");
  slot_.addNumber(hostShort, host::kindNumber16, 6);
  slot_.addText(gpsText, "N");
  slot_.addText(iptcText, "Title");
  build(thumbnail);

  support::OrderedBytes tiff(support::ByteOrder::little);
  const auto entry = [&](u16 tag, u16 type, u32 count, u32 word) {
    tiff.u16(tag);
    tiff.u16(type);
    tiff.u32(count);
    tiff.u32(word);
  };
  // Header 8; 0th IFD 2 + 5 * 12 + 4; Exif and GPS IFD 2 + 12 + 4 each; 1st IFD 2 + 6 * 12 + 4.
  constexpr u32 exifIfd = 8 + 66, gpsIfd = exifIfd + 18, ifd1 = gpsIfd + 18, values = ifd1 + 78;
  constexpr u32 iptc = values + 5, date = iptc + 10, rationals = date + 10;
  tiff.append(support::bytesOf("II"));
  tiff.u16(42);
  tiff.u32(8);
  tiff.u16(5);
  entry(0x010F, 2, 5, values);
  entry(0x0112, 3, 1, 6);
  entry(0x83BB, 7, 10, iptc);
  entry(0x8769, 4, 1, exifIfd);
  entry(0x8825, 4, 1, gpsIfd);
  tiff.u32(ifd1);
  tiff.u16(1);
  entry(0x9003, 2, 10, date);
  tiff.u32(0);
  tiff.u16(1);
  entry(0x0001, 2, 1, 'N');
  tiff.u32(0);
  tiff.u16(6);
  entry(0x0103, 3, 1, 6);
  entry(0x011A, 5, 1, rationals);
  entry(0x011B, 5, 1, rationals + 8);
  entry(0x0128, 3, 1, 2);
  entry(0x0201, 4, 1, rationals + 16);
  entry(0x0202, 4, 1, 7);
  tiff.u32(0);
  tiff.append(support::bytesOf("Maker"));
  tiff.append({0x1C, 2, 5, 0, 5, 'T', 'i', 't', 'l', 'e'});
  tiff.append(support::bytesOf("2010:12:02"));
  for (const u32 number : {72u, 1u, 72u, 1u}) tiff.u32(number);
  tiff.append(thumbnail);

  const std::size_t length = 2 + 6 + tiff.bytes().size();
  Bytes expected = {0xFF, 0xE1, static_cast<host::u8>(length >> 8), static_cast<host::u8>(length)};
  expected = support::joined(expected, exifPayload(tiff.bytes()));
  EXPECT_EQ(segment().block(), expected);
}

TEST_F(SegmentBuilder, TheFieldIsARawSegmentWithRoomToSpare) {
  slot_.addText(hostText, "Maker");
  build();
  const std::vector<StoredField> fields = slot_.fields();
  ASSERT_EQ(fields.size(), 2u);
  const host::PropertyField& field = fields[1].descriptor;
  EXPECT_EQ(+field.descriptorSize, 88u);
  EXPECT_EQ(+field.valueKind, 5);
  EXPECT_EQ(+field.fieldId, 5297);
  EXPECT_EQ(+field.sourceGroup, 4701);
  EXPECT_EQ(+field.scanComplete, 0);
  char name[80] = {};
  ASSERT_GT(LoadStringA(GetModuleHandleA("KFRES.DLL"), 793, name, 80), 0);
  EXPECT_EQ(fields[1].name(), name);
  const u32 tiffSize = 6 + 10 + 4 + 12 + 5;
  EXPECT_EQ(+field.dataSize, tiffSize + 4);
  EXPECT_EQ(fields[1].block[3], tiffSize + 2);
  const HGLOBAL block = reinterpret_cast<HGLOBAL>(field.data);
  EXPECT_GE(GlobalSize(block), tiffSize + 8);
  EXPECT_EQ(GlobalFlags(block) & GMEM_LOCKCOUNT, 0u);
  platform::LockedGlobal lock(slot_.handle());
  EXPECT_EQ(lock.as<host::PropertyHeader>()->recordSize, 8u + 88u * 2)
      << "only the count is raised";
}

TEST_F(SegmentBuilder, ARecordWithNothingToPutInStaysAsItIs) {
  build(thumbnail);
  EXPECT_EQ(segments().size(), 1u) << "a thumbnail alone is enough, and the record is made";
  for (const u16 id : {u16{3998}, u16{4100}, u16{5199}, u16{5298}, u16{5299}, u16{5332}, u16{5599},
                       u16{5627}, u16{4701}, u16{5000}}) {
    PropertySlot other;
    other.addText(id, "text of its own");
    the().calls.clear();
    exif::buildSegments(other.address(), {}, exif::XmpPlace::ownSegment);
    EXPECT_TRUE(the().calls.empty()) << id;
    EXPECT_EQ(other.fields().size(), 1u) << id;
  }
}

TEST_F(SegmentBuilder, RoomForTwoFieldsIsReservedOnce) {
  slot_.addText(hostText, "Maker");
  build();
  EXPECT_EQ(the().calls, std::vector<std::string>{"Prop_ReAllocFieldSpace:2"});
  EXPECT_EQ(the().reservedSlots, std::vector<HGLOBAL*>{slot_.address()});
}

// Directories and pointers.

TEST_F(SegmentBuilder, ExifFieldsAloneGiveAPointerAndNoFurtherDirectory) {
  slot_.addText(exifText, "date");
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 1);
  EXPECT_EQ(ifd0.count, 1);
  EXPECT_EQ(ifd0.entries, (Entries{{0x8769, 4, 1, 26}}));
  EXPECT_EQ(ifd0.next, 0u);
  const WrittenDirectory exif = segment().directory(26, 1);
  EXPECT_EQ(exif.count, 1);
  EXPECT_EQ(exif.entries, (Entries{{0x9003, 2, 4, 0x65746164}}));
  EXPECT_EQ(exif.next, 0u);
  EXPECT_EQ(segment().block().size(), 4u + 6 + 10 + 18 + 4 + 12);
}

TEST_F(SegmentBuilder, GpsFieldsAloneGiveTheirPointer) {
  slot_.addNumber(gpsByte, host::kindNumber16, 1);
  build();
  EXPECT_EQ(segment().directory(8, 1).entries, (Entries{{0x8825, 4, 1, 26}}));
  const WrittenDirectory gps = segment().directory(26, 1);
  EXPECT_EQ(gps.count, 1);
  EXPECT_EQ(gps.entries, (Entries{{0x0005, 1, 1, 1}}));
  EXPECT_EQ(gps.next, 0u);
  EXPECT_EQ(segment().block().size(), 4u + 6 + 10 + 18 + 4 + 12);
}

TEST_F(SegmentBuilder, IptcFieldsAloneGiveOneEntryWithTheSerialisedStream) {
  slot_.addText(iptcText, "T");
  slot_.addText(iptcText, "Second");
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 1);
  EXPECT_EQ(ifd0.count, 1);
  EXPECT_EQ(ifd0.entries, (Entries{{0x83BB, 7, 17, 26}}));
  EXPECT_EQ(segment().text(26, 17), std::string("\x1C\2\5\0\1T\x1C\2\5\0\6Second", 17));
  EXPECT_EQ(segment().block().size(), 4u + 6 + 10 + 4 + 12 + 17);
}

TEST_F(SegmentBuilder, AThumbnailAloneHangsOnAnEmptyDirectory) {
  build(thumbnail);
  const WrittenDirectory ifd0 = segment().directory(8, 0);
  EXPECT_EQ(ifd0.count, 0);
  EXPECT_EQ(ifd0.next, 14u);
  const WrittenDirectory ifd1 = segment().directory(14, 6);
  EXPECT_EQ(ifd1.count, 6);
  EXPECT_EQ(ifd1.next, 0u);
  const u32 rationals = 14 + 2 + 72 + 4;
  EXPECT_EQ(ifd1.entries[4].word, rationals + 16);
  EXPECT_EQ(segment().text(rationals + 16, 7), std::string(thumbnail.begin(), thumbnail.end()));
  EXPECT_EQ(segment().block().size(), 4u + 6 + 10 + 4 + 6 + 72 + 16 + 7);
}

TEST_F(SegmentBuilder, EntriesComeInRecordOrderAndOfEveryFieldWithARow) {
  slot_.addNumber(hostShort, host::kindNumber16, 1);
  slot_.addText(exifText, "b");
  slot_.addText(hostText, "a");
  slot_.addNumber(hostShort, host::kindNumber16, 2);
  slot_.addNumber(exifShort, host::kindNumber16, 3);
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 4);
  EXPECT_EQ(ifd0.count, 4);
  EXPECT_EQ(
      ifd0.entries,
      (Entries{{0x0112, 3, 1, 1}, {0x010F, 2, 1, 'a'}, {0x0112, 3, 1, 2}, {0x8769, 4, 1, 62}}));
  EXPECT_EQ(segment().directory(62, 2).entries, (Entries{{0x9003, 2, 1, 'b'}, {0xA001, 3, 1, 3}}));
}

TEST_F(SegmentBuilder, EachGroupOfTheTableServesItsOwnDirectory) {
  defineWritten(exif_, 2, 0x1111, 4050, 2);                          // a host field, wrong group
  defineWritten(exif_, host::exifPrimaryRows + 3, 0x2222, 5250, 2);  // an EXIF field, wrong group
  slot_.addText(4050, "a");
  slot_.addText(5250, "b");
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 1);
  EXPECT_EQ(ifd0.count, 1);
  EXPECT_EQ(ifd0.entries[0].tag, 0x8769);
  EXPECT_EQ(segment().directory(ifd0.entries[0].word, 0).count, 0);
}

TEST_F(SegmentBuilder, GpsRowsGoByTheirPlace) {
  defineWritten(gps_, 31, 0x001F, 5300, 2);
  slot_.addText(5331, "a");
  slot_.addText(5300, "b");
  build();
  const WrittenDirectory gps = segment().directory(26, 1);
  EXPECT_EQ(gps.count, 1) << "the row at the place of the second field has no type";
  EXPECT_EQ(gps.entries, (Entries{{0x001F, 2, 1, 'a'}}));
}

TEST_F(SegmentBuilder, TheRangesReachFromFirstToLastId) {
  defineWritten(exif_, host::exifPrimaryRows + 3, 0x1000, 4000, 2);
  defineWritten(exif_, host::exifPrimaryRows + 4, 0x1099, 4099, 2);
  defineWritten(exif_, 2, 0x2000, 5200, 2);
  defineWritten(exif_, 3, 0x2096, 5296, 2);
  for (const u16 id : {u16{4000}, u16{4099}, u16{5200}, u16{5296}}) slot_.addText(id, "x");
  build();
  EXPECT_EQ(segment().directory(8, 2).entries, (Entries{{0x1000, 2, 1, 'x'}, {0x1099, 2, 1, 'x'}}));
  EXPECT_EQ(segment().directory(50, 2).entries,
            (Entries{{0x2000, 2, 1, 'x'}, {0x2096, 2, 1, 'x'}}));
}

// Odd records.

TEST_F(SegmentBuilder, AnIdWithoutARowCountsInTheSizesAndGivesNoEntry) {
  slot_.addText(hostText, "Maker");
  slot_.addBlock(unknownHost, Bytes(100, 'i'));
  slot_.addText(exifText, "2010:12:02");
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 2);
  EXPECT_EQ(ifd0.count, 2);
  constexpr u32 directories = 10 + 4 + 18 + 3 * 12;
  EXPECT_EQ(ifd0.entries, (Entries{{0x010F, 2, 5, directories}, {0x8769, 4, 1, 38}}));
  EXPECT_EQ(segment().directory(38, 1).entries, (Entries{{0x9003, 2, 10, directories + 5}}));
  EXPECT_EQ(segment().text(directories, 15), "Maker2010:12:02");
  EXPECT_EQ(segment().block().size(), 4u + 6 + directories + 100 + 5 + 10);
}

TEST_F(SegmentBuilder, MoreThan255EntriesWrapTheCountOfTheFirstDirectory) {
  for (int index = 0; index < 300; ++index) {
    slot_.addNumber(hostShort, host::kindNumber16, static_cast<u64>(index));
  }
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 300);
  EXPECT_EQ(ifd0.count, 300 - 256) << "the high byte stays 0";
  EXPECT_EQ(ifd0.entries[299], (WrittenEntry{0x0112, 3, 1, 299})) << "all of them are there";
}

TEST_F(SegmentBuilder, TheCountsOfTheOtherDirectoriesAreWhole) {
  for (int index = 0; index < 300; ++index) {
    slot_.addNumber(exifShort, host::kindNumber16, static_cast<u64>(index));
    slot_.addNumber(gpsByte, host::kindNumber16, static_cast<u64>(index));
  }
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 2);
  EXPECT_EQ(segment().directory(ifd0.entries[0].word, 0).count, 300);
  EXPECT_EQ(segment().directory(ifd0.entries[1].word, 0).count, 300);
}

TEST_F(SegmentBuilder, ASegmentTooLongForItsLengthWordIsBuiltAllTheSame) {
  slot_.addText(hostText, std::string(70000, 'x'));
  build();
  const u32 tiffSize = 6 + 10 + 4 + 12 + 70000;
  EXPECT_EQ(segment().block().size(), tiffSize + 4);
  EXPECT_EQ(segment().block()[2], ((tiffSize + 2) >> 8) & 0xFF);
  EXPECT_EQ(segment().block()[3], (tiffSize + 2) & 0xFF);
}

TEST_F(SegmentBuilder, AFieldThatIsNoTextResetsTheIptcSizeAndNothingRunsOver) {
  slot_.addText(iptcText, "Title");
  slot_.addBlock(5602, {'a', 'b', 'c'});
  slot_.addText(exifText, "2010:12:02");
  build();
  const WrittenDirectory ifd0 = segment().directory(8, 2);
  EXPECT_EQ(ifd0.entries[0].count, 5u + 5 + 7) << "what the serialiser counts";
  const WrittenDirectory exif = segment().directory(ifd0.entries[1].word, 1);
  EXPECT_EQ(exif.entries[0].word, ifd0.entries[0].word + 17);
  EXPECT_EQ(segment().text(exif.entries[0].word, 10), "2010:12:02");
}

// Failures.

TEST_F(SegmentBuilder, ARefusedReservationAddsNothing) {
  slot_.addText(hostText, "Maker");
  the().refuseReservation = true;
  build(thumbnail);
  EXPECT_EQ(slot_.ids(), std::vector<int>{hostText});
  EXPECT_TRUE(slot_.unlocked());
}

TEST_F(SegmentBuilder, AReservationWithoutRoomAddsNothing) {
  slot_.addText(hostText, "Maker");
  the().reserveNothing = true;
  build(thumbnail);
  EXPECT_EQ(slot_.ids(), std::vector<int>{hostText});
}

TEST_F(SegmentBuilder, ASegmentThatNoMemoryHoldsIsNotBuilt) {
  slot_.addText(hostText, "Maker");
  slot_.addNumber(hostShort, host::kindNumber32, 6, 0, 0xFFFFFFF0);
  slot_.addNumber(hostShort, host::kindNumber32, 6, 0, 0xFFFFFFF0);
  build(thumbnail);
  EXPECT_EQ(slot_.ids(), (std::vector<int>{hostText, hostShort, hostShort}));
  EXPECT_TRUE(slot_.unlocked());
}

TEST_F(SegmentBuilder, SizesThatLieNeverReachOutsideTheBlock) {
  // Claimed sizes, with 8 bytes behind them and a prefix that says 1000.
  for (const u32 claimed : {0u, 3u, 4u, 5u, 8u, 9u, 12u, 13u, 400u}) {
    for (const u16 kind : {host::kindText, host::kindBlock, host::kindNumber32}) {
      PropertySlot slot;
      host::PropertyField field = {};
      field.fieldId = hostText;
      field.valueKind = kind;
      field.dataSize = claimed;
      slot.add(field, {0xE8, 3, 0, 0, 'a', 'b', 'c', 'd'});
      slot.addText(iptcText, "Title");
      exif::buildSegments(slot.address(), thumbnail, exif::XmpPlace::ownSegment);
      ASSERT_EQ(slot.fields().size(), 3u);
      const BuiltSegment built(slot.fields()[2]);
      const WrittenDirectory ifd0 = built.directory(8, 2);
      EXPECT_EQ(ifd0.count, 2);
      EXPECT_EQ(built.text(ifd0.entries[1].word + 5, 5), "Title");
      if (kind == host::kindNumber32) {
        platform::LockedGlobal lock(slot.handle());  // the block is not the record's
        auto* first = reinterpret_cast<host::PropertyField*>(lock.as<host::PropertyHeader>() + 1);
        GlobalFree(reinterpret_cast<HGLOBAL>(first[1].data));
      }
    }
  }
}

TEST_F(SegmentBuilder, ABlockWithoutDataIsAnEmptyField) {
  host::PropertyField field = {};
  field.fieldId = hostText;
  field.valueKind = host::kindText;
  field.dataSize = 50;
  slot_.add(field);
  field.valueKind = host::kindBlock;
  slot_.add(field);
  build();
  EXPECT_EQ(segment().directory(8, 2).entries, (Entries{{0x010F, 2, 1, 0}, {0x010F, 2, 1, 0}}));
}

// What a picture's writer asks for.

TEST_F(SegmentBuilder, OnlyARecordWithoutAnExifSegmentGetsOne) {
  exif::ensureSegments(slot_.address(), thumbnail);
  EXPECT_EQ(slot_.handle(), nullptr) << "no record, no segment";
  slot_.addText(hostText, "Maker");
  exif::ensureSegments(slot_.address(), thumbnail);
  EXPECT_EQ(slot_.ids(), (std::vector<int>{hostText, 5297}));
  exif::ensureSegments(slot_.address(), thumbnail);
  EXPECT_EQ(slot_.ids(), (std::vector<int>{hostText, 5297}));
}

}  // namespace

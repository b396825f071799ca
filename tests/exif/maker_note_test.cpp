// Maker notes: both header forms, byte orders, refused notes and entries.
#include "exif/maker_note.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;

class MakerNote : public ReaderTest {
 protected:
  bool decode(const Bytes& tiff, FileOrder order, host::u32 offset) {
    return exif::decodeMakerNote(readerOf(tiff, order), offset, slot_.address());
  }
  // A note without a header: a directory whose offsets count from the outer structure.
  static Bytes plainNote(FileOrder order, host::u16 count) {
    support::OrderedBytes out(order);
    out.pad(16);
    out.u16(count);
    for (host::u16 entry = 0; entry < count; ++entry) {
      out.u16(0x100u + entry);
      out.u16(3);
      out.u32(1);
      out.u16(entry);
      out.u16(0);
    }
    return out.bytes();
  }
};

TEST_F(MakerNote, ANoteWithoutAHeaderUsesTheOuterOrderAndOffsets) {
  for (const FileOrder order : bothOrders) {
    PropertySlot fresh;
    support::OrderedBytes out(order);
    out.append(Bytes{'x', 'V', 'a', 'l', 'u', 'e'});
    out.pad(16);
    out.u16(2);
    out.u16(0x0011);
    out.u16(2);
    out.u32(5);
    out.u32(1);
    out.u16(0x0022);
    out.u16(3);
    out.u32(1);
    out.u16(7);
    out.u16(0);
    const Bytes tiff = out.bytes();
    EXPECT_TRUE(exif::decodeMakerNote(readerOf(tiff, order), 16, fresh.address()));
    const std::vector<StoredField> fields = fresh.fields();
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[0].id(), 9000);
    EXPECT_EQ(fields[0].descriptor.valueKind, 5);
    EXPECT_EQ(fields[0].descriptor.sourceGroup, 2);
    EXPECT_EQ(fields[0].name(), "");
    EXPECT_EQ(fields[0].block,
              (Bytes{0x11, 0, 2, 0, 5, 0, 0, 0, 5, 0, 0, 0, 'V', 'a', 'l', 'u', 'e'}));
    EXPECT_EQ(fields[1].id(), 9001);
    EXPECT_EQ(fields[1].block, (Bytes{0x22, 0, 3, 0, 1, 0, 0, 0, 2, 0, 0, 0, 7, 0}));
  }
}

// A note with its own header, in the order that is not the outer one.
Bytes ownNote(FileOrder own, bool signedNote, host::u32 directory = 8) {
  TiffBuilder tiff(own);
  tiff.ifd0().longs(0x0033, {1, 2});
  Bytes note = tiff.build();
  const Bytes offset = bytesOfNumbers(own, 4, {directory});
  std::copy(offset.begin(), offset.end(), note.begin() + 4);
  if (signedNote)
    note = support::joined(support::bytesOf(std::string("Nikon\0\2\0\0\0", 10)), note);
  return support::joined(Bytes(20), note);
}

TEST_F(MakerNote, ANotesOwnHeaderGovernsOrderAndOffsets) {
  for (const FileOrder own : bothOrders) {
    for (const FileOrder outer : bothOrders) {
      for (const bool signedNote : {false, true}) {
        PropertySlot fresh;
        const Bytes tiff = ownNote(own, signedNote);
        EXPECT_TRUE(exif::decodeMakerNote(readerOf(tiff, outer), 20, fresh.address()));
        ASSERT_EQ(fresh.ids(), std::vector{9000});
        EXPECT_EQ(fresh.fields()[0].block, (Bytes{0x33, 0, 4, 0, 2, 0, 0, 0, 8, 0, 0, 0,  //
                                                  1,    0, 0, 0, 2, 0, 0, 0}));
      }
    }
  }
}

TEST_F(MakerNote, AHeaderThatDoesNotLeadTo8IsLeftAlone) {
  EXPECT_TRUE(decode(ownNote(FileOrder::little, false, 9), FileOrder::little, 20));
  EXPECT_TRUE(decode(ownNote(FileOrder::big, true, 0x08000000), FileOrder::little, 20));
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(MakerNote, TheCountIs1To300) {
  for (const host::u16 count : std::initializer_list<host::u16>{0, 301, 0xFFFF}) {
    EXPECT_FALSE(decode(plainNote(FileOrder::big, count), FileOrder::big, 16)) << count;
  }
  EXPECT_TRUE(the().calls.empty());
  EXPECT_TRUE(decode(plainNote(FileOrder::big, 300), FileOrder::big, 16));
  EXPECT_EQ(slot_.ids().size(), 300u);
  EXPECT_EQ(slot_.ids().back(), 9299);
  EXPECT_THAT(the().calls, testing::ElementsAre("Prop_ReAllocFieldSpace:304"));
}

TEST_F(MakerNote, ARefusedReservationStillGivesTrue) {
  the().refuseReservation = true;
  EXPECT_TRUE(decode(plainNote(FileOrder::little, 3), FileOrder::little, 16));
  EXPECT_EQ(slot_.handle(), nullptr);
}

TEST_F(MakerNote, SkippedEntriesKeepTheirNumbers) {
  TiffBuilder tiff;
  tiff.ifd0()
      .lying(1, 4, 0x80000000, 1)
      .lying(1, 4, 1, 0x80000000)
      .lying(1, 0, 1, 1)
      .lying(1, 13, 1, 1)
      .lying(1, 5, 1, 0x7FFFFFFF)
      .longs(1, {6})
      .lying(1, 5, 0x7FFFFFFF, 0)
      .longs(1, {8});
  EXPECT_TRUE(decode(tiff.build(), FileOrder::little, 8));
  EXPECT_EQ(slot_.ids(), (std::vector{9005, 9007}));
}

TEST_F(MakerNote, EveryPrefixIsReadWithinItsBounds) {
  for (const bool signedNote : {false, true}) {
    const Bytes whole = ownNote(FileOrder::big, signedNote);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Bytes prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      decode(prefix, FileOrder::little, 20);
    }
  }
  EXPECT_TRUE(slot_.ids().empty());
  EXPECT_FALSE(decode({}, FileOrder::little, 0xFFFFFFFF));
}

}  // namespace

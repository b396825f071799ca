// The walk through an EXIF segment: byte order, offsets, directories, the IPTC block.
#include "exif/walker.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;

constexpr host::u16 tagA = 0x010F;
constexpr host::u16 tagB = 0x9000;

class Walker : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    exif_.set(0, tagB, host::kindNumber32, 5200);
    exif_.set(71, tagA, host::kindNumber32, 4006);
    gps_.set(4, 0x0004, host::kindNumber32, 0);
    iptc_.set(1, 5, host::kindText, 5601);
  }

  bool walk(const Bytes& tiff) {
    const Bytes payload = exifPayload(tiff);
    return walkPayload(payload, static_cast<host::u32>(payload.size()));
  }
  bool walkPayload(const Bytes& payload, host::u32 length) {
    return exif::walkExif(payload, length, slot_.address());
  }
  static TiffBuilder allDirectories(FileOrder order) {
    TiffBuilder tiff(order);
    tiff.ifd0().longs(tagA, {1});
    tiff.exif().longs(tagB, {2});
    tiff.gps().longs(4, {3});
    tiff.ifd1().longs(tagA, {4});
    return tiff;
  }
};

TEST_F(Walker, Ifd0ThenExifThenGpsAreReadAndIfd1IsNot) {
  for (const FileOrder order : bothOrders) {
    PropertySlot fresh;
    const Bytes payload = exifPayload(allDirectories(order).build());
    EXPECT_TRUE(exif::walkExif(payload, static_cast<host::u32>(payload.size()), fresh.address()));
    const std::vector<StoredField> fields = fresh.fields();
    ASSERT_EQ(fields.size(), 3u);
    EXPECT_EQ(fresh.ids(), (std::vector{4006, 5200, 5304}));
    EXPECT_EQ(fields[0].number(), 1u);
    EXPECT_EQ(fields[1].number(), 2u);
    EXPECT_EQ(fields[2].number(), 3u);
  }
}

TEST_F(Walker, TheFirstByteAloneDecidesTheOrder) {
  Bytes tiff = allDirectories(FileOrder::big).build();
  tiff[1] = '?';
  tiff[2] = tiff[3] = 0x77;
  EXPECT_TRUE(walk(tiff));
  EXPECT_EQ(slot_.ids().size(), 3u) << "the second byte and 42 are not looked at";
  for (const host::u8 first : std::initializer_list<host::u8>{'I', 'X', '\0', 'm'}) {
    Bytes little = allDirectories(FileOrder::little).build();
    little[0] = first;
    PropertySlot fresh;
    const Bytes payload = exifPayload(little);
    EXPECT_TRUE(exif::walkExif(payload, 100, fresh.address()));
    EXPECT_EQ(fresh.ids().size(), 3u) << int{first};
  }
}

TEST_F(Walker, AnIfd0OffsetAtOrPastTheLengthRejectsTheSegment) {
  const Bytes payload = exifPayload(allDirectories(FileOrder::little).build());
  EXPECT_FALSE(walkPayload(payload, 8));
  EXPECT_FALSE(walkPayload(payload, 0));
  EXPECT_TRUE(the().calls.empty());
  EXPECT_TRUE(walkPayload(payload, 9)) << "no other offset is checked against the length";
  EXPECT_EQ(slot_.ids().size(), 3u);
}

TEST_F(Walker, APayloadWithoutAHeaderIsRejected) {
  const Bytes payload = exifPayload(allDirectories(FileOrder::little).build());
  for (std::size_t size = 0; size < 14; ++size) {
    EXPECT_FALSE(walkPayload(
        Bytes(payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(size)), 1000))
        << size;
  }
}

// With an IFD0 offset of 0 the count is the byte-order mark and the second entry begins at 14.
Bytes withoutIfd0(host::u16 pointerTag, host::u32 target) {
  support::OrderedBytes out(FileOrder::little);
  out.append(support::bytesOf("II"));
  out.u16(42);
  out.u32(0);
  out.pad(14);
  out.u16(pointerTag);
  out.u16(4);
  out.u32(1);
  out.u32(target);
  out.u16(1);
  out.u16(tagB);
  out.u16(4);
  out.u32(1);
  out.u32(77);
  out.u32(0);
  return out.bytes();
}

TEST_F(Walker, AnIfd0OffsetOfZeroLeavesOnlyTheSubDirectories) {
  exif_.set(1, 0x8769, host::kindNumber32, 5299);
  EXPECT_TRUE(walk(withoutIfd0(0x8769, 26)));
  ASSERT_EQ(slot_.ids(), std::vector{5200});
  EXPECT_EQ(slot_.fields()[0].number(), 77u);
}

TEST_F(Walker, AnIfd0OffsetOfZeroWithoutAPointerRejectsTheSegment) {
  EXPECT_FALSE(walk(withoutIfd0(0x1234, 26)));
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(Walker, AnIfd0OffsetOfZeroWithAGpsPointerReadsGps) {
  gps_.set(9, tagB, host::kindNumber32, 0);
  EXPECT_TRUE(walk(withoutIfd0(0x8825, 26)));
  EXPECT_EQ(slot_.ids(), std::vector{5309});
}

TEST_F(Walker, AMakerNoteInIfd0IsAnEntryLikeOthers) {
  exif_.set(1, 0x927C, host::kindNumber32, 5207);
  TiffBuilder tiff;
  tiff.ifd0().longs(0x927C, {4});
  tiff.exif().longs(tagB, {2});
  EXPECT_TRUE(walk(tiff.build()));
  EXPECT_EQ(slot_.ids(), (std::vector{5207, 5200}));
}

TEST_F(Walker, PointersAre32BitNumbersWhateverTheirTypeAndTheLastOneCounts) {
  TiffBuilder tiff(FileOrder::big);
  tiff.exif().longs(tagB, {2});
  Bytes reference = tiff.build();  // the pointer is the last entry of IFD0
  const host::u32 exifAt = host::u32{reference[8 + 2 + 11]};
  TiffBuilder typed(FileOrder::big);
  typed.ifd0().lying(0x8769, 4, 1, 0xFFFFFF).lying(0x8769, 3, 1, exifAt + 12);
  Bytes bytes = typed.build();
  bytes.insert(bytes.begin() + 8 + 2 + 24 + 4, reference.begin() + exifAt, reference.end());
  ASSERT_EQ(exifAt + 12, 8u + 2 + 24 + 4);
  EXPECT_TRUE(walk(bytes));
  EXPECT_EQ(slot_.ids(), std::vector{5200});
}

TEST_F(Walker, PointersOutsideOrToZeroAreHarmless) {
  TiffBuilder tiff;
  tiff.ifd0().longs(tagA, {1}).lying(0x8769, 4, 1, 0xFFFFFFF0).lying(0x8825, 4, 1, 0xFFFFFFFF);
  EXPECT_TRUE(walk(tiff.build()));
  EXPECT_EQ(slot_.ids(), std::vector{4006});
  TiffBuilder zero;
  zero.ifd0().longs(tagA, {1}).lying(0x8769, 4, 1, 0).lying(0x8825, 4, 1, 0);
  the().calls.clear();
  EXPECT_TRUE(walk(zero.build()));
  EXPECT_THAT(the().calls, testing::ElementsAre("Prop_ReAllocFieldSpace:7"));
}

TEST_F(Walker, ADirectoryThatPointsToItselfEnds) {
  TiffBuilder tiff;
  tiff.ifd0().longs(tagA, {1}).lying(0x8769, 4, 1, 8).lying(0x8825, 4, 1, 8).claimNext(8);
  gps_.set(0, tagA, host::kindNumber32, 0);
  EXPECT_TRUE(walk(tiff.build()));
  EXPECT_EQ(slot_.ids(), (std::vector{4006, 4006, 5300}));
}

TEST_F(Walker, AFailureInOneDirectoryDoesNotStopTheOthers) {
  TiffBuilder tiff = allDirectories(FileOrder::little);
  const Bytes payload = exifPayload(tiff.build());
  the().refuseReservations = 1;
  EXPECT_TRUE(walkPayload(payload, 100));
  EXPECT_EQ(slot_.ids(), (std::vector{5200, 5304}));
}

// The IPTC block.

const Bytes dataset = {0x1C, 2, 5, 0, 3, 'a', 'b', 'c'};

TEST_F(Walker, AnIptcEntryIsDecodedByItsCountInBytes) {
  for (const FileOrder order : bothOrders) {
    PropertySlot fresh;
    TiffBuilder tiff(order);
    Bytes value = support::joined(dataset, dataset);
    value = support::joined(value, support::joined(dataset, dataset));
    tiff.ifd0().add(0x83BB, 4, 8, value);  // 32 bytes as eight LONGs
    const Bytes payload = exifPayload(tiff.build());
    EXPECT_TRUE(exif::walkExif(payload, 100, fresh.address()));
    EXPECT_EQ(fresh.ids(), std::vector{5601}) << "a quarter of it";
    TiffBuilder undefined(order);
    undefined.ifd0().undefined(0x83BB, value);
    PropertySlot all;
    const Bytes whole = exifPayload(undefined.build());
    EXPECT_TRUE(exif::walkExif(whole, 100, all.address()));
    EXPECT_EQ(all.ids(), std::vector(4, 5601));
    EXPECT_EQ(all.fields()[0].text(), "abc");
  }
}

TEST_F(Walker, AnIptcCountOf5OrLessIsIgnored) {
  const Bytes shortest = {0x1C, 2, 5, 0, 1, 'a'};
  TiffBuilder ignored;
  ignored.ifd0().add(0x83BB, 7, 5, shortest);
  EXPECT_TRUE(walk(ignored.build()));
  EXPECT_TRUE(slot_.ids().empty());
  TiffBuilder read;
  read.ifd0().undefined(0x83BB, shortest);
  EXPECT_TRUE(walk(read.build()));
  EXPECT_EQ(slot_.ids(), std::vector{5601});
}

TEST_F(Walker, TheExifDirectorysIptcEntryReplacesThatOfIfd0AndComesLast) {
  TiffBuilder tiff;
  tiff.ifd0().undefined(0x83BB, {0x1C, 2, 5, 0, 1, 'a'});
  tiff.exif().undefined(0x83BB, {0x1C, 2, 5, 0, 1, 'b'}).longs(tagB, {2});
  tiff.gps().longs(4, {3});
  EXPECT_TRUE(walk(tiff.build()));
  EXPECT_EQ(slot_.ids(), (std::vector{5200, 5304, 5601}));
  EXPECT_EQ(slot_.fields()[2].text(), "b");
}

TEST_F(Walker, AnIptcBlockIsReadAsFarAsTheFileReaches) {
  TiffBuilder tiff;
  tiff.ifd0().lying(0x83BB, 7, 0x7FFFFFFF, 26);
  Bytes bytes = tiff.build();
  ASSERT_EQ(bytes.size(), 26u);
  EXPECT_TRUE(walk(support::joined(bytes, dataset)));
  EXPECT_EQ(slot_.ids(), std::vector{5601});
  TiffBuilder outside;
  outside.ifd0().lying(0x83BB, 7, 100, 0x7FFFFFFF);
  EXPECT_TRUE(walk(outside.build()));
  EXPECT_EQ(slot_.ids().size(), 1u);
}

// Offsets lead behind the segment, into whatever the file holds there.
TEST_F(Walker, ValuesBehindTheSegmentAreReadFromTheFile) {
  exif_.set(2, 0x0131, host::kindText, 4019);
  TiffBuilder tiff;
  tiff.ifd0().lying(0x0131, 2, 6, 26);
  const Bytes payload = exifPayload(support::joined(tiff.build(), support::bytesOf("behind")));
  EXPECT_TRUE(walkPayload(payload, 32));
  ASSERT_EQ(slot_.fields().size(), 1u);
  EXPECT_EQ(slot_.fields()[0].text(), "behind");
}

TEST_F(Walker, EveryPrefixIsReadWithinItsBounds) {
  for (int kind = 0; kind < 3; ++kind) {
    for (host::u16 row = 5; row < 17; ++row) {
      exif_.set(row, row, kind == 0 ? host::kindBlock : host::kindText, 5205);
    }
    for (const FileOrder order : bothOrders) {
      TiffBuilder tiff(order);
      for (host::u16 type = 1; type < 13; ++type) {
        tiff.ifd0().lying(static_cast<host::u16>(4 + type), type, 9, 60u + type);
        tiff.exif().lying(static_cast<host::u16>(4 + type), type, 0x7FFFFFFF, 60);
        tiff.gps().lying(4, type, 3, 60);
      }
      tiff.ifd0().undefined(0x83BB, support::joined(dataset, dataset));
      const Bytes whole = exifPayload(tiff.build());
      for (std::size_t size = 0; size <= whole.size(); ++size) {
        // A block of exactly that size, so that a sanitizer sees a read behind it.
        const std::vector<host::u8> prefix(whole.begin(),
                                           whole.begin() + static_cast<std::ptrdiff_t>(size));
        PropertySlot fresh;
        exif::walkExif(prefix, static_cast<host::u32>(whole.size()), fresh.address());
        EXPECT_TRUE(fresh.unlocked());
      }
    }
  }
}

TEST_F(Walker, EveryByteMayLie) {
  const Bytes whole = exifPayload(allDirectories(FileOrder::little).build());
  for (std::size_t at = 6; at < whole.size(); ++at) {
    for (const host::u8 value : std::initializer_list<host::u8>{0x00, 0x7F, 0x80, 0xFF, 'M'}) {
      Bytes changed = whole;
      changed[at] = value;
      PropertySlot fresh;
      exif::walkExif(changed, static_cast<host::u32>(changed.size()), fresh.address());
      EXPECT_LE(fresh.fields().size(), 600u);
    }
  }
}

}  // namespace

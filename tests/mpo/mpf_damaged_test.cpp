// Reading multi-picture segments that lie.
#include <gmock/gmock.h>

#include "tests/mpo/mpf_parse_fixture.h"

namespace {

using namespace test;

TEST(MpfDamaged, AFirstIfdOffsetOfZeroOrPastTheSegmentIsNothing) {
  const Bytes good = indexOf({{0x00020002}});
  for (const u32 offset : {0u, static_cast<u32>(good.size()), 0xFFFFFFFFu, 0x10000u}) {
    Bytes segment = good;
    std::memcpy(segment.data() + 4, &offset, 4);
    Parsed parsed;
    EXPECT_EQ(parsed.parse(segment), 0u);
    EXPECT_EQ(+parsed.list.imageCount, 0u);
  }
}

TEST(MpfDamaged, CountsDecideWhatIsDecoded) {
  const struct {
    u32 count, stored;
    bool array, decoded;
  } rows[] = {{0, 0, false, false},   {1, 1, true, true},       {127, 127, true, true},
              {128, 127, true, true}, {65535, 127, true, true}, {0xFFFFFFFF, 127, true, true}};
  for (const auto& row : rows) {
    Parsed parsed;
    MpfBuilder mpf(ByteOrder::little);
    std::vector<MpImage> images(127, {0x00020002, 5});
    mpf.ifd().number(mpf::imageCount, row.count).images(images);
    EXPECT_EQ(parsed.parse(mpf.build()), 0u);
    EXPECT_EQ(+parsed.list.imageCount, row.stored);
    EXPECT_EQ(+parsed.list.totalFrames, row.stored);
    EXPECT_EQ(parsed.list.entries != 0, row.array);
    EXPECT_EQ(+parsed.list.kind, row.decoded ? 4u : 0u);
    EXPECT_EQ(+parsed.entries[126].size, row.stored == 127 ? 5u : 0u);
  }
}

TEST(MpfDamaged, ACountThatTheTableDoesNotHoldLeavesTheArrayEmpty) {
  Parsed parsed;
  std::memset(parsed.entries, 0x77, sizeof parsed.entries);
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(mpf::imageCount, 100).images({{0x00020002, 5}});
  EXPECT_EQ(parsed.parse(mpf.build()), 0u);
  EXPECT_EQ(+parsed.list.imageCount, 100u);
  const MpoEntry zero = {};
  EXPECT_EQ(std::memcmp(&parsed.entries[99], &zero, sizeof zero), 0) << "zeroed";
  EXPECT_EQ(+parsed.entries[100].size, 0x77777777u) << "no more than count entries";
}

TEST(MpfDamaged, AnArrayThatExistsIsNotZeroedAgain) {
  Parsed parsed;
  parsed.parse(indexOf({{}, {}}));
  parsed.entries[1].imageNumber = 42;
  parsed.parse(indexOf({{0, 9}, {0, 8}}));
  EXPECT_EQ(+parsed.entries[1].imageNumber, 42);
  EXPECT_EQ(+parsed.entries[1].size, 8u);
}

TEST(MpfDamaged, IfdsThatComeBackEndTheParse) {
  for (const std::size_t next : {8u, 9u}) {
    MpfBuilder mpf(ByteOrder::little);
    mpf.ifd().number(mpf::imageCount, 1);
    Bytes segment = mpf.build();
    segment[8 + 2 + 12] = static_cast<host::u8>(next);
    Parsed parsed;
    EXPECT_EQ(parsed.parse(segment), 0u);
    EXPECT_EQ(+parsed.list.imageCount, 1u);
  }
}

TEST(MpfDamaged, IfdsThatLieOverEachOtherAreNotWalkedForEver) {
  // Thousands of IFDs, each claiming thousands of entries that name a full table.
  Bytes segment(65000, 0);
  const auto put16 = [&](std::size_t at, u32 value) {
    segment[at] = static_cast<host::u8>(value);
    segment[at + 1] = static_cast<host::u8>(value >> 8);
  };
  segment[0] = segment[1] = 'I';
  put16(4, 8);
  for (std::size_t at = 8; at + 12 <= segment.size(); at += 12) {
    put16(at, 5000);
    put16(at + 2, mpf::entryTable);
    put16(at + 10, 16);
  }
  Parsed parsed;
  parsed.list.imageCount = 127;
  EXPECT_EQ(parsed.parse(segment), 0u);
}

TEST(MpfDamaged, EveryPrefixOfASegmentIsReadWithinItsBounds) {
  for (const ByteOrder order : {ByteOrder::little, ByteOrder::big}) {
    MpfBuilder mpf(order);
    mpf.ifd().number(mpf::version, 1).number(mpf::imageCount, 3);
    mpf.images({{0, 1, 2, 2, 3}, {child}, {child}}).uids(3).number(mpf::totalFrames, 1);
    mpf.ifd().number(mpf::individualNumber, 1).ratio(mpf::baseline, 1, 2).ratio(mpf::yaw, 3, 4);
    const Bytes whole = mpf.build();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      Parsed parsed;
      const u32 result =
          parsed.parse(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
      EXPECT_TRUE(result == 0 || result == noEntry);
      EXPECT_LE(+parsed.list.imageCount, 3u);
    }
  }
}

TEST(MpfDamaged, EverySingleByteMayLie) {
  MpfBuilder mpf(ByteOrder::big);
  mpf.ifd().number(mpf::imageCount, 2).images({{0, 1, 2, 2, 0}, {child}}).uids(2);
  mpf.ifd().number(mpf::individualNumber, 1).ratio(mpf::baseline, 1, 2);
  const Bytes whole = mpf.build();
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      Bytes segment = whole;
      segment[at] = static_cast<host::u8>(value);
      Parsed parsed;
      parsed.parse(segment);
      EXPECT_LE(+parsed.list.imageCount, 127u);
    }
  }
}

// Found by the fuzzer. The guard behind the entries tells when one too many is cleared.
TEST(MpfDamaged, AListThatCountsMoreImagesThanItHoldsIsFilledUpToItsEnd) {
  const Bytes table = {'M', 'M', 0, 42, 0,  0, 0, 8, 0,  1, 0xB0, 2, 0,
                       7,   0,   0, 0,  32, 0, 0, 0, 26, 0, 0,    0, 0};
  Parsed parsed;
  parsed.list.imageCount = 200;
  parsed.entries[host::mpoMostImages - 1].size = 5;
  EXPECT_EQ(parsed.parse(table), mpo::mpfParsed);
  EXPECT_EQ(+parsed.entries[host::mpoMostImages - 1].size, 0U);
}

}  // namespace

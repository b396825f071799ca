// Reading the multi-picture segment: order of the array, dependents, attributes, and files that
// lie.
#include <gmock/gmock.h>

#include <cstring>
#include <memory>

#include "mpo/mpf_segment.h"
#include "tests/support/mpf_builder.h"

namespace {

using host::i32;
using host::MpoAttributes;
using host::MpoEntry;
using host::MpoList;
using host::u32;
using support::ByteOrder;
using support::Bytes;
using support::MpfBuilder;
using support::MpImage;
namespace mpf = support::mpf;

constexpr u32 noEntry = 0x80004005;
constexpr u32 child = 0x40000000;
constexpr u32 base = 1000;

// The list and the array as they lie in a record, with bytes behind them that nobody may touch.
class Parsed {
 public:
  Parsed() { std::memset(guard_, 0x5A, sizeof guard_); }
  ~Parsed() {
    for (const host::u8 byte : guard_) EXPECT_EQ(byte, 0x5A);
  }

  u32 parse(const Bytes& segment, u32 imageIndex = 0) {
    // A copy of exactly that size, so that reading past it is noticed.
    const std::unique_ptr<host::u8[]> exact(new host::u8[segment.size() + 1]);
    if (!segment.empty()) std::memcpy(exact.get(), segment.data(), segment.size());
    return mpo::MpfParseSegment(imageIndex, {list, entries}, {exact.get(), segment.size()}, base);
  }

  MpoList list = {};
  MpoEntry entries[host::mpoMostImages] = {};

 private:
  host::u8 guard_[64];
};

Bytes indexOf(const std::vector<MpImage>& images, ByteOrder order = ByteOrder::little) {
  MpfBuilder mpf(order);
  mpf.ifd().number(mpf::imageCount, static_cast<u32>(images.size())).images(images);
  return mpf.build();
}

Bytes attributesOf(const std::function<void(MpfBuilder&)>& fill, ByteOrder order) {
  MpfBuilder mpf(order);
  mpf.ifd().number(mpf::imageCount, 1).images({{}});
  mpf.ifd();
  fill(mpf);
  return mpf.build();
}

class MpfParseOrders : public testing::TestWithParam<ByteOrder> {};
INSTANTIATE_TEST_SUITE_P(BothOrders, MpfParseOrders,
                         testing::Values(ByteOrder::little, ByteOrder::big));

TEST_P(MpfParseOrders, TheIndexFillsTheListAndTheArray) {
  Parsed parsed;
  MpfBuilder mpf(GetParam());
  mpf.ifd().number(mpf::version, 0x30313030).number(mpf::imageCount, 2);
  mpf.images({{0x20020002, 500, 7, 2, 0}, {0x00020002, 600, 490, 0, 0}});
  mpf.number(mpf::totalFrames, 9);
  EXPECT_EQ(parsed.parse(mpf.build()), 0u);
  EXPECT_EQ(+parsed.list.kind, 4u);
  EXPECT_EQ(+parsed.list.version, 0x30313030u) << "in the segment's order";
  EXPECT_EQ(+parsed.list.imageCount, 2u);
  EXPECT_EQ(+parsed.list.totalFrames, 9u);
  EXPECT_EQ(+parsed.list.entries, reinterpret_cast<host::u64>(parsed.entries));
  const MpoEntry& first = parsed.entries[0];
  EXPECT_EQ(+first.representative, 1u);
  EXPECT_EQ(+first.dependentParent, 0u);
  EXPECT_EQ(+first.dependentChild, 0u);
  EXPECT_EQ(+first.dataFormat, 0);
  EXPECT_EQ(+first.typeClass, 2u);
  EXPECT_EQ(+first.typeSubCode, 2u);
  EXPECT_EQ(+first.size, 500u);
  EXPECT_EQ(+first.fileOffset, 7u) << "the first entry's offset is never rebased";
  EXPECT_EQ(+first.flags, 0u);
  EXPECT_EQ(+parsed.entries[1].fileOffset, 490u + base);
  EXPECT_EQ(+parsed.entries[1].size, 600u);
}

TEST_P(MpfParseOrders, EveryAttributeHasItsPlaceAndItsFlag) {
  struct Row {
    host::u16 tag;
    std::size_t member;
    bool ratio;
    u32 flag;
  };
  const Row rows[] = {
      {0xB201, offsetof(MpoAttributes, panOrientation), false, 0x80000000},
      {0xB202, offsetof(MpoAttributes, panOverlapHorizontal), true,
       0},  // kept: stored, not flagged
      {0xB203, offsetof(MpoAttributes, panOverlapVertical), true, 0x20000000},
      {0xB204, offsetof(MpoAttributes, baseViewpoint), false, 0x10000000},
      {0xB205, offsetof(MpoAttributes, convergenceAngle), true, 0x08000000},
      {0xB206, offsetof(MpoAttributes, baselineLength), true, 0x04000000},
      {0xB207, offsetof(MpoAttributes, verticalDivergence), true, 0x02000000},
      {0xB208, offsetof(MpoAttributes, axisDistanceX), true, 0x01000000},
      {0xB209, offsetof(MpoAttributes, axisDistanceY), true, 0x00800000},
      {0xB20A, offsetof(MpoAttributes, axisDistanceZ), true, 0x00400000},
      {0xB20B, offsetof(MpoAttributes, yawAngle), true, 0x00200000},
      {0xB20C, offsetof(MpoAttributes, pitchAngle), true, 0x00100000},
      {0xB20D, offsetof(MpoAttributes, rollAngle), true, 0x00080000},
  };
  for (const Row& row : rows) {
    Parsed parsed;
    const Bytes segment = attributesOf(
        [&](MpfBuilder& mpf) {
          if (row.ratio) {
            mpf.ratio(row.tag, 0xFFFFFFF6, 1000);
          } else {
            mpf.number(row.tag, 0x12345678);
          }
        },
        GetParam());
    EXPECT_EQ(parsed.parse(segment), 0u);
    MpoAttributes expected = {};
    const u32 words[] = {row.ratio ? 0xFFFFFFF6 : 0x12345678, 1000};
    std::memcpy(reinterpret_cast<host::u8*>(&expected) + row.member, words, row.ratio ? 8 : 4);
    EXPECT_EQ(std::memcmp(&parsed.entries[0].attributes, &expected, sizeof expected), 0)
        << std::hex << row.tag;
    EXPECT_EQ(+parsed.entries[0].flags, row.flag) << std::hex << row.tag;
  }
}

TEST_P(MpfParseOrders, TheIndividualNumberCountsFromZeroAndZeroIsNone) {
  for (const auto& [written, stored] : {std::pair{1u, 0}, std::pair{5u, 4}, std::pair{0u, -1}}) {
    Parsed parsed;
    parsed.parse(attributesOf([&](MpfBuilder& mpf) { mpf.number(mpf::individualNumber, written); },
                              GetParam()));
    EXPECT_EQ(+parsed.entries[0].imageNumber, stored);
    EXPECT_EQ(+parsed.entries[0].flags, 0x00020000u);
  }
}

TEST_P(MpfParseOrders, ALaterImagesSegmentFillsItsEntry) {
  Parsed parsed;
  parsed.parse(indexOf({{}, {}, {}}, GetParam()));
  EXPECT_EQ(parsed.parse(support::laterMpf(GetParam(), 3, 0x31303030), 2), 0u);
  EXPECT_EQ(+parsed.list.version, 0u) << "the list has the first image's version";
  EXPECT_EQ(+parsed.entries[2].version, 0x31303030u);
  EXPECT_EQ(+parsed.entries[2].imageNumber, 2);
  EXPECT_EQ(+parsed.entries[2].attributes.baselineLength.numerator, 77u);
  EXPECT_EQ(+parsed.entries[2].attributes.baselineLength.denominator, 1000u);
  EXPECT_EQ(+parsed.entries[2].flags, 0x04030000u);
  EXPECT_EQ(+parsed.entries[1].flags, 0u);
}

TEST(MpfParse, WhateverIsNotIiIsBigEndianAnd42IsNotLookedAt) {
  for (const auto& [first, second] : {std::pair{'M', 'M'}, {'X', 'Y'}, {'I', 'M'}, {'\0', '\0'}}) {
    Bytes segment = indexOf({{0x00020003}}, ByteOrder::big);
    segment[0] = static_cast<host::u8>(first);
    segment[1] = static_cast<host::u8>(second);
    segment[3] = 99;
    Parsed parsed;
    EXPECT_EQ(parsed.parse(segment), 0u);
    EXPECT_EQ(+parsed.list.kind, 5u);
  }
}

TEST(MpfParse, TypesAndCountsOfEntriesAreNotLookedAt) {
  Bytes segment = indexOf({{0x00020003}});
  for (const std::size_t entry : {10u, 22u}) {
    for (std::size_t byte = 2; byte < 8; ++byte) segment[entry + byte] = 0xEE;
  }
  Parsed parsed;
  parsed.parse(segment);
  EXPECT_EQ(+parsed.list.kind, 5u);
}

TEST(MpfParse, TheKindComesFromTheFirstEntry) {
  const struct {
    u32 attribute, kind;
  } rows[] = {{0x00010001, 1}, {0x00010002, 2}, {0x00010003, 0}, {0x00020001, 3}, {0x00020002, 4},
              {0x00020003, 5}, {0x00020004, 0}, {0x00030000, 6}, {0x0003000F, 6}, {0x00000000, 0},
              {0x00040001, 0}, {0x00000002, 0}, {0xE7F2FFF2, 4}, {0x00120012, 4}};
  for (const auto& row : rows) {
    Parsed parsed;
    parsed.parse(indexOf({{row.attribute}, {0x00020001}}));
    EXPECT_EQ(+parsed.list.kind, row.kind) << std::hex << row.attribute;
  }
}

TEST(MpfParse, FlagsFormatClassAndSubCodeAreCutOutOfTheAttribute) {
  Parsed parsed;
  parsed.parse(indexOf({{0xA7F2FFF3}}));
  const MpoEntry& entry = parsed.entries[0];
  EXPECT_EQ(+entry.dependentParent, 1u);
  EXPECT_EQ(+entry.dependentChild, 0u);
  EXPECT_EQ(+entry.representative, 1u);
  EXPECT_EQ(+entry.dataFormat, 7);
  EXPECT_EQ(+entry.typeClass, 2u) << "the low four bits of eight";
  EXPECT_EQ(+entry.typeSubCode, 3u) << "the low four bits of sixteen";
}

TEST(MpfParse, IndependentImagesComeFirstThenTheChildren) {
  Parsed parsed;
  // File order: parent of 2 and 4, child, independent, child, parent of 6, child.
  parsed.parse(indexOf({{0x80000000, 1, 10, 2, 4},
                        {child, 2, 20, 0, 1},
                        {0, 3, 30, 3, 0},
                        {child, 4, 40, 0, 0},
                        {0x80000000, 5, 50, 6, 0},
                        {child, 6, 60, 5, 300}}));
  std::vector<u32> sizes, offsets;
  std::vector<std::pair<i32, i32>> dependents;
  for (int i = 0; i < 6; ++i) {
    sizes.push_back(+parsed.entries[i].size);
    offsets.push_back(+parsed.entries[i].fileOffset);
    dependents.emplace_back(+parsed.entries[i].dependent1, +parsed.entries[i].dependent2);
  }
  EXPECT_THAT(sizes, testing::ElementsAre(1, 3, 5, 2, 4, 6));
  EXPECT_THAT(offsets, testing::ElementsAre(10, 1030, 1050, 1020, 1040, 1060));
  const std::vector<std::pair<i32, i32>> expected = {
      {3, 4},             // the children's array positions
      {0, -1},            // entry 3 is no child; 0 is none
      {5, -1},  {-1, 1},  // a child's numbers stay as they stand
      {-1, -1}, {5, 300}};
  EXPECT_EQ(dependents, expected);
}

TEST(MpfParse, ADependentNumberAboveTheMapReadsAsZero) {
  Parsed parsed;
  parsed.parse(indexOf({{0, 0, 0, 255, 256}, {0, 0, 0, 65535, 128}}));
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(+parsed.entries[i].dependent1, 0);
    EXPECT_EQ(+parsed.entries[i].dependent2, 0);
  }
}

TEST(MpfParse, TheFirstInFileOrderIsNotRebasedEvenAsAChild) {
  Parsed parsed;
  parsed.parse(indexOf({{child, 0, 55}, {0, 0, 66}}));
  EXPECT_EQ(+parsed.entries[0].fileOffset, 66u + base);
  EXPECT_EQ(+parsed.entries[1].fileOffset, 55u);
}

TEST(MpfParse, IdentifiersGoByFileOrderWhateverTheArraysOrder) {
  Parsed parsed;
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(mpf::imageCount, 2).images({{child}, {}}).uids(2);
  EXPECT_EQ(parsed.parse(mpf.build()), 0u);
  EXPECT_EQ(+parsed.entries[0].dependentChild, 0u);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(std::string(parsed.entries[i].uid, parsed.entries[i].uid + 33),
              std::string(33, static_cast<char>('a' + i)));
    EXPECT_EQ(+parsed.entries[i].flags, 0x00040000u);
    EXPECT_EQ(+parsed.entries[i].gap196[0], 0);
  }
}

TEST(MpfParse, IdentifiersInFrontOfTheTableAreIgnored) {
  Parsed parsed;
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(mpf::imageCount, 1).uids(1).images({{}});
  EXPECT_EQ(parsed.parse(mpf.build()), 0u);
  EXPECT_EQ(+parsed.entries[0].flags, 0u);
  EXPECT_EQ(+parsed.entries[0].uid[0], 0);
}

TEST(MpfParse, ATableThatEndsExactlyWithTheSegmentIsIgnored) {
  for (const std::size_t tail : {0u, 1u}) {
    Parsed parsed;
    MpfBuilder mpf(ByteOrder::little);
    mpf.ifd().number(mpf::imageCount, 2).images({{0x00020002, 1}, {0, 2}}).tail(tail);
    EXPECT_EQ(parsed.parse(mpf.build()), 0u);
    EXPECT_EQ(+parsed.list.imageCount, 2u) << "the count stays as read";
    EXPECT_NE(+parsed.list.entries, 0u) << "the array exists either way";
    EXPECT_EQ(+parsed.list.kind, tail == 0 ? 0u : 4u);
    EXPECT_EQ(+parsed.entries[1].size, tail == 0 ? 0u : 2u);
  }
}

TEST(MpfParse, IdentifiersThatEndExactlyWithTheSegmentAreIgnored) {
  for (const std::size_t tail : {0u, 1u}) {
    Parsed parsed;
    MpfBuilder mpf(ByteOrder::little);
    mpf.ifd().number(mpf::imageCount, 2).images({{}, {}}).uids(2).tail(tail);
    parsed.parse(mpf.build());
    EXPECT_EQ(+parsed.entries[1].flags, tail == 0 ? 0u : 0x00040000u);
  }
}

TEST(MpfParse, TotalFramesAreTheCountUnlessSaid) {
  const auto framesOf = [](const std::function<void(MpfBuilder&)>& fill) {
    Parsed parsed;
    MpfBuilder mpf(ByteOrder::little);
    mpf.ifd();
    fill(mpf);
    parsed.parse(mpf.build());
    return parsed.list.totalFrames;
  };
  EXPECT_EQ(framesOf([](auto& mpf) { mpf.number(mpf::imageCount, 3); }), 3u);
  EXPECT_EQ(framesOf([](auto& m) { m.number(mpf::imageCount, 3).number(mpf::totalFrames, 8); }),
            8u);
  EXPECT_EQ(framesOf([](auto& m) { m.number(mpf::totalFrames, 8).number(mpf::imageCount, 3); }),
            8u);
  EXPECT_EQ(framesOf([](auto& m) { m.number(mpf::imageCount, 3).number(mpf::totalFrames, 0); }),
            0u);
}

TEST(MpfParse, TheListsVersionIsTheLastRead) {
  Parsed parsed;
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(mpf::version, 1).number(mpf::imageCount, 1).images({{}});
  mpf.ifd().number(mpf::version, 2);
  parsed.parse(mpf.build());
  EXPECT_EQ(+parsed.list.version, 2u);
  EXPECT_EQ(+parsed.entries[0].version, 0u);
  EXPECT_EQ(+parsed.entries[0].flags, 0u);
}

TEST(MpfParse, AttributesWithoutAnEntryAreDroppedAndSaidSo) {
  for (const auto& fill : std::vector<std::function<void(MpfBuilder&)>>{
           [](auto& m) { m.number(mpf::individualNumber, 1); },
           [](auto& m) { m.number(mpf::viewpoint, 1); },
           [](auto& m) { m.ratio(mpf::roll, 1, 2); },
       }) {
    Parsed parsed;
    MpfBuilder mpf(ByteOrder::little);
    mpf.ifd();
    fill(mpf);
    mpf.number(mpf::imageCount, 1).images({{0x00020002}});
    EXPECT_EQ(parsed.parse(mpf.build()), noEntry);
    EXPECT_EQ(+parsed.list.kind, 4u) << "parsing goes on";
    EXPECT_EQ(+parsed.entries[0].flags, 0u);
  }
  Parsed parsed;
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::big, 2), 1), noEntry);
}

TEST(MpfParse, TagsOfNoneAreIgnored) {
  Parsed parsed;
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(0xB005, 1).number(0xB20E, 2).number(0x010F, 3);
  EXPECT_EQ(parsed.parse(mpf.build()), 0u);
  const MpoList untouched = {};
  EXPECT_EQ(std::memcmp(&parsed.list, &untouched, sizeof untouched), 0);
}

TEST(MpfParse, AFirstIfdOffsetOfZeroOrPastTheSegmentIsNothing) {
  const Bytes good = indexOf({{0x00020002}});
  for (const u32 offset : {0u, static_cast<u32>(good.size()), 0xFFFFFFFFu, 0x10000u}) {
    Bytes segment = good;
    std::memcpy(segment.data() + 4, &offset, 4);
    Parsed parsed;
    EXPECT_EQ(parsed.parse(segment), 0u);
    EXPECT_EQ(+parsed.list.imageCount, 0u);
  }
}

TEST(MpfParse, CountsDecideWhatIsDecoded) {
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

TEST(MpfParse, ACountThatTheTableDoesNotHoldLeavesTheArrayEmpty) {
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

TEST(MpfParse, AnArrayThatExistsIsNotZeroedAgain) {
  Parsed parsed;
  parsed.parse(indexOf({{}, {}}));
  parsed.entries[1].imageNumber = 42;
  parsed.parse(indexOf({{0, 9}, {0, 8}}));
  EXPECT_EQ(+parsed.entries[1].imageNumber, 42);
  EXPECT_EQ(+parsed.entries[1].size, 8u);
}

TEST(MpfParse, AnImagePastTheArrayHasNoEntry) {
  Parsed parsed;
  parsed.parse(indexOf({{}}));
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::little, 1), 127), noEntry);
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::little, 1), 0xFFFFFFFF), noEntry);
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::little, 1), 126), 0u);
}

TEST(MpfParse, ARatioOutsideIsDroppedWithoutItsFlag) {
  for (const u32 beyond : {0u, 3u, 7u, 100u, 0xFFFFFF00u}) {
    MpfBuilder mpf(ByteOrder::little);
    mpf.ifd().number(mpf::imageCount, 1).images({{}}).number(mpf::baseline, 0).tail(0);
    Bytes segment = mpf.build();
    // The value word of the third entry.
    const u32 place = static_cast<u32>(segment.size()) - 7 + beyond;
    std::memcpy(segment.data() + 10 + 24 + 8, &place, 4);
    Parsed parsed;
    EXPECT_EQ(parsed.parse(segment), 0u);
    EXPECT_EQ(+parsed.entries[0].flags, 0u);
    EXPECT_EQ(+parsed.entries[0].attributes.baselineLength.numerator, 0u);
  }
}

TEST(MpfParse, IfdsThatComeBackEndTheParse) {
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

TEST(MpfParse, IfdsThatLieOverEachOtherAreNotWalkedForEver) {
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

TEST(MpfParse, EveryPrefixOfASegmentIsReadWithinItsBounds) {
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

TEST(MpfParse, EverySingleByteMayLie) {
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

}  // namespace

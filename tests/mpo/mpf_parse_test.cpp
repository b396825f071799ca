// Reading the multi-picture index: the list, the order of the array, dependents, identifiers.
#include <gmock/gmock.h>

#include "tests/mpo/mpf_parse_fixture.h"

namespace {

using namespace test;

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

}  // namespace

// Reading the attributes of an image: places, flags, and images that have no entry.
#include <gmock/gmock.h>

#include "tests/mpo/mpf_parse_fixture.h"

namespace {

using namespace test;

class MpfAttributesOrders : public testing::TestWithParam<ByteOrder> {};
INSTANTIATE_TEST_SUITE_P(BothOrders, MpfAttributesOrders,
                         testing::Values(ByteOrder::little, ByteOrder::big));

TEST_P(MpfAttributesOrders, EveryAttributeHasItsPlaceAndItsFlag) {
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

TEST_P(MpfAttributesOrders, TheIndividualNumberCountsFromZeroAndZeroIsNone) {
  for (const auto& [written, stored] : {std::pair{1u, 0}, std::pair{5u, 4}, std::pair{0u, -1}}) {
    Parsed parsed;
    const u32 number = written;
    parsed.parse(attributesOf([&](MpfBuilder& mpf) { mpf.number(mpf::individualNumber, number); },
                              GetParam()));
    EXPECT_EQ(+parsed.entries[0].imageNumber, stored);
    EXPECT_EQ(+parsed.entries[0].flags, 0x00020000u);
  }
}

TEST_P(MpfAttributesOrders, ALaterImagesSegmentFillsItsEntry) {
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

TEST(MpfAttributes, AttributesWithoutAnEntryAreDroppedAndSaidSo) {
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

TEST(MpfAttributes, TheListsVersionIsTheLastRead) {
  Parsed parsed;
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(mpf::version, 1).number(mpf::imageCount, 1).images({{}});
  mpf.ifd().number(mpf::version, 2);
  parsed.parse(mpf.build());
  EXPECT_EQ(+parsed.list.version, 2u);
  EXPECT_EQ(+parsed.entries[0].version, 0u);
  EXPECT_EQ(+parsed.entries[0].flags, 0u);
}

TEST(MpfAttributes, TagsOfNoneAreIgnored) {
  Parsed parsed;
  MpfBuilder mpf(ByteOrder::little);
  mpf.ifd().number(0xB005, 1).number(0xB20E, 2).number(0x010F, 3);
  EXPECT_EQ(parsed.parse(mpf.build()), 0u);
  const MpoList untouched = {};
  EXPECT_EQ(std::memcmp(&parsed.list, &untouched, sizeof untouched), 0);
}

TEST(MpfAttributes, ARatioOutsideIsDroppedWithoutItsFlag) {
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

TEST(MpfAttributes, AnImagePastTheArrayHasNoEntry) {
  Parsed parsed;
  parsed.parse(indexOf({{}}));
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::little, 1), 127), noEntry);
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::little, 1), 0xFFFFFFFF), noEntry);
  EXPECT_EQ(parsed.parse(support::laterMpf(ByteOrder::little, 1), 126), 0u);
}

}  // namespace

// Building the multi-picture segment: sizes, every byte of the head, attributes and their tags.
#include <gmock/gmock.h>

#include <cstring>

#include "mpo/mpf_segment.h"
#include "tests/support/mpf_builder.h"

namespace {

using host::MpoAttributes;
using host::MpoEntry;
using host::MpoImageDesc;
using host::u32;
using host::u8;
using support::Bytes;

constexpr u32 uidFlag = 0x00040000;
constexpr u32 everyAttribute = 0xFFF80000;

std::vector<MpoImageDesc> descriptions(std::size_t count) {
  std::vector<MpoImageDesc> images(count, MpoImageDesc{});
  for (MpoImageDesc& image : images) {
    image.typeClass = 2;
    image.typeSubCode = 2;
  }
  return images;
}

Bytes build(const std::vector<MpoImageDesc>& images, u32 position) {
  const host::MpoCountAnswer counts = {static_cast<u32>(images.size()), position};
  u32 size = 0;
  EXPECT_EQ(mpo::MpfBuildSegment(images, counts, {}, &size), size);
  EXPECT_EQ(mpo::MpfBuildSegment(images, counts, {}, nullptr), size);
  Bytes payload(size);
  u32 written = 0;
  EXPECT_EQ(mpo::MpfBuildSegment(images, counts, payload, &written), 1u);
  EXPECT_EQ(written, size);
  return payload;
}

u32 word(const Bytes& bytes, std::size_t at) {
  return bytes.at(at) | u32{bytes.at(at + 1)} << 8 | u32{bytes.at(at + 2)} << 16 |
         u32{bytes.at(at + 3)} << 24;
}
u32 half(const Bytes& bytes, std::size_t at) { return bytes.at(at) | u32{bytes.at(at + 1)} << 8; }

struct IfdEntry {
  u32 tag, type, count, value;
  bool operator==(const IfdEntry&) const = default;
};

// The IFD at a payload offset.
std::vector<IfdEntry> ifdAt(const Bytes& payload, std::size_t at) {
  std::vector<IfdEntry> entries(half(payload, at));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::size_t entry = at + 2 + 12 * i;
    entries[i] = {half(payload, entry), half(payload, entry + 2), word(payload, entry + 4),
                  word(payload, entry + 8)};
  }
  return entries;
}

// What the module itself reads in a payload that it built, with room behind it.
struct ReadBack {
  host::MpoList list = {};
  MpoEntry entries[host::mpoMostImages] = {};
  u32 result = 0;

  void read(Bytes payload, u32 position) {
    payload.resize(payload.size() + 1);
    result |=
        mpo::MpfParseSegment(position, {list, entries}, std::span<const u8>(payload).subspan(4), 0);
  }
};

TEST(MpfBuild, TheHeadIsLaidOutAsTheStandardHasIt) {
  std::vector<MpoImageDesc> images = descriptions(3);
  images[0].dependentParent = 1;
  images[0].representative = 1;
  images[0].dataFormat = 7;
  images[0].dependent1 = 2;
  images[0].dependent2 = 3;
  images[1].dependentChild = 5;  // any nonzero value is a child
  images[1].typeClass = 0xF1;    // of class and sub-code the low four bits count
  images[1].typeSubCode = 0xF2;
  images[2].dependentParent = 2;  // only bit 0 counts
  images[2].representative = 2;
  images[2].dataFormat = 8;
  const host::MpoCountAnswer counts = {3, 0};
  u32 size = 0;
  EXPECT_EQ(mpo::MpfBuildIndexIfd(images, counts, {}, &size), 18u + 12 * 4 + 16 * 3);
  Bytes head(size);
  EXPECT_EQ(mpo::MpfBuildIndexIfd(images, counts, head, nullptr), 1u);
  EXPECT_THAT(Bytes(head.begin(), head.begin() + 14),
              testing::ElementsAre('M', 'P', 'F', 0, 'I', 'I', 42, 0, 8, 0, 0, 0, 4, 0));
  EXPECT_THAT(
      ifdAt(head, 12),
      testing::ElementsAre(IfdEntry{0xB000, 7, 4, 0x30303130}, IfdEntry{0xB001, 4, 1, 3},
                           IfdEntry{0xB002, 7, 48, 14 + 12 * 4}, IfdEntry{0xB004, 4, 1, 2}));
  EXPECT_EQ(std::string(head.begin() + 14 + 8, head.begin() + 14 + 12), "0100");
  EXPECT_EQ(word(head, 14 + 48), size - 4) << "the attribute IFD follows the head";
  const std::size_t table = 4 + 14 + 12 * 4;
  const u32 attributes[] = {0xA7020002, 0x40010002, 0x00020002};
  for (u32 image = 0; image < 3; ++image) {
    const std::size_t entry = table + 16 * image;
    EXPECT_EQ(word(head, entry), attributes[image]) << image;
    EXPECT_EQ(word(head, entry + 4), 0u);
    EXPECT_EQ(word(head, entry + 8), 0u);
    EXPECT_EQ(half(head, entry + 12), +images[image].dependent1);
    EXPECT_EQ(half(head, entry + 14), +images[image].dependent2);
  }
}

TEST(MpfBuild, TheIdentifierListFollowsTheTableWhenTheFirstImageAsksForIt) {
  std::vector<MpoImageDesc> images = descriptions(2);
  images[1].flags = uidFlag;
  EXPECT_EQ(mpo::MpfBuildIndexIfd(images, {2, 0}, {}, nullptr), 18u + 12 * 4 + 16 * 2);
  images[0].flags = uidFlag;
  std::memset(images[0].uid, 'x', 33);
  std::memset(images[1].uid, 'y', 33);
  u32 size = 0;
  EXPECT_EQ(mpo::MpfBuildIndexIfd(images, {2, 0}, {}, &size), 18u + 12 * 5 + 16 * 2 + 33 * 2);
  const Bytes payload = build(images, 0);
  const std::vector<IfdEntry> ifd = ifdAt(payload, 12);
  ASSERT_EQ(ifd.size(), 5u);
  EXPECT_EQ(+ifd[2].value, 14u + 12 * 5);
  EXPECT_EQ(ifd[3], (IfdEntry{0xB003, 7, 66, 14 + 12 * 5 + 32}));
  EXPECT_EQ(ifd[4], (IfdEntry{0xB004, 4, 1, 2}));
  const auto uids = payload.begin() + 4 + 14 + 12 * 5 + 32;
  EXPECT_EQ(std::string(uids, uids + 66), std::string(33, 'x') + std::string(33, 'y'));
  EXPECT_EQ(word(payload, 14 + 60), size - 4);
}

TEST(MpfBuild, EveryIfdOpensWithVersionAndNumber) {
  for (u32 position = 0; position < 3; ++position) {
    const Bytes payload = build(descriptions(3), position);
    const std::size_t ifd = position == 0 ? 18u + 48 + 48 : 12;
    EXPECT_EQ(payload.size(), ifd + 6 + 24);
    EXPECT_THAT(ifdAt(payload, ifd), testing::ElementsAre(IfdEntry{0xB000, 7, 4, 0x30303130},
                                                          IfdEntry{0xB101, 4, 1, position + 1}));
    EXPECT_EQ(word(payload, ifd + 26), 0u) << "the last IFD";
    EXPECT_EQ(word(payload, 8), 8u);
  }
}

TEST(MpfBuild, AttributesGoInBitOrderWithTheirValuesBehindTheIfd) {
  std::vector<MpoImageDesc> images = descriptions(2);
  images[1].flags = everyAttribute | uidFlag;
  u32 next = 100;
  for (std::size_t at = 0; at < sizeof(MpoAttributes); at += 4, ++next) {
    std::memcpy(reinterpret_cast<u8*>(&images[1].attributes) + at, &next, 4);
  }
  const Bytes payload = build(images, 1);
  EXPECT_EQ(payload.size(), 18u + 12 * 15 + 8 * 11);
  const u32 values = 8 + 2 + 12 * 15 + 4;  // from the byte-order field
  EXPECT_THAT(ifdAt(payload, 12),
              testing::ElementsAre(
                  IfdEntry{0xB000, 7, 4, 0x30303130}, IfdEntry{0xB101, 4, 1, 2},
                  IfdEntry{0xB201, 4, 1, 100}, IfdEntry{0xB202, 5, 1, values},
                  IfdEntry{0xB203, 5, 1, values + 8}, IfdEntry{0xB204, 4, 1, 105},
                  IfdEntry{0xB205, 10, 1, values + 16}, IfdEntry{0xB206, 5, 1, values + 24},
                  IfdEntry{0xB207, 10, 1, values + 32}, IfdEntry{0xB208, 10, 1, values + 40},
                  IfdEntry{0xB209, 10, 1, values + 48}, IfdEntry{0xB20A, 10, 1, values + 56},
                  IfdEntry{0xB20B, 10, 1, values + 64}, IfdEntry{0xB20C, 10, 1, values + 72},
                  IfdEntry{0xB20C, 10, 1, values + 80}));  // kept: roll goes out as pitch
  std::vector<u32> words;
  for (std::size_t at = 4 + values; at < payload.size(); at += 4) {
    words.push_back(word(payload, at));
  }
  EXPECT_THAT(words, testing::ElementsAre(101, 102, 103, 104, 106, 107, 108, 109, 110, 111, 112,
                                          113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123));
}

TEST(MpfBuild, EachFlagAddsItsTagAlone) {
  for (u32 bit = 0; bit < 32; ++bit) {
    std::vector<MpoImageDesc> images = descriptions(2);
    images[1].flags = u32{1} << bit;
    const std::size_t entries = bit >= 19 ? 3u : 2u;
    const bool inEntry = bit == 31 || bit == 28;
    const Bytes payload = build(images, 1);
    EXPECT_EQ(ifdAt(payload, 12).size(), entries) << bit;
    EXPECT_EQ(payload.size(), 18 + 12 * entries + (entries == 3 && !inEntry ? 8 : 0)) << bit;
  }
}

TEST(MpfBuild, OnlyIndependentMultiFrameImagesCarryAttributes) {
  for (const auto& [childFlag, typeClass, carries] :
       {std::tuple{0u, 2, true}, std::tuple{1u, 2, false}, std::tuple{0u, 1, false},
        std::tuple{0u, 3, false}, std::tuple{0u, 0, false}, std::tuple{0u, 0x12, true}}) {
    std::vector<MpoImageDesc> images = descriptions(1);
    images[0].dependentChild = childFlag;
    images[0].typeClass = static_cast<u8>(typeClass);
    images[0].flags = 0x10000000;
    const std::size_t ifd = 18 + 48 + 16;
    EXPECT_EQ(ifdAt(build(images, 0), ifd).size(), carries ? 3u : 2u);
  }
}

TEST(MpfBuild, ABufferThatIsTooSmallIsNotOverrun) {
  const std::vector<MpoImageDesc> images = descriptions(2);
  const u32 size = mpo::MpfBuildSegment(images, {2, 0}, {}, nullptr);
  for (u32 room = 1; room < size; ++room) {
    Bytes buffer(room);
    EXPECT_EQ(mpo::MpfBuildSegment(images, {2, 0}, buffer, nullptr), 0u);
  }
}

TEST(MpfBuild, CountsPastTheDescriptionsBuildNothing) {
  const std::vector<MpoImageDesc> images = descriptions(2);
  u32 size = 0;
  EXPECT_EQ(mpo::MpfBuildSegment(images, {3, 0}, {}, &size), 0u);
  EXPECT_EQ(mpo::MpfBuildSegment(images, {2, 2}, {}, &size), 0u);
  EXPECT_EQ(mpo::MpfBuildSegment(images, {0, 0}, {}, &size), 0u);
  EXPECT_EQ(mpo::MpfBuildIndexIfd(images, {3, 0}, {}, &size), 0u);
  EXPECT_EQ(size, 0u);
}

TEST(MpfBuild, WhatIsBuiltReadsBack) {
  const struct {
    u8 typeClass, subCode;
    u32 kind;
  } classes[] = {{1, 1, 1}, {1, 2, 2}, {2, 1, 3}, {2, 2, 4}, {2, 3, 5}, {3, 0, 6}, {0, 0, 0}};
  for (const auto& row : classes) {
    std::vector<MpoImageDesc> images = descriptions(4);
    for (MpoImageDesc& image : images) {
      image.typeClass = row.typeClass;
      image.typeSubCode = row.subCode;
      image.flags = everyAttribute | uidFlag;
      std::memset(&image.attributes, 0x11, sizeof image.attributes);
      image.attributes.pitchAngle = {5, 6};
      image.attributes.rollAngle = {7, 8};
    }
    images[0].dependent1 = 3;
    images[2].dependentChild = 1;
    ReadBack back;
    for (u32 position = 0; position < 4; ++position) back.read(build(images, position), position);
    EXPECT_EQ(back.result, 0u);
    EXPECT_EQ(+back.list.kind, row.kind);
    EXPECT_EQ(+back.list.imageCount, 4u);
    EXPECT_EQ(+back.list.totalFrames, 3u) << "children are no frames";
    EXPECT_EQ(+back.entries[3].dependentChild, 1u);
    EXPECT_EQ(+back.entries[0].dependent1, 3);
    // The attribute IFDs of positions 0, 1 and 3 go to the entries of the same positions.
    const MpoEntry& entry = back.entries[1];
    EXPECT_EQ(+entry.imageNumber, 1);
    if (row.typeClass != 2) {
      EXPECT_EQ(entry.flags & everyAttribute, 0u);
      continue;
    }
    // Horizontal overlap has no flag when read, and roll comes back as pitch.
    EXPECT_EQ(entry.flags & everyAttribute, everyAttribute & ~0x40080000u);
    EXPECT_EQ(+entry.attributes.panOverlapHorizontal.numerator, 0x11111111u);
    EXPECT_EQ(+entry.attributes.pitchAngle.numerator, 7u);
    EXPECT_EQ(+entry.attributes.pitchAngle.denominator, 8u);
    EXPECT_EQ(+entry.attributes.rollAngle.numerator, 0u);
    EXPECT_EQ(back.entries[2].flags & everyAttribute, 0u) << "a child's segment";
  }
}

}  // namespace

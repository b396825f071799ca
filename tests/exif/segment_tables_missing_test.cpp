// The segment builder where the host's library lacks the tag tables of the directories.
#include "exif/segment_builder.h"
#include "tests/exif/exif_test.h"

namespace {

using namespace test;

class SegmentTablesMissing : public testing::Test {
 protected:
  void SetUp() override {
    the().reset();
    ASSERT_TRUE(exif::exifTable().empty());
    ASSERT_TRUE(exif::gpsTable().empty());
    ASSERT_FALSE(exif::iptcTable().empty());
  }
  void build() { exif::buildSegments(slot_.address(), Bytes{1, 2, 3}, exif::XmpPlace::ownSegment); }
  PropertySlot slot_;
};

TEST_F(SegmentTablesMissing, ADirectoryThatCannotBeMadeLeavesTheRecordLockedAndUncounted) {
  for (const host::u16 id : {host::u16{4006}, host::u16{5210}, host::u16{5301}}) {
    PropertySlot slot;
    slot.addText(id, "a text");
    exif::buildSegments(slot.address(), Bytes{1, 2, 3}, exif::XmpPlace::ownSegment);
    EXPECT_EQ(slot.ids(), std::vector<int>{id});
    EXPECT_EQ(GlobalFlags(slot.handle()) & GMEM_LOCKCOUNT, 1u) << id;
    GlobalUnlock(slot.handle());
  }
}

TEST_F(SegmentTablesMissing, TheXmpSegmentIsNotBuiltEither) {
  slot_.addBlock(4037, support::bytesOf("<x/>"));
  slot_.addText(4006, "Maker");
  build();
  EXPECT_EQ(slot_.ids(), (std::vector<int>{4037, 4006}));
  EXPECT_FALSE(slot_.unlocked());
  GlobalUnlock(slot_.handle());
}

TEST_F(SegmentTablesMissing, WhatNeedsNoDirectoryTableIsBuilt) {
  slot_.addText(5600, "Title");
  build();
  EXPECT_EQ(slot_.ids(), (std::vector<int>{5600, 5297}));
  EXPECT_TRUE(slot_.unlocked());
}

}  // namespace

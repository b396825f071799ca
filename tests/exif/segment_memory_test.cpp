// The segment builder without memory: each allocation in turn fails, nothing is left behind.
#include "platform/posix/diagnostics.h"
#include "tests/exif/built_segment.h"

namespace {

using namespace test;
using platform::posix::liveCounts;

int allocationsLeft = 0;
bool allow(std::size_t) { return allocationsLeft-- != 0; }

class SegmentMemory : public BuilderTest {
 protected:
  void TearDown() override {
    platform::posix::setAllocationFilter(nullptr);
    BuilderTest::TearDown();
  }
  // The segments that are built when the allocation of that number fails.
  static std::size_t segmentsWithout(int number) {
    PropertySlot slot;
    slot.addText(hostText, "Maker");
    slot.addBlock(4037, support::bytesOf("<x/>"));
    doubles::reserveFields(slot.address(), 2);
    the().reserveNothing = true;  // so that the first allocation is the segment's
    const auto before = liveCounts();
    allocationsLeft = number;
    platform::posix::setAllocationFilter(&allow);
    exif::buildSegments(slot.address(), {}, exif::XmpPlace::ownSegment);
    platform::posix::setAllocationFilter(nullptr);
    EXPECT_TRUE(slot.unlocked());
    const std::size_t built = slot.fields().size() - 2;
    if (built == 0) {
      EXPECT_EQ(liveCounts(), before);
    }
    return built;
  }
};

TEST_F(SegmentMemory, WithoutTheExifBlockThereIsNoSegmentAtAll) {
  EXPECT_EQ(segmentsWithout(0), 0u);
}

TEST_F(SegmentMemory, WithoutTheXmpBlockTheExifSegmentStays) { EXPECT_EQ(segmentsWithout(1), 1u); }

TEST_F(SegmentMemory, TwoBlocksAreAll) { EXPECT_EQ(segmentsWithout(2), 2u); }

}  // namespace

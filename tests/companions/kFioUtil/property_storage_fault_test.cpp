#include <cstddef>
#include <utility>

#include "host/kfioutil.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "platform/posix/diagnostics.h"
#include "tests/companions/loaded_module.h"

namespace {

using platform::posix::liveCounts;

// Blocks up to this size can be had.
std::size_t largestBlock = 0;

// Limits global memory for the length of a scope.
class ScarceMemory {
 public:
  explicit ScarceMemory(std::size_t largest) {
    largestBlock = largest;
    platform::posix::setAllocationFilter([](std::size_t size) { return size <= largestBlock; });
  }
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory() { platform::posix::setAllocationFilter(nullptr); }
};

class PropertyStorageFault : public testing::Test {
 protected:
  ~PropertyStorageFault() override { free_(slot_); }

  int append(host::ValueKind kind, HGLOBAL data) {
    host::PropertyField field = {};
    field.valueKind = kind;
    field.data = reinterpret_cast<host::u64>(data);
    return append_(slot_, &field);
  }

  test::LoadedModule module_{"fio/kFioUtil.dll"};
  decltype(Prop_ReAllocFieldSpace)* reserve_ =
      module_.function<decltype(Prop_ReAllocFieldSpace)>("Prop_ReAllocFieldSpace");
  decltype(Prop_AppendFieldData)* append_ =
      module_.function<decltype(Prop_AppendFieldData)>("Prop_AppendFieldData");
  decltype(kfioFreeProperty)* free_ =
      module_.function<decltype(kfioFreeProperty)>("kfioFreeProperty");
  HGLOBAL slot_ = nullptr;
};

TEST_F(PropertyStorageFault, MakesNoRecordWithoutMemory) {
  const ScarceMemory none(0);
  const auto before = liveCounts();
  EXPECT_EQ(reserve_(&slot_, 1), 0);
  EXPECT_EQ(slot_, nullptr);
  EXPECT_EQ(liveCounts(), before);
}

TEST_F(PropertyStorageFault, KeepsTheRecordWhenItCannotGrow) {
  ASSERT_EQ(reserve_(&slot_, 1), 1);
  const HGLOBAL record = slot_;
  const auto before = liveCounts();
  const ScarceMemory none(0);
  EXPECT_EQ(reserve_(&slot_, 100), 0);
  EXPECT_EQ(slot_, record);
  EXPECT_EQ(liveCounts(), before);
  EXPECT_EQ(append(host::kindNumber32, nullptr), 1) << "the room of before is still there";
}

TEST_F(PropertyStorageFault, GrowsToWhatIsNeededWhenThereIsNoMore) {
  ASSERT_EQ(reserve_(&slot_, 999), 1);
  const ScarceMemory enough(8 + 88 * 1001);
  EXPECT_EQ(reserve_(&slot_, 1000), 1);
  EXPECT_EQ(GlobalSize(slot_), 8U + 88U * 1001U);
}

TEST_F(PropertyStorageFault, LeavesNoBlockBehind) {
  const auto before = liveCounts();
  ASSERT_EQ(reserve_(&slot_, 3), 1);
  ASSERT_EQ(append(host::kindBlock, GlobalAlloc(platform::fixedZeroed, 16)), 1);
  ASSERT_EQ(append(host::kindText, GlobalAlloc(platform::fixedZeroed, 4)), 1);
  ASSERT_EQ(append(host::kindText, nullptr), 1);
  free_(std::exchange(slot_, nullptr));
  EXPECT_EQ(liveCounts(), before);
}

}  // namespace

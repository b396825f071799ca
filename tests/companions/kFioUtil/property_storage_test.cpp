#include <chrono>
#include <climits>
#include <cstring>
#include <functional>

#include "host/kfioutil.h"
#include "host/property_record.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_module.h"

namespace {

using host::i32;
using host::PropertyField;
using host::PropertyHeader;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr std::size_t recordBytes(std::size_t fields) { return 8 + 88 * fields; }

PropertyField numberField(u16 id, u32 value) {
  PropertyField field = {};
  field.descriptorSize = 88;
  field.valueKind = host::kindNumber32;
  field.fieldId = id;
  field.data = value;
  return field;
}

class PropertyStorage : public testing::Test {
 protected:
  ~PropertyStorage() override {
    if (slot_ != nullptr) free_(slot_);
  }

  int reserve(int count) { return reserve_(&slot_, count); }
  int append(const PropertyField& field) { return append_(slot_, &field); }

  [[nodiscard]] i32 fieldCount() const {
    const platform::LockedGlobal lock(slot_);
    return lock.as<PropertyHeader>()->fieldCount;
  }
  [[nodiscard]] u32 recordSize() const {
    const platform::LockedGlobal lock(slot_);
    return lock.as<PropertyHeader>()->recordSize;
  }
  [[nodiscard]] PropertyField field(std::size_t index) const {
    const platform::LockedGlobal lock(slot_);
    PropertyField result;
    std::memcpy(&result, static_cast<u8*>(lock.address()) + recordBytes(index), sizeof(result));
    return result;
  }
  [[nodiscard]] u64 dataOf(std::size_t index) const { return field(index).data; }
  [[nodiscard]] u16 idOf(std::size_t index) const { return field(index).fieldId; }
  // Every byte of the room for so many descriptors behind the last field.
  [[nodiscard]] bool isRoomZeroed(std::size_t count) const {
    const platform::LockedGlobal lock(slot_);
    const auto used = recordBytes(static_cast<std::size_t>(fieldCount()));
    if (lock.size() < used + 88 * count) return false;
    const u8* room = static_cast<u8*>(lock.address()) + used;
    return std::all_of(room, room + 88 * count, [](u8 byte) { return byte == 0; });
  }
  void change(const std::function<void(u8*)>& change) {
    const platform::LockedGlobal lock(slot_);
    change(static_cast<u8*>(lock.address()));
  }
  void makeBlock(std::size_t size) { slot_ = GlobalAlloc(platform::movableZeroed, size); }

  test::LoadedModule module_{"fio/kFioUtil.dll"};
  decltype(Prop_ReAllocFieldSpace)* reserve_ =
      module_.function<decltype(Prop_ReAllocFieldSpace)>("Prop_ReAllocFieldSpace");
  decltype(Prop_AppendFieldData)* append_ =
      module_.function<decltype(Prop_AppendFieldData)>("Prop_AppendFieldData");
  decltype(kfioFreeProperty)* free_ =
      module_.function<decltype(kfioFreeProperty)>("kfioFreeProperty");
  HGLOBAL slot_ = nullptr;
};

TEST_F(PropertyStorage, MakesARecordWithTheHeaderField) {
  ASSERT_EQ(reserve(3), 1);
  ASSERT_NE(slot_, nullptr);
  EXPECT_EQ(fieldCount(), 1);
  EXPECT_EQ(recordSize(), recordBytes(1));
  EXPECT_EQ(u32{field(0).descriptorSize}, 88U);
  EXPECT_EQ(idOf(0), host::fieldHeader);
  EXPECT_EQ(field(0).scanComplete, 0);
  EXPECT_EQ(dataOf(0), 0U);
  EXPECT_TRUE(isRoomZeroed(3));
}

TEST_F(PropertyStorage, ReservesWithoutChangingTheRecord) {
  ASSERT_EQ(reserve(1), 1);
  ASSERT_EQ(append(numberField(5200, 7)), 1);
  ASSERT_EQ(reserve(500), 1);
  EXPECT_EQ(fieldCount(), 2);
  EXPECT_EQ(recordSize(), recordBytes(2));
  EXPECT_EQ(dataOf(1), 7U);
  EXPECT_TRUE(isRoomZeroed(500));
}

TEST_F(PropertyStorage, ClearsWhatWasLeftBehindTheLastField) {
  ASSERT_EQ(reserve(8), 1);
  change([](u8* record) { std::memset(record + recordBytes(1), 0xAA, 8 * 88); });
  ASSERT_EQ(reserve(4), 1);
  EXPECT_TRUE(isRoomZeroed(4));
}

TEST_F(PropertyStorage, CountsTheRoomFromFieldsThatReadersAdded) {
  ASSERT_EQ(reserve(4), 1);
  change([](u8* record) {
    const PropertyField added = numberField(5201, 9);
    std::memcpy(record + recordBytes(1), &added, sizeof(added));
    reinterpret_cast<PropertyHeader*>(record)->fieldCount = 2;
  });
  ASSERT_EQ(reserve(4), 1);
  EXPECT_EQ(fieldCount(), 2);
  EXPECT_EQ(dataOf(1), 9U);
  EXPECT_TRUE(isRoomZeroed(4));
}

TEST_F(PropertyStorage, AppendsBehindTheLastFieldAndKeepsTheSizeRight) {
  ASSERT_EQ(reserve(2), 1);
  ASSERT_EQ(append(numberField(5200, 1)), 1);
  ASSERT_EQ(append(numberField(5201, 2)), 1);
  EXPECT_EQ(fieldCount(), 3);
  EXPECT_EQ(recordSize(), recordBytes(3));
  const PropertyField expected = numberField(5201, 2);
  const PropertyField stored = field(2);
  EXPECT_EQ(std::memcmp(&stored, &expected, sizeof(expected)), 0);
}

TEST_F(PropertyStorage, RefusesToAppendWithoutRoom) {
  makeBlock(recordBytes(1));
  change([](u8* record) { reinterpret_cast<PropertyHeader*>(record)->fieldCount = 1; });
  EXPECT_EQ(append(numberField(5200, 1)), 0);
  EXPECT_EQ(fieldCount(), 1);
}

TEST_F(PropertyStorage, TakesACountBelowOneForNoFields) {
  makeBlock(recordBytes(0));
  change([](u8* record) { reinterpret_cast<PropertyHeader*>(record)->fieldCount = -5; });
  ASSERT_EQ(reserve(1), 1);
  ASSERT_EQ(append(numberField(5200, 1)), 1);
  EXPECT_EQ(fieldCount(), 1);
  EXPECT_EQ(recordSize(), recordBytes(1));
  EXPECT_EQ(idOf(0), 5200);
}

TEST_F(PropertyStorage, RefusesWhatIsNoRecord) {
  EXPECT_EQ(reserve_(nullptr, 1), 0);
  EXPECT_EQ(append_(nullptr, &slot_), 0);
  makeBlock(7);
  EXPECT_EQ(reserve(1), 0);
  EXPECT_EQ(append(numberField(5200, 1)), 0);
  free_(nullptr);
}

TEST_F(PropertyStorage, RefusesCountsThatNoRecordCanHold) {
  EXPECT_EQ(reserve(-1), 0);
  EXPECT_EQ(reserve(INT_MAX), 0);
  EXPECT_EQ(slot_, nullptr);
  ASSERT_EQ(reserve(1), 1);
  EXPECT_EQ(reserve(-1), 0);
  EXPECT_EQ(reserve(INT_MAX), 0);
  change([](u8* record) { reinterpret_cast<PropertyHeader*>(record)->fieldCount = INT_MAX; });
  EXPECT_EQ(reserve(1), 0);
  EXPECT_EQ(append(numberField(5200, 1)), 0);
  change([](u8* record) { reinterpret_cast<PropertyHeader*>(record)->fieldCount = 1; });
}

TEST_F(PropertyStorage, RefusesANullDescriptor) {
  ASSERT_EQ(reserve(1), 1);
  EXPECT_EQ(append_(slot_, nullptr), 0);
  EXPECT_EQ(fieldCount(), 1);
}

TEST_F(PropertyStorage, GrowsARecordThatIsLocked) {
  ASSERT_EQ(reserve(1), 1);
  ASSERT_EQ(append(numberField(5200, 4)), 1);
  const HGLOBAL locked = slot_;
  GlobalLock(locked);
  ASSERT_EQ(reserve(1000), 1);
  EXPECT_EQ(dataOf(1), 4U);
  EXPECT_EQ(GlobalFlags(slot_) & GMEM_LOCKCOUNT, 1U);
  GlobalUnlock(slot_);
}

TEST_F(PropertyStorage, LeavesTheRecordUnlocked) {
  ASSERT_EQ(reserve(1), 1);
  ASSERT_EQ(append(numberField(5200, 1)), 1);
  EXPECT_EQ(GlobalFlags(slot_) & GMEM_LOCKCOUNT, 0U);
}

// Without spare room every append copies the whole record: 60,000 of them would move 158 GB.
TEST_F(PropertyStorage, AppendsSixtyThousandFieldsOneByOne) {
  const auto start = std::chrono::steady_clock::now();
  std::size_t sizes = 0;
  std::size_t last = 0;
  for (u32 i = 0; i < 60000; ++i) {
    ASSERT_EQ(reserve(1), 1);
    const std::size_t size = GlobalSize(slot_);
    if (size != last) ++sizes;
    last = size;
    ASSERT_EQ(append(numberField(4701, i)), 1);
  }
  const auto spent = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(fieldCount(), 60001);
  EXPECT_EQ(recordSize(), recordBytes(60001));
  for (const u32 i : {0U, 1U, 31234U, 59999U}) EXPECT_EQ(dataOf(i + 1), i);
  EXPECT_LT(sizes, 60U) << "the block grew in too many steps";
  EXPECT_LT(std::chrono::duration_cast<std::chrono::seconds>(spent).count(), 10);
}

TEST_F(PropertyStorage, FreesARecordWithItsDataBlocks) {
  ASSERT_EQ(reserve(3), 1);
  PropertyField block = numberField(4701, 0);
  block.valueKind = host::kindBlock;
  block.data = reinterpret_cast<host::u64>(GlobalAlloc(platform::fixedZeroed, 16));
  PropertyField text = numberField(5210, 0);
  text.valueKind = host::kindText;
  text.data = reinterpret_cast<host::u64>(GlobalAlloc(platform::fixedZeroed, 4));
  ASSERT_EQ(append(block), 1);
  ASSERT_EQ(append(text), 1);
  ASSERT_EQ(append(numberField(5202, 0xFFFFFFFF)), 1) << "a number is no address";
  const HGLOBAL record = std::exchange(slot_, nullptr);
  free_(record);
  EXPECT_EQ(GlobalLock(record), nullptr);
}

TEST_F(PropertyStorage, FreesOnlyTheFieldsThatTheBlockHolds) {
  ASSERT_EQ(reserve(0), 1);
  change([](u8* record) { reinterpret_cast<PropertyHeader*>(record)->fieldCount = INT_MAX; });
  const HGLOBAL record = std::exchange(slot_, nullptr);
  free_(record);
  EXPECT_EQ(GlobalLock(record), nullptr);
}

}  // namespace

// kfDLLSetProperty and its MPO twin.
#include "host/mpo.h"
#include "platform/global_memory.h"
#include "property/segment_map.h"
#include "tests/heap/heap_fields.h"

extern "C" {
int kfDLLSetProperty(HGLOBAL fileData, HGLOBAL property) noexcept;
int kfDLLMPOSetProperty(HGLOBAL fileData, HGLOBAL property) noexcept;
}

namespace {

using namespace test;

class SetProperty : public HeapTest {
 protected:
  // A file-data record of that size, every byte 0xA5.
  explicit SetProperty(std::size_t size = sizeof(host::MpoFileData))
      : record_(platform::movableZeroed, size) {
    const platform::LockedGlobal lock(record_.get());
    std::memset(lock.address(), 0xA5, size);
  }
  [[nodiscard]] Bytes bytes() const {
    const platform::LockedGlobal lock(record_.get());
    const auto* first = static_cast<const host::u8*>(lock.address());
    return {first, first + lock.size()};
  }
  [[nodiscard]] static Bytes withNumber(Bytes bytes, std::size_t offset, host::u64 number,
                                        std::size_t width) {
    std::memcpy(bytes.data() + offset, &number, width);
    return bytes;
  }
  [[nodiscard]] static host::u64 address(const PropertyHolder& property) {
    return reinterpret_cast<host::u64>(property.handle());
  }
  void resize(std::size_t size) { record_ = platform::OwnedGlobal(platform::movableZeroed, size); }

  platform::OwnedGlobal record_;
};

constexpr std::size_t slotOffset = 738;
constexpr std::size_t jpegHeapLength = 782;
constexpr std::size_t mpoHeapLength = 822;

TEST_F(SetProperty, StoresTheHandleAndTheHeapsNewLength) {
  for (const bool mpo : {false, true}) {
    PropertyHolder property;
    property.addSegment(ModelHeap{false, {{0x0816, texts({"names"})}}}.build());
    property.addText(5035, "a name that is longer");
    const Bytes before = bytes();
    EXPECT_EQ((mpo ? kfDLLMPOSetProperty : kfDLLSetProperty)(record_.get(), property.handle()), 0);
    const Bytes heap = property.heap();
    EXPECT_EQ(heap, (ModelHeap{false, {{0x0816, texts({"a name that is longer"})}}}.build()));
    const Bytes expected = withNumber(withNumber(before, slotOffset, address(property), 8),
                                      mpo ? mpoHeapLength : jpegHeapLength, heap.size(), 4);
    EXPECT_EQ(bytes(), expected) << "nothing else, whatever the tag";
    EXPECT_EQ(GlobalFlags(record_.get()) & GMEM_LOCKCOUNT, 0U);
    EXPECT_EQ(GlobalFlags(property.handle()) & GMEM_LOCKCOUNT, 0U);
  }
}

TEST_F(SetProperty, KeepsTheLengthWithoutAHeap) {
  PropertyHolder property;
  property.addText(1234, "text");
  const Bytes before = bytes();
  EXPECT_EQ(kfDLLSetProperty(record_.get(), property.handle()), 0);
  EXPECT_EQ(bytes(), withNumber(before, slotOffset, address(property), 8));
}

TEST_F(SetProperty, TakesTheRecordAway) {
  const Bytes before = bytes();
  EXPECT_EQ(kfDLLSetProperty(record_.get(), nullptr), 0);
  EXPECT_EQ(bytes(), withNumber(before, slotOffset, 0, 8));
}

TEST_F(SetProperty, ChangesNothingWhenTheHeapRefuses) {
  PropertyHolder property;
  property.addHeap({1, 2, 3});
  const Bytes before = bytes();
  EXPECT_EQ(kfDLLSetProperty(record_.get(), property.handle()), 0);
  EXPECT_EQ(kfDLLMPOSetProperty(record_.get(), property.handle()), 0);
  EXPECT_EQ(bytes(), before);
}

TEST_F(SetProperty, StaysInsideSmallRecords) {
  PropertyHolder property;
  property.addHeap(ModelHeap{}.build());
  for (const std::size_t size : {745U, 746U, 813U, 814U, 877U, 878U}) {
    for (const bool mpo : {false, true}) {
      SCOPED_TRACE(testing::Message() << size << mpo);
      resize(size);
      EXPECT_EQ((mpo ? kfDLLMPOSetProperty : kfDLLSetProperty)(record_.get(), property.handle()),
                0);
      Bytes expected(size);
      if (size >= 746) expected = withNumber(expected, slotOffset, address(property), 8);
      const host::u64 length = ModelHeap{}.build().size();
      if (!mpo && size >= 814) expected = withNumber(expected, jpegHeapLength, length, 4);
      if (mpo && size >= 878) expected = withNumber(expected, mpoHeapLength, length, 4);
      EXPECT_EQ(bytes(), expected);
    }
  }
}

TEST_F(SetProperty, IgnoresANullRecord) {
  PropertyHolder property;
  const Bytes heap = ModelHeap{false, {{0x0816, texts({"names"})}}}.build();
  property.addHeap(heap);
  property.addText(5035, "new");
  EXPECT_EQ(kfDLLSetProperty(nullptr, property.handle()), 0);
  EXPECT_EQ(kfDLLMPOSetProperty(nullptr, property.handle()), 0);
  EXPECT_EQ(property.heap(), heap);
}

}  // namespace

// Without memory: each allocation in turn fails, nothing is left behind and nothing half done.
#include "platform/posix/diagnostics.h"
#include "property/heap_edit.h"
#include "tests/heap/heap_fields.h"
#include "tests/heap/known_items.h"
#include "viewer/heap_tree.h"

namespace {

using namespace test;
using platform::posix::liveCounts;

int allocationsLeft = 0;
bool allow(std::size_t) { return allocationsLeft-- != 0; }

class HeapMemory : public HeapTest {
 protected:
  void TearDown() override { platform::posix::setAllocationFilter(nullptr); }

  // Runs with allocation number failing and all before and after it granted.
  template <typename Run>
  static auto failingAt(int number, Run run) {
    allocationsLeft = number;
    platform::posix::setAllocationFilter(&allow);
    const auto result = run();
    platform::posix::setAllocationFilter(nullptr);
    return result;
  }
  static bool allGranted() { return allocationsLeft >= 0; }

  static void expectReport() {
    ASSERT_EQ(doubles::state().reports.size(), 1U);
    const host::ErrorReport& report = doubles::state().reports[0];
    EXPECT_EQ(report.code, 1004);
    EXPECT_EQ(report.unit, 870);
    EXPECT_EQ(report.source, 873);
    EXPECT_GT(report.site, 0);
  }
  static ModelHeap everyRecord() {
    ModelHeap heap;
    for (const KnownRecord& known : knownRecords) {
      heap.records.push_back(wrapped(known, knownValue(known)));
    }
    return heap;
  }
};

TEST_F(HeapMemory, AddsNoFieldsWhenAnythingCannotBeHad) {
  const Bytes heap = everyRecord().build();
  for (const bool withRecord : {false, true}) {
    for (int number = 0;; ++number) {
      SCOPED_TRACE(number);
      doubles::state().reset();
      PropertyHolder property;
      if (withRecord) property.addText(1234, "kept");
      const auto before = liveCounts();
      const int result = failingAt(number, [&] { return property.expand(heap); });
      if (allGranted()) {
        EXPECT_EQ(result, 1);
        EXPECT_GT(number, 10);
        break;
      }
      EXPECT_EQ(result, 0);
      expectReport();
      EXPECT_EQ(liveCounts(), before);
      EXPECT_EQ(property.fields().size(), withRecord ? 2U : 0U);
      EXPECT_EQ(property.handle() != nullptr, withRecord);
    }
  }
}

TEST_F(HeapMemory, ChangesNoHeapWhenAnythingCannotBeHad) {
  const ModelHeap heap = {false, {{0x0816, texts({"names"})}}};
  for (int number = 0;; ++number) {
    SCOPED_TRACE(number);
    doubles::state().reset();
    PropertyHolder property;
    property.addSegment(heap.build());
    property.addText(5035, std::string(100, 'x'));
    for (const host::u16 id :
         std::initializer_list<host::u16>{5009, 5012, 5042, 5051, 5066, 5070, 5072, 5076, 5079}) {
      property.addNumber(id, 2, 5);
    }
    const auto before = liveCounts();
    const bool result = failingAt(number, [&] { return writeBack(property); });
    EXPECT_EQ(liveCounts(), before);
    if (allGranted()) {
      EXPECT_TRUE(result);
      EXPECT_NE(property.heap(), heap.build());
      EXPECT_GT(number, 4);
      break;
    }
    EXPECT_FALSE(result);
    EXPECT_EQ(property.heap(), heap.build());
    expectReport();
  }
}

TEST_F(HeapMemory, ReportsAnEditedHeapThatThereIsNoRoomFor) {
  const Bytes bytes = everyRecord().build();
  auto heap = property::parseHeap(frame::resourceLibrary(), bytes);
  ASSERT_TRUE(heap);
  ASSERT_TRUE(property::editHeapItem(*heap, {property::findHeapRow(0x0816), 0},
                                     {property::HeapFormat::packedText, 0, "longer.jpg"}));
  doubles::state().reset();
  const auto before = liveCounts();
  host::u32 length = 7;
  EXPECT_EQ(failingAt(0, [&] { return viewer::serialiseEditedHeap(*heap, length); }), nullptr);
  EXPECT_EQ(length, 0U);
  EXPECT_EQ(liveCounts(), before);
  expectReport();
}

}  // namespace

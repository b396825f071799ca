// Reading heaps of both byte orders, and heaps that lie.
#include "tests/heap/heap_fields.h"

namespace {

using namespace test;

class HeapParser : public HeapTest {};

// One record of every type, known and unknown, in nested blocks.
std::vector<ModelRecord> everyType() {
  return {
      {0x0816, texts({"IMG_001.JPG"})},
      {0x5803, numbers32({0x00010000, 0x40000000})},
      {0x1810, numbers32({1024, 768, 0x3F800000, 0, 8, 24, 257})},
      {0x0001, {1, 2, 3, 4}},
      {0x102A, numbers16({1, 0x0203, 0x0405, 6})},
      {0x2001, {9, 8, 7, 6}},
      {0x7801, {1, 2, 3, 4, 5, 6, 7, 8}},
      {0x8002, {1, 2, 3, 4, 5, 6, 7, 8}},
      {0x7002, {8, 7, 6, 5, 4, 3, 2, 1}},
      {0x2807,
       {},
       {{0x080A, texts({"Maker", "Model 5"})}, {0x3004, {}, {{0x5011, numbers16({1, 2, 3, 4})}}}}},
      {0x3002, {}, {}},
  };
}

TEST_F(HeapParser, ReadsBothByteOrdersAlike) {
  for (const bool bigEndian : {false, true}) {
    SCOPED_TRACE(bigEndian);
    const ModelHeap model = {bigEndian, everyType()};
    const auto heap = parsed(model.build());
    ASSERT_TRUE(heap.has_value());
    EXPECT_EQ(heap->bigEndian, bigEndian);
    EXPECT_EQ(heap->header, model.header);
    EXPECT_EQ(heap->records, model.records);
  }
}

TEST_F(HeapParser, WritesAHeapAsItWasWhenItLayInOrder) {
  for (const bool bigEndian : {false, true}) {
    const Bytes heap = ModelHeap{bigEndian, everyType()}.build();
    EXPECT_EQ(rewritten(heap), heap);
  }
}

TEST_F(HeapParser, WritesAnEmptyHeapAsSixZeroBytes) {
  Bytes expected = bytesOf("II");
  const Bytes header = ModelHeap::defaultHeader();
  expected.insert(expected.end(), header.begin(), header.end());
  expected.resize(expected.size() + 6);
  EXPECT_EQ(rewritten(expected), expected);
}

TEST_F(HeapParser, KeepsEveryWordOfTheHeader) {
  for (const bool bigEndian : {false, true}) {
    ModelHeap model = {bigEndian, everyType()};
    model.header = support::joined(support::joined(numbers32({0x01020304}), bytesOf("HEAPARCH")),
                                   numbers32({0x05060708, 0x090A0B0C, 0x0D0E0F10}));
    const auto heap = parsed(model.build());
    ASSERT_TRUE(heap.has_value()) << "the header's length is not read";
    EXPECT_EQ(heap->header, model.header);
    EXPECT_EQ(rewritten(model.build()), model.build());
  }
}

TEST_F(HeapParser, ReadsTheByteOrderFromTheFirstByte) {
  Bytes heap = ModelHeap{false, everyType()}.build();
  heap[0] = 'X';
  EXPECT_FALSE(parsed(heap)->bigEndian);
  Bytes big = ModelHeap{true, everyType()}.build();
  big[1] = 'X';
  EXPECT_TRUE(parsed(big)->bigEndian);
}

TEST_F(HeapParser, StartsAHeapFromItsTemplate) {
  property::ParsedHeap heap(frame::resourceLibrary());
  ASSERT_TRUE(heap.start(property::ParsedHeap::newHeader()));
  Bytes bytes(property::serialisedHeapLength(heap));
  property::serialiseHeap(heap, bytes);
  EXPECT_EQ(bytes, ModelHeap{}.build());
  EXPECT_FALSE(heap.modified());
}

TEST_F(HeapParser, TurnsWholeElementsOnlyAndKeepsTheRest) {
  const Bytes odd16 = {1, 2, 3, 4, 5};
  const Bytes odd32 = {1, 2, 3, 4, 5, 6, 7};
  const Bytes heap = RawHeap(true)
                         .bytes({2, 1, 4, 3, 5, 0})
                         .bytes({4, 3, 2, 1, 5, 6, 7, 0})
                         .table({{0x1026, 5, 0}, {0x1826, 7, 6}})
                         .build();
  const auto model = parsed(heap);
  ASSERT_TRUE(model.has_value());
  EXPECT_EQ(model->records, (std::vector<ModelRecord>{{0x1026, odd16}, {0x1826, odd32}}));
  const Bytes written = rewritten(heap);
  EXPECT_EQ(Bytes(written.begin() + 26, written.begin() + 40),
            (Bytes{2, 1, 4, 3, 5, 0, 4, 3, 2, 1, 5, 6, 7, 0}));
}

TEST_F(HeapParser, PadsOddValuesWithAZeroAndCountsThePad) {
  const Bytes heap =
      RawHeap().bytes({'A', 'B', 'C', 0xEE, 'D'}).table({{0x0816, 3, 0}, {0x0817, 1, 4}}).build();
  const Bytes expected =
      ModelHeap{false, {{0x0816, {'A', 'B', 'C', 0}}, {0x0817, {'D', 0}}}}.build();
  EXPECT_EQ(rewritten(heap), expected);
}

TEST_F(HeapParser, PutsValuesIntoTheTablesOrder) {
  const Bytes heap = RawHeap()
                         .bytes({1, 2, 3, 4, 0xEE, 0xEE, 5, 6})
                         .table({{0x0002, 2, 6}, {0x0003, 4, 0}})
                         .build();
  EXPECT_EQ(rewritten(heap),
            (ModelHeap{false, {{0x0002, {5, 6}}, {0x0003, {1, 2, 3, 4}}}}.build()));
}

TEST_F(HeapParser, ReadsTablesInFrontOfTheirValues) {
  RawHeap heap;
  heap.u16(1).u16(0x0002).u32(2).u32(12).bytes({7, 8}).u32(0);
  const auto model = parsed(heap.build());
  ASSERT_TRUE(model.has_value());
  EXPECT_EQ(model->records, (std::vector<ModelRecord>{{0x0002, {7, 8}}}));
}

TEST_F(HeapParser, UsesValuesThatRunPastTheirBlockButNotPastThePayload) {
  // The sub-heap is 16 bytes long; its value of 16 bytes begins at its 2nd and ends behind it.
  const auto heapWith = [](std::uint32_t size, std::uint32_t offset) {
    RawHeap heap;
    heap.table({{0x0002, size, offset}});
    const auto length = static_cast<std::uint32_t>(heap.position());
    return heap.table({{0x2807, length, 0}}).build();
  };
  const auto model = parsed(heapWith(16, 2));
  ASSERT_TRUE(model.has_value());
  EXPECT_EQ(model->records[0].children[0].value.size(), 16U);
  EXPECT_TRUE(parsed(heapWith(16, 16)).has_value()) << "up to the last byte of the payload";
  EXPECT_FALSE(parsed(heapWith(17, 0)).has_value()) << "a size over the block's length";
  EXPECT_FALSE(parsed(heapWith(0, 17)).has_value()) << "an offset over the block's length";
}

TEST_F(HeapParser, RefusesValuesThatRunPastThePayload) {
  const auto heapWith = [](std::uint32_t size, std::uint32_t offset) {
    return RawHeap().zeros(4).table({{0x0002, size, offset}}).build();
  };
  EXPECT_TRUE(parsed(heapWith(20, 0)).has_value()) << "the whole block";
  EXPECT_FALSE(parsed(heapWith(20, 1)).has_value());
  EXPECT_TRUE(parsed(heapWith(0, 20)).has_value());
  EXPECT_FALSE(parsed(heapWith(1, 20)).has_value());
  EXPECT_FALSE(parsed(heapWith(21, 0)).has_value());
  EXPECT_FALSE(parsed(heapWith(0xFFFFFFFF, 0)).has_value());
  EXPECT_FALSE(parsed(heapWith(1, 0xFFFFFFFF)).has_value());
}

TEST_F(HeapParser, TakesNoOffsetsFromEntriesThatHoldTheirValue) {
  const Bytes heap =
      RawHeap().table({{0x4002, 0xFFFFFFFF, 0xFFFFFFFE}, {0x6807, 0xFFFFFFFF, 0}}).build();
  const auto model = parsed(heap);
  ASSERT_TRUE(model.has_value());
  EXPECT_EQ(model->records[0].value, numbers32({0xFFFFFFFF, 0xFFFFFFFE}));
  EXPECT_TRUE(model->records[1].children.empty());
  EXPECT_EQ(rewritten(heap), heap);
}

TEST_F(HeapParser, RefusesTablesOutsideThePayload) {
  const auto heapWith = [](std::uint32_t tableOffset, std::uint32_t count) {
    return RawHeap().u16(count).zeros(10).u32(tableOffset).build();
  };
  EXPECT_TRUE(parsed(heapWith(0, 1)).has_value());
  EXPECT_FALSE(parsed(heapWith(0, 2)).has_value());
  EXPECT_FALSE(parsed(heapWith(0, 0xFFFF)).has_value());
  EXPECT_TRUE(parsed(heapWith(2, 0)).has_value());
  EXPECT_FALSE(parsed(heapWith(15, 0)).has_value()) << "half a count";
  EXPECT_FALSE(parsed(heapWith(16, 0)).has_value());
  EXPECT_FALSE(parsed(heapWith(0xFFFFFFFF, 0)).has_value());
}

TEST_F(HeapParser, RefusesBlocksTooSmallForATable) {
  const auto heapWith = [](std::uint32_t size) {
    return RawHeap().zeros(12).table({{0x2807, size, 0}}).build();
  };
  EXPECT_TRUE(parsed(heapWith(6)).has_value());
  for (const std::uint32_t size : {0U, 1U, 5U}) EXPECT_FALSE(parsed(heapWith(size)).has_value());
  EXPECT_FALSE(parsed({}).has_value());
  Bytes header = ModelHeap{}.build();
  for (std::size_t size = 0; size < header.size(); ++size) {
    EXPECT_FALSE(parsed(Bytes(header.begin(), header.begin() + static_cast<std::ptrdiff_t>(size)))
                     .has_value());
  }
}

ModelHeap nested(unsigned levels) {
  std::vector<ModelRecord> records = {{0x0002, {1, 2}}};
  for (unsigned level = 1; level < levels; ++level) {
    records = {{0x2807, {}, std::move(records)}};
  }
  return {false, std::move(records)};
}

TEST_F(HeapParser, DescendsSixteenLevels) {
  EXPECT_EQ(rewritten(nested(16).build()), nested(16).build());
  EXPECT_FALSE(parsed(nested(17).build()).has_value());
}

TEST_F(HeapParser, RefusesABlockThatHoldsItself) {
  RawHeap heap;
  heap.u16(1).u16(0x2807).u32(16).u32(0).u32(0);
  EXPECT_FALSE(parsed(heap.build()).has_value());
}

// Entries that all stand for the same block: a payload of a few thousand bytes, a tree of any size.
TEST_F(HeapParser, StopsAtSixtyFiveThousandRecords) {
  const auto heapOf = [](std::size_t branches) {
    RawHeap heap;
    heap.table(std::vector<RawHeap::Entry>(256, {0x4002, 0, 0}));
    const auto length = static_cast<std::uint32_t>(heap.position());
    return heap.table(std::vector<RawHeap::Entry>(branches, {0x2807, length, 0})).build();
  };
  EXPECT_TRUE(parsed(heapOf(254)).has_value());
  EXPECT_FALSE(parsed(heapOf(255)).has_value()) << "255 blocks of 257 records, and the header";
  EXPECT_FALSE(parsed(heapOf(300)).has_value());
}

TEST_F(HeapParser, KeepsSixtyFiveThousandBytesOfValues) {
  // The same value read many times: the store, not the payload, is what fills.
  const auto heapOf = [](std::uint32_t rest) {
    std::vector<RawHeap::Entry> entries(65, {0x0002, 1000, 0});
    entries.push_back({0x0002, rest, 0});
    return RawHeap().zeros(1000).table(entries).build();
  };
  EXPECT_TRUE(parsed(heapOf(509)).has_value()) << "26 + 65,000 + 509";
  EXPECT_FALSE(parsed(heapOf(510)).has_value());
  EXPECT_TRUE(doubles::state().reports.empty()) << "a refusal is silent";
}

TEST_F(HeapParser, ReadsOrRefusesEveryPrefix) {
  for (const bool bigEndian : {false, true}) {
    const Bytes heap = ModelHeap{bigEndian, everyType()}.build();
    for (std::size_t size = 0; size < heap.size(); ++size) {
      const Bytes prefix(heap.begin(), heap.begin() + static_cast<std::ptrdiff_t>(size));
      const auto model = parsed(prefix);
      if (model) {
        EXPECT_EQ(parsed(rewritten(prefix))->records, padded(model->records)) << size;
      }
    }
  }
}

TEST_F(HeapParser, ReadsOrRefusesEveryChangedByte) {
  const Bytes heap = ModelHeap{false, everyType()}.build();
  int read = 0;
  for (std::size_t position = 0; position < heap.size(); ++position) {
    for (const std::uint8_t value :
         std::initializer_list<std::uint8_t>{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
      Bytes changed = heap;
      changed[position] = value;
      const auto model = parsed(changed);
      if (!model) continue;
      ++read;
      const auto again = parsed(rewritten(changed));
      ASSERT_TRUE(again.has_value()) << position;
      EXPECT_EQ(again->records, padded(model->records)) << position;
    }
  }
  EXPECT_GT(read, 100);
}

}  // namespace

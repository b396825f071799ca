// What the tree-list shows of a heap: nodes, rows, the clipboard's text, the edited heap.
#include "viewer/heap_tree.h"

#include "property/heap_edit.h"
#include "tests/heap/heap_fields.h"

namespace {

using namespace test;
using testing::ElementsAre;
using viewer::ListIcon;

class HeapTree : public HeapTest {
 protected:
  static property::ParsedHeap parse(std::vector<ModelRecord> records) {
    const Bytes bytes = ModelHeap{false, std::move(records)}.build();
    auto heap = property::parseHeap(frame::resourceLibrary(), bytes);
    if (!heap) throw std::runtime_error("the heap cannot be parsed");
    return std::move(*heap);
  }
  // "parent > name (record)" of every node.
  static std::vector<std::string> nodes(const property::ParsedHeap& heap) {
    const auto tree = viewer::heapTree(heap);
    std::vector<std::string> result;
    for (const auto& node : tree) {
      result.push_back(tree[node.parent].name + " > " + node.name + " (" +
                       std::to_string(node.record) + ")");
    }
    return result;
  }
};

TEST_F(HeapTree, RecordsAreNodesDepthFirstInTheirOrder) {
  const auto heap =
      parse({{0x0816, texts({"a.jpg"})},
             {0x2807, {}, {{0x0810, texts({"me"})}, {0x3004, {}, {{0x080B, texts({"1.0"})}}}}},
             {0x0805, texts({"note"})}});
  EXPECT_THAT(
      nodes(heap),
      ElementsAre("Camera data > Camera data (0)", "Camera data > Image file name (1)",
                  "Camera data > Camera (2)", "Camera > Owner name (3)",
                  "Camera > Camera specification (4)",
                  "Camera specification > Firmware version (5)", "Camera data > Description (6)"));
}

TEST_F(HeapTree, AHeapWithoutRecordsIsItsHeader) {
  EXPECT_THAT(nodes(parse({})), ElementsAre("Camera data > Camera data (0)"));
}

TEST_F(HeapTree, ARecordWithoutADefinitionShowsUnderTheGenericNameWithItsRawNumbers) {
  const auto heap = parse({{0x1099, numbers16({7, 65535})}, {0x1899, numbers32({70000})}});
  EXPECT_EQ(viewer::heapTree(heap)[1].name, "Unknown record");
  const auto rows = viewer::heapListRows(heap, 1);
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].name, "Unknown record");
  EXPECT_EQ(rows[0].value, "7");
  EXPECT_EQ(rows[1].value, "65535");
  EXPECT_EQ(rows[1].icon, ListIcon::binary);
  EXPECT_EQ(viewer::heapListRows(heap, 2).at(0).value, "70000");
}

TEST_F(HeapTree, ASubHeapListsNothing) {
  const auto heap = parse({{0x2807, {}, {{0x0810, texts({"me"})}}}});
  EXPECT_TRUE(viewer::heapListRows(heap, 1).empty());
  EXPECT_EQ(viewer::heapListRows(heap, 2).size(), 1U);
}

TEST_F(HeapTree, RowsHaveNameValueWithLabelAndIcon) {
  const auto heap =
      parse({{0x180E, numbers32({972687386, 0, 0})}, {0x5010, numbers16({1, 0, 0, 0})}});
  const auto time = viewer::heapListRows(heap, 1);
  ASSERT_EQ(time.size(), 3U);
  EXPECT_EQ(time[0].name, "Date and time");
  EXPECT_EQ(time[0].icon, ListIcon::time);
  EXPECT_EQ(time[1].icon, ListIcon::binary);
  const auto release = viewer::heapListRows(heap, 2);
  ASSERT_EQ(release.size(), 1U) << "skipped items are not listed";
  EXPECT_EQ(release[0].name, "Release method");
  EXPECT_EQ(release[0].value, "1 (continuous shooting)");
}

TEST_F(HeapTree, TheHeaderListsItsTextsAndNumbers) {
  const auto rows = viewer::heapListRows(parse({}), 0);
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(rows[0].value, "II (little-endian)");
  EXPECT_EQ(rows[0].icon, ListIcon::text);
  EXPECT_EQ(rows[1].value, "26");
  EXPECT_EQ(rows[1].icon, ListIcon::binary);
}

TEST_F(HeapTree, TheClipboardGetsEveryRecordAndRow) {
  const auto heap = parse({{0x2807, {}, {{0x0810, texts({"me"})}}}});
  EXPECT_THAT(viewer::heapAsText(heap),
              testing::AllOf(testing::StartsWith("Camera data\r\n  Byte order\tII"),
                             testing::EndsWith("  Camera\r\n    Owner name\r\n"
                                               "      Owner name\tme\r\n")));
}

TEST_F(HeapTree, AHeapThatWasNotChangedGivesNoBytes) {
  host::u32 length = 7;
  EXPECT_EQ(viewer::serialiseEditedHeap(parse({{0x0816, texts({"a.jpg"})}}), length), nullptr);
  EXPECT_EQ(length, 0U);
}

TEST_F(HeapTree, AnEditedHeapGivesItsNewBytes) {
  auto heap = parse({{0x0816, texts({"a.jpg"})}});
  ASSERT_TRUE(property::editHeapItem(heap, {property::findHeapRow(0x0816), 0},
                                     {property::HeapFormat::packedText, 0, "longer.jpg"}));
  host::u32 length = 0;
  const platform::OwnedGlobal block(viewer::serialiseEditedHeap(heap, length));
  const platform::LockedGlobal lock(block.get());
  ASSERT_TRUE(lock);
  const auto* first = static_cast<const host::u8*>(lock.address());
  const Bytes bytes(first, first + length);
  EXPECT_EQ(bytes, (ModelHeap{false, padded({{0x0816, texts({"longer.jpg"})}})}.build()));
}

}  // namespace

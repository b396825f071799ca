// Values as a list shows them and as an editor takes them.
#include "property/heap_text.h"

#include "tests/heap/heap_fields.h"

namespace {

using namespace test;
using property::HeapTextKind;
using property::HeapTextUse;
using testing::ElementsAre;

class HeapText : public HeapTest {
 protected:
  // The rows of record 1 of a heap, as "name string: text".
  static std::vector<std::string> rows(std::vector<ModelRecord> records,
                                       HeapTextUse use = HeapTextUse::display, host::i32 index = 1,
                                       bool bigEndian = false) {
    const Bytes bytes = ModelHeap{bigEndian, std::move(records)}.build();
    const auto heap = property::parseHeap(frame::resourceLibrary(), bytes);
    std::vector<std::string> result;
    for (host::u32 row = 0; row < property::heapRowCount(*heap, index); ++row) {
      const auto text = property::formatHeapRow(*heap, index, row, use);
      if (text) result.push_back(std::to_string(text->nameString) + ": " + text->text);
    }
    return result;
  }
  static HeapTextKind kindOf(const ModelRecord& record, host::u32 row) {
    const Bytes bytes = ModelHeap{false, {record}}.build();
    const auto heap = property::parseHeap(frame::resourceLibrary(), bytes);
    return property::formatHeapRow(*heap, 1, row, HeapTextUse::display)->kind;
  }
};

TEST_F(HeapText, ShowsEveryFormat) {
  EXPECT_THAT(rows({{0x1810, numbers32({0xFFFFFFFF, 768, 0x3FC00000, 0xFFFFFFA6, 8, 24, 2})}}),
              ElementsAre("2812: 4294967295", "2813: 768", "2814: 1.500000", "2815: -90", "2816: 8",
                          "2817: 24", "2818: 2 (high byte 0)"));
  EXPECT_THAT(rows({{0x5010, numbers16({0xFFFF, 1, 2, 3})}}), ElementsAre("2841: 65535"));
  EXPECT_THAT(rows({{0x0816, texts({"IMG.JPG"})}}), ElementsAre("2834: IMG.JPG"));
  EXPECT_THAT(rows({{0x080A, texts({"Maker", "Model"})}}),
              ElementsAre("2872: Maker", "2873: Model"));
  EXPECT_THAT(rows({{0x580B, numbers32({12, 0})}}), ElementsAre("2875: 12"));
}

TEST_F(HeapText, ShowsTheLabelsThatApply) {
  EXPECT_THAT(rows({{0x5803, numbers32({0x00010001, 0x40000000})}}),
              ElementsAre("2809: 65537 JPEG lossless", "2810: 2.000000"));
  EXPECT_THAT(rows({{0x5803, numbers32({0x00030009, 0})}}),
              ElementsAre("2809: 196617", "2810: 0.000000"));
  EXPECT_THAT(rows({{0x5803, numbers32({0x00010001, 0})}}, HeapTextUse::edit),
              ElementsAre("2809: 65537", "2810: 0.000000"))
      << "an editor gets the value alone";
  EXPECT_THAT(rows({{0x5011, numbers16({1, 0, 0, 0})}}),
              ElementsAre("2846: 1 (priority on the focus)"));
}

TEST_F(HeapText, ShowsTheHeader) {
  for (const bool bigEndian : {false, true}) {
    EXPECT_THAT(
        rows({}, HeapTextUse::display, 0, bigEndian),
        ElementsAre(bigEndian ? "2801: MM (big-endian)" : "2801: II (little-endian)", "2802: 26",
                    "2803: HEAP (heap)", "2804: JPGM (JPEG with camera data)", "2805: 65537"));
  }
}

TEST_F(HeapText, ShowsTheTimeLessItsZone) {
  const ModelRecord record = {0x180E, numbers32({972687386, 3600, 1})};
  const auto shown = rows({record});
  ASSERT_EQ(shown.size(), 3U);
  EXPECT_THAT(shown[0], testing::StartsWith("2831: 10/27/"));
  EXPECT_THAT(shown[0], testing::HasSubstr("   21:56:26"));
  EXPECT_EQ(shown[1], "2832: 3600");
  EXPECT_EQ(rows({record}, HeapTextUse::edit)[0], "2831: 10/27/2000 21:56:26");
}

TEST_F(HeapText, ListsUnknownRecordsByTheirType) {
  EXPECT_THAT(rows({{0x0899, texts({"text"})}}), ElementsAre("2610: text"));
  EXPECT_THAT(rows({{0x0099, texts({"bytes"})}}), ElementsAre("2610: bytes"));
  EXPECT_THAT(rows({{0x1099, numbers16({1, 0xFFFF, 3})}}),
              ElementsAre("2610: 1", "2610: 65535", "2610: 3"));
  EXPECT_THAT(rows({{0x5899, numbers32({7, 0xFFFFFFFF})}}),
              ElementsAre("2610: 7", "2610: 4294967295"));
  EXPECT_THAT(rows({{0x2099, {1, 2, 3, 4}}}), ElementsAre());
  EXPECT_THAT(rows({{0x3899, {1, 2, 3, 4}}}), ElementsAre());
}

TEST_F(HeapText, ListsNothingOfSubHeapsAndBeyondShortValues) {
  EXPECT_THAT(rows({{0x3004, {}, {}}}), ElementsAre());
  EXPECT_THAT(rows({{0x7004, texts({"1234567"})}}), ElementsAre());
  EXPECT_THAT(rows({{0x1810, numbers32({1, 2})}}), ElementsAre("2812: 1", "2813: 2"));
  EXPECT_THAT(rows({{0x0816, {}}}), ElementsAre());
}

TEST_F(HeapText, TellsTheKindOfAValue) {
  EXPECT_EQ(kindOf({0x0816, texts({"IMG.JPG"})}, 0), HeapTextKind::text);
  EXPECT_EQ(kindOf({0x080A, texts({"a", "b"})}, 1), HeapTextKind::text);
  EXPECT_EQ(kindOf({0x180E, numbers32({1, 0, 0})}, 0), HeapTextKind::time);
  EXPECT_EQ(kindOf({0x180E, numbers32({1, 0, 0})}, 1), HeapTextKind::binary);
  EXPECT_EQ(kindOf({0x5813, reals({1, 2})}, 0), HeapTextKind::binary);
}

TEST_F(HeapText, NamesRecordsByTheirDefinition) {
  const Bytes bytes = ModelHeap{false, {{0x0816, texts({"a"})}, {0x0899, {}}}}.build();
  const auto heap = property::parseHeap(frame::resourceLibrary(), bytes);
  EXPECT_EQ(property::heapRecordName(heap->record(0)), 2800);
  EXPECT_EQ(property::heapRecordName(heap->record(1)), 2834);
  EXPECT_EQ(property::heapRecordName(heap->record(2)), 2610);
}

}  // namespace

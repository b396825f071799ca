// A heap as property fields.
#include "property/heap_expansion.h"

#include "host/file_data.h"
#include "tests/heap/heap_fields.h"
#include "tests/heap/known_items.h"

namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

class HeapExpansion : public HeapTest {};

std::string resourceText(unsigned id) {
  char text[256] = {};
  LoadStringA(frame::resourceLibrary(), id, text, sizeof text);
  return text;
}

std::vector<host::u16> idsOf(const PropertyHolder& property) {
  std::vector<host::u16> ids;
  for (const HeldField& field : property.fields()) ids.push_back(field.id);
  return ids;
}

Bytes heapOf(std::vector<ModelRecord> records, bool bigEndian = false) {
  return ModelHeap{bigEndian, std::move(records)}.build();
}

TEST_F(HeapExpansion, MakesAFieldOfEveryKnownItemInBothByteOrders) {
  for (const KnownRecord& known : knownRecords) {
    for (const bool bigEndian : {false, true}) {
      SCOPED_TRACE(testing::Message() << std::hex << known.tag << " big-endian " << bigEndian);
      const Bytes value = knownValue(known);
      PropertyHolder property;
      ASSERT_EQ(property.expand(heapOf({wrapped(known, value)}, bigEndian)), 1);
      std::vector<host::u16> expectedIds = {3999, 5000};
      for (host::u16 item = 0; item < known.formats.size(); ++item) {
        const char format = known.formats[item];
        if (format == 's') continue;
        const auto id = static_cast<host::u16>(2201 + known.base + item);
        expectedIds.push_back(id);
        const auto field = property.field(id);
        ASSERT_TRUE(field.has_value());
        EXPECT_EQ(field->kind, fieldKind(format));
        EXPECT_EQ(field->name,
                  resourceText(known.ownName[item] == 'r' ? known.base : known.base + item + 1U));
        EXPECT_FALSE(field->name.empty());
        if (field->kind == 16) {
          EXPECT_EQ(field->number, numberAt(value, item, 2));
        }
        if (field->kind == 2 || field->kind == 3) {
          EXPECT_EQ(field->number, numberAt(value, item, 4));
        }
        if (format == '-') {
          EXPECT_EQ(field->text, "Some text");
        }
        if (format == '.') {
          EXPECT_EQ(field->text, item == 0 ? "Maker" : "Model X");
        }
        EXPECT_EQ(field->dataSize, field->kind == 1 ? field->text.size() : 0U);
      }
      EXPECT_EQ(idsOf(property), expectedIds);
    }
  }
}

TEST_F(HeapExpansion, KeepsTheHeapItselfInFrontOfItsItems) {
  const Bytes heap = heapOf({{0x5804, numbers32({7, 0})}});
  PropertyHolder property;
  ASSERT_EQ(property.expand(heap), 1);
  const auto fields = property.fields();
  ASSERT_EQ(fields.size(), 3U);
  EXPECT_EQ(fields[1].id, 5000);
  EXPECT_EQ(fields[1].kind, host::kindBlock);
  EXPECT_EQ(fields[1].group, 0);
  EXPECT_EQ(fields[1].name, resourceText(2800));
  EXPECT_EQ(fields[1].dataSize, heap.size() + 4);
  EXPECT_EQ(Bytes(fields[1].block.begin(), fields[1].block.begin() + 4),
            numbers32({static_cast<host::u32>(heap.size())}));
  EXPECT_EQ(property.heap(), heap);
}

TEST_F(HeapExpansion, GroupsDescriptionAndOwner) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf({{0x0805, texts({"a"})},
                                    {0x0816, texts({"b"})},
                                    {0x2807, {}, {{0x0810, texts({"c"})}}}})),
            1);
  EXPECT_EQ(property.field(2201 + 2838)->group, 102);
  EXPECT_EQ(property.field(2201 + 2834)->group, 0);
  EXPECT_EQ(property.field(2201 + 2869)->group, 100);
}

TEST_F(HeapExpansion, AddsBehindTheFieldsThatAreThere) {
  PropertyHolder property;
  property.addText(1234, "kept");
  ASSERT_EQ(property.expand(heapOf({{0x5804, numbers32({7, 0})}})), 1);
  EXPECT_THAT(idsOf(property), ElementsAre(3999, 1234, 5000, 5025));
  EXPECT_EQ(property.field(1234)->text, "kept");
  EXPECT_EQ(property.field(5025)->number, 7U);
}

TEST_F(HeapExpansion, ReservesAFieldForTheHeapAndEveryItem) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf({{0x1810, numbers32({1, 2, 3, 4, 5, 6, 7})},
                                    {0x3002, {}, {{0x5813, reals({1, 2})}}},
                                    {0x0099, {1, 2}}})),
            1);
  EXPECT_THAT(doubles::state().calls, ElementsAre("Prop_ReAllocFieldSpace:10"));
  const platform::LockedGlobal lock(property.handle());
  EXPECT_GE(lock.size(), (1U + 10U) * 88 + 96);
}

TEST_F(HeapExpansion, FollowsTheOrderOfTheRecords) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf({{0x2807, {}, {{0x3004, {}, {{0x080B, texts({"v"})}}}}},
                                    {0x5817, numbers32({1, 0})},
                                    {0x5804, numbers32({2, 0})},
                                    {0x5817, numbers32({3, 0})}})),
            1);
  EXPECT_THAT(idsOf(property), ElementsAre(3999, 5000, 5084, 5028, 5025, 5028));
}

TEST_F(HeapExpansion, MakesNoFieldsOfHeaderSubHeapsAndUnknownRecords) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf({{0x0000, {1, 2}},
                                    {0x0001, {1, 2}},
                                    {0x3002, {}, {}},
                                    {0x3004, {}, {}},
                                    {0x7004, {'t', 'e', 'x', 't', 0, 0, 0, 0}},
                                    {0x0099, texts({"text"})}})),
            1);
  EXPECT_THAT(idsOf(property), ElementsAre(3999, 5000));
}

TEST_F(HeapExpansion, LeavesOutItemsBeyondAShortValue) {
  PropertyHolder property;
  ASSERT_EQ(
      property.expand(
          RawHeap().bytes(numbers32({1, 2, 3})).table({{0x1810, 11, 0}, {0x102A, 3, 0}}).build()),
      1);
  EXPECT_THAT(idsOf(property), ElementsAre(3999, 5000, 5012, 5013));
  PropertyHolder ofTexts;
  ASSERT_EQ(ofTexts.expand(heapOf({{0x0816, {}},
                                   {0x0817, {'n', 'o', 'n', 'u', 'l', '!'}},
                                   {0x0805, {0, 0}},
                                   {0x2807, {}, {{0x080A, {'M', 0}}}}})),
            1);
  EXPECT_THAT(idsOf(ofTexts), ElementsAre(3999, 5000, 5037, 5039, 5072));
  EXPECT_EQ(ofTexts.field(5037)->text, "nonul!");
  EXPECT_EQ(ofTexts.field(5039)->text, "");
  EXPECT_EQ(ofTexts.field(5072)->text, "M");
}

TEST_F(HeapExpansion, ReadsValuesWhereverTheyLie) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf({{0x1803, numbers32({5, 6})},
                                    {0x4816, {'I', 'M', 'G', '_', '1', '2', '3', '4'}},
                                    {0x5810, numbers32({8, 9})}})),
            1);
  EXPECT_EQ(property.field(5009)->number, 5U);
  EXPECT_EQ(property.field(5010)->number, 6U);
  EXPECT_EQ(property.field(5035)->text, "IMG_1234") << "eight bytes at the most";
  EXPECT_EQ(property.field(5013)->number, 9U);
  EXPECT_FALSE(property.field(5014).has_value());
}

struct Moment {
  host::u32 seconds;
  host::u32 zone;
  host::u32 flags;
  int year, month, day, hour, minute, second;
};
const Moment moments[] = {
    {972687386, 0, 0, 2000, 10, 27, 22, 56, 26},
    {972687386, 3600, 0, 2000, 10, 27, 22, 56, 26},
    {972687386, 3600, 1, 2000, 10, 27, 21, 56, 26},
    {972687386, 0xFFFFF1F0, 1, 2000, 10, 27, 23, 56, 26},
    {972687386, 3600, 2, 2000, 10, 27, 22, 56, 26},
    {315532800, 0, 0, 1980, 1, 1, 0, 0, 0},
    {951826619, 0, 0, 2000, 2, 29, 12, 16, 59},
    {0, 0, 0, 1970, 1, 1, 0, 0, 0},
    {2147483647, 86400, 1, 2038, 1, 18, 3, 14, 7},
};

TEST_F(HeapExpansion, ReadsTheCapturedTimeLessItsZone) {
  for (const Moment& moment : moments) {
    for (const bool bigEndian : {false, true}) {
      SCOPED_TRACE(moment.seconds);
      PropertyHolder property;
      ASSERT_EQ(property.expand(heapOf(
                    {{0x180E, numbers32({moment.seconds, moment.zone, moment.flags})}}, bigEndian)),
                1);
      const int date = ((moment.year - 1980) & 127) << 9 | moment.month << 5 | moment.day;
      const int time = moment.hour << 11 | moment.minute << 5 | moment.second / 2;
      ASSERT_TRUE(property.field(5031).has_value());
      EXPECT_EQ(property.field(5031)->kind, host::kindDateTime);
      EXPECT_EQ(property.field(5031)->number & 0xFFFF, static_cast<unsigned>(date));
      EXPECT_EQ(property.field(5031)->number >> 16, static_cast<unsigned>(time));
      EXPECT_EQ(property.field(5032)->number, moment.zone);
      EXPECT_EQ(property.field(5033)->number, moment.flags);
    }
  }
}

TEST_F(HeapExpansion, MakesNoFieldOfATimeBefore1970) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf({{0x180E, numbers32({100, 3600, 1})}})), 1);
  EXPECT_THAT(idsOf(property), ElementsAre(3999, 5000, 5032, 5033));
  PropertyHolder late;
  ASSERT_EQ(late.expand(heapOf({{0x180E, numbers32({0x80000000, 0, 0})}})), 1);
  EXPECT_FALSE(late.field(5031).has_value());
}

TEST_F(HeapExpansion, TakesNoZoneFromAValueWithoutItsFlag) {
  PropertyHolder property;
  ASSERT_EQ(property.expand(heapOf(
                {{0x180E, numbers32({972687386, 3600})}, {0x580E, numbers32({972687386, 3600})}})),
            1);
  const auto fields = property.fields();
  ASSERT_EQ(fields.size(), 6U);
  EXPECT_EQ(fields[2].number, fields[4].number);
  EXPECT_EQ(fields[2].number & 0xFFFF, 20U << 9 | 10 << 5 | 27);
  EXPECT_EQ(fields[2].number >> 16, 22U << 11 | 56 << 5 | 13);
}

TEST_F(HeapExpansion, MakesNothingOfABrokenHeap) {
  Bytes heap = heapOf({{0x5804, numbers32({7, 0})}});
  heap.back() = 0xFF;
  PropertyHolder property;
  EXPECT_EQ(property.expand(heap), 0);
  EXPECT_EQ(property.handle(), nullptr);
  EXPECT_THAT(doubles::state().calls, IsEmpty());
}

TEST_F(HeapExpansion, UsesAsManyBytesAsItIsTold) {
  const Bytes heap = heapOf({{0x5804, numbers32({7, 0})}});
  Bytes longer = heap;
  longer.resize(longer.size() + 10, 0xEE);
  PropertyHolder property;
  const auto length = static_cast<host::u16>(heap.size());
  EXPECT_EQ(property::expandHeap(frame::resourceLibrary(), longer, length, property.slot()), 1);
  EXPECT_EQ(property.heap(), heap);
  PropertyHolder cut;
  const std::span<const host::u8> bytes = heap;
  EXPECT_EQ(property::expandHeap(frame::resourceLibrary(), bytes.first(heap.size() - 1), length,
                                 cut.slot()),
            0)
      << "the file ends before the heap";
  EXPECT_EQ(cut.handle(), nullptr);
}

TEST_F(HeapExpansion, ReportsARefusedReservation) {
  doubles::state().refuseReservation = true;
  PropertyHolder property;
  EXPECT_EQ(property.expand(heapOf({{0x5804, numbers32({7, 0})}})), 0);
  EXPECT_EQ(property.handle(), nullptr);
  ASSERT_EQ(doubles::state().reports.size(), 1U);
  const host::ErrorReport& report = doubles::state().reports[0];
  EXPECT_EQ(report.code, 1004);
  EXPECT_EQ(report.unit, 870);
  EXPECT_EQ(report.source, 873);
}

TEST_F(HeapExpansion, WorksOnASlotInAPackedRecord) {
  host::FileDataRecord record = {};
  auto* slot = reinterpret_cast<HGLOBAL*>(reinterpret_cast<host::u8*>(&record) +
                                          offsetof(host::FileDataRecord, propertyRecord));
  const Bytes heap = heapOf({{0x5804, numbers32({7, 0})}});
  EXPECT_EQ(property::expandHeap(frame::resourceLibrary(), heap,
                                 static_cast<host::u16>(heap.size()), slot),
            1);
  const host::u64 stored = record.propertyRecord;
  EXPECT_NE(stored, 0U);
  doubles::freeProperty(reinterpret_cast<HGLOBAL>(stored));
}

}  // namespace

// Edited fields on their way back into the heap.
#include "property/heap_write_back.h"

#include "tests/heap/heap_fields.h"
#include "tests/heap/known_items.h"

namespace {

using namespace test;

class HeapWriteBack : public HeapTest {};

using Records = std::vector<ModelRecord>;

TEST_F(HeapWriteBack, TakesNoRecordAndNoHeapForDone) {
  EXPECT_TRUE(property::writeHeapBack(frame::resourceLibrary(), nullptr));
  PropertyHolder property;
  property.addNumber(5025, 2, 1);
  EXPECT_TRUE(writeBack(property));
  EXPECT_EQ(property.fields().size(), 2U);
}

TEST_F(HeapWriteBack, RefusesABrokenHeap) {
  PropertyHolder property;
  property.addHeap({1, 2, 3});
  EXPECT_FALSE(writeBack(property));
  PropertyHolder empty;
  empty.addNumber(5000, host::kindBlock, 0);
  EXPECT_FALSE(writeBack(empty));
}

TEST_F(HeapWriteBack, LeavesAHeapWithoutFieldsAsItIs) {
  // A layout that would be written differently.
  const Bytes heap = RawHeap().bytes({1, 0xEE}).table({{0x0816, 1, 0}}).build();
  EXPECT_EQ(edited(heap, [](PropertyHolder& property) { property.addNumber(4999, 2, 1); }), heap);
}

// Every item of every record: read, edited, written and read again, in both byte orders. Dates,
// which change on their way, have tests of their own.
TEST_F(HeapWriteBack, WritesEveryKnownItem) {
  for (const KnownRecord& known : knownRecords) {
    for (host::u16 item = 0; item < known.formats.size(); ++item) {
      for (const bool bigEndian : {false, true}) {
        const char format = known.formats[item];
        if (format == 's' || known.tag == 0x180E) continue;
        SCOPED_TRACE(testing::Message() << std::hex << known.tag << " item " << item);
        const bool isText = fieldKind(format) == 1;
        const std::size_t width = fieldKind(format) == 16 ? 2 : 4;
        const host::u32 number = width == 2 ? 0xABCD : 0xA1B2C3D4;
        Bytes value = knownValue(known);
        if (format == '-') value = texts({"A longer text"});
        if (format == '.' && item == 0) value = texts({"A longer text", "Model X"});
        if (format == '.' && item == 1) value = texts({"Maker", "A longer text"});
        for (std::size_t i = 0; !isText && i < width; ++i) {
          value[item * width + i] = static_cast<host::u8>(number >> (8 * i));
        }

        PropertyHolder property;
        ASSERT_EQ(
            property.expand(ModelHeap{bigEndian, {wrapped(known, knownValue(known))}}.build()), 1);
        const auto id = static_cast<host::u16>(2201 + known.base + item);
        isText ? property.setText(id, "A longer text") : property.setNumber(id, number);
        ASSERT_TRUE(writeBack(property));
        EXPECT_EQ(property.heap(), (ModelHeap{bigEndian, {wrapped(known, value)}}.build()));

        PropertyHolder again;
        ASSERT_EQ(again.expand(property.heap()), 1);
        EXPECT_EQ(again.field(id)->text, isText ? "A longer text" : "");
        if (!isText) {
          EXPECT_EQ(again.field(id)->number, number);
        }
      }
    }
  }
}

TEST_F(HeapWriteBack, WritesTheNumbersBesideADate) {
  for (const bool bigEndian : {false, true}) {
    const Bytes heap = edited(ModelHeap{bigEndian, {{0x180E, numbers32({1, 2, 3})}}}.build(),
                              [](PropertyHolder& property) {
                                property.addNumber(5032, 2, 0xFFFFFFFE);
                                property.addNumber(5033, 2, 0x80000001);
                              });
    EXPECT_EQ(heap,
              (ModelHeap{bigEndian, {{0x180E, numbers32({1, 0xFFFFFFFE, 0x80000001})}}}.build()));
  }
}

// The kind of the field says how the number is written, whatever the item's own format is.
TEST_F(HeapWriteBack, WritesNumbersInTheWidthOfTheirFieldsKind) {
  const Records before = {{0x5803, numbers32({0x11111111, 0x22222222})}};
  const auto after = [&](host::u16 id, host::u16 kind) {
    return recordsAfterNumber(before, id, kind, 0xA1B2C3D4)[0].value;
  };
  EXPECT_EQ(after(5009, 2), numbers32({0xA1B2C3D4, 0x22222222}));
  EXPECT_EQ(after(5010, 3), numbers32({0x11111111, 0xA1B2C3D4}));
  EXPECT_EQ(after(5010, 4), numbers32({0x11111111, 0xA1B2C3D4}));
  EXPECT_EQ(after(5009, 15), numbers32({0x1111C3D4, 0x22222222}));
  EXPECT_EQ(after(5010, 16), numbers32({0xC3D41111, 0x22222222}));
}

TEST_F(HeapWriteBack, TakesNoFieldsOfOtherKinds) {
  const Bytes heap = RawHeap().bytes({1, 0xEE}).table({{0x0816, 1, 0}}).build();
  for (const host::u16 kind : std::initializer_list<host::u16>{0, 5, 7, 14, 17}) {
    EXPECT_EQ(edited(heap, [&](PropertyHolder& property) { property.addNumber(5025, kind, 0); }),
              heap);
  }
  EXPECT_EQ(edited(heap, [](PropertyHolder& property) { property.addNumber(5035, 1, 0); }), heap)
      << "a text field without a text";
}

TEST_F(HeapWriteBack, LeavesItemsBeyondTheValueAlone) {
  const Records before = {{0x1810, numbers32({1, 2, 3})}, {0x2807, {}, {{0x080A, {'M', 0}}}}};
  EXPECT_EQ(recordsAfterNumber(before, 5015, 2, 9), before);
  EXPECT_EQ(recordsAfterNumber(before, 5014, 2, 9)[0].value, numbers32({1, 2, 9}));
  EXPECT_EQ(recordsAfterText(before, 5073, "Model"), before);
}

TEST_F(HeapWriteBack, EditsTheFirstRecordOfItsKind) {
  const Records before = {{0x2807, {}, {{0x5804, numbers32({1, 0})}}},
                          {0x5804, numbers32({2, 0})},
                          {0x1804, numbers32({3, 0})}};
  Records expected = before;
  expected[0].children[0].value = numbers32({9, 0});
  EXPECT_EQ(recordsAfterNumber(before, 5025, 2, 9), expected) << "wherever it lies";
}

TEST_F(HeapWriteBack, GrowsAndShrinksTexts) {
  const auto recordsWith = [](const Bytes& owner) {
    return Records{{0x0816, texts({"odd"})},
                   {0x2807, {}, {{0x0810, owner}, {0x0099, {1, 2, 3, 4}}}},
                   {0x0817, texts({"behind"})},
                   {0x1810, numbers32({1, 2, 3, 4, 5, 6, 7})}};
  };
  const Records before = recordsWith(texts({"12345"}));
  for (const std::string_view text :
       {"1234", "123456", "", "1234567890123456789012345678901234567890", "a", "54321"}) {
    EXPECT_EQ(recordsAfterText(before, 5070, text), padded(recordsWith(texts({text})))) << text;
  }
  const std::string many(5000, 'x');
  EXPECT_EQ(recordsAfterText(before, 5070, many), padded(recordsWith(texts({many}))));
}

TEST_F(HeapWriteBack, KeepsWhatFollowsAText) {
  const auto recordsWith = [](std::string_view first, std::string_view second) {
    Bytes value = texts({first, second});
    value.resize(value.size() + 9);
    return padded({{0x2807, {}, {{0x080A, value}}}, {0x0816, texts({"next"})}});
  };
  EXPECT_EQ(recordsAfterText(recordsWith("Maker", "Model"), 5072, "M"), recordsWith("M", "Model"));
  EXPECT_EQ(recordsAfterText(recordsWith("Maker", "Model"), 5073, "Model 500 of them"),
            recordsWith("Maker", "Model 500 of them"));
}

TEST_F(HeapWriteBack, EndsTextsThatFillTheirValue) {
  const auto recordsWith = [](Bytes value) {
    return Records{{0x0816, std::move(value)}, {0x0817, texts({"next!"})}};
  };
  const Records full = recordsWith({'f', 'u', 'l', 'l'});
  EXPECT_EQ(recordsAfterText(full, 5035, "FULL"), recordsWith({'F', 'U', 'L', 'L'}));
  EXPECT_EQ(recordsAfterText(full, 5035, "abc"), recordsWith({'a', 'b', 'c', 0}));
  EXPECT_EQ(recordsAfterText(full, 5035, "abcde"), recordsWith({'a', 'b', 'c', 'd', 'e', 0}));
}

TEST_F(HeapWriteBack, WritesEightBytesOfTextIntoAnEntry) {
  const auto recordsWith = [](std::string_view text) {
    Bytes value = bytesOf(text);
    value.resize(8);
    return Records{{0x4816, value}};
  };
  EXPECT_EQ(recordsAfterText(recordsWith("12345678"), 5035, "abc"), recordsWith("abc"));
  EXPECT_EQ(recordsAfterText(recordsWith("abc"), 5035, "1234567890"), recordsWith("12345678"));
}

TEST_F(HeapWriteBack, WritesTextsIntoNumbersWhenTheFieldSaysSo) {
  EXPECT_EQ(recordsAfterText({{0x5804, numbers32({1, 2})}}, 5025, "12345678")[0].value,
            bytesOf("12345678"));
}

TEST_F(HeapWriteBack, MakesMissingRecordsAndTheirParents) {
  for (const KnownRecord& known : knownRecords) {
    const std::size_t unit = (known.tag & 0x3800) == 0x1000 ? 2 : 4;
    for (host::u16 item = 0; item < known.formats.size(); ++item) {
      SCOPED_TRACE(testing::Message() << std::hex << known.tag << " item " << item);
      const auto id = static_cast<host::u16>(2201 + known.base + item);
      const Records before = {{0x0099, {1, 2}}};
      Records expected = before;
      if ((known.tag & 0x3800) == 0x0800) {
        Bytes value = item == 0 ? texts({"new"}) : texts({"", "new"});
        if (item == 0) value.push_back(0);  // what the new value of two zeros still held
        expected.push_back(wrapped(known, value));
        EXPECT_EQ(recordsAfterText(before, id, "new"), padded(expected));
        continue;
      }
      Bytes value((known.tag & 0xC000) != 0 ? 8 : unit * known.formats.size());
      value[item * unit] = 0x44;
      value[item * unit + 1] = 0x33;
      expected.push_back(wrapped(known, value));
      EXPECT_EQ(recordsAfterNumber(before, id, unit == 2 ? 16 : 2, 0x3344), expected);
    }
  }
}

TEST_F(HeapWriteBack, MakesRecordsUnderParentsThatAreThere) {
  const Records before = {{0x2807, {}, {{0x0810, texts({"own"})}}}, {0x5804, numbers32({1, 0})}};
  Records expected = before;
  expected[0].children.push_back({0x3004, {}, {{0x580B, numbers32({77, 0})}}});
  EXPECT_EQ(recordsAfterNumber(before, 5076, 2, 77), expected);
}

TEST_F(HeapWriteBack, TakesNoEntryForASubHeap) {
  const Records before = {{0x7002, numbers32({1, 2})}};
  Records expected = before;
  expected.push_back({0x3002, {}, {{0x5805, numbers32({5, 0})}}});
  EXPECT_EQ(recordsAfterNumber(before, 5052, 2, 5), expected);
}

TEST_F(HeapWriteBack, MakesAnEmptySubHeapForItsOwnItem) {
  EXPECT_EQ(recordsAfterText({}, 5075, "no text"), (Records{{0x2807, {}, {{0x3004}}}}));
}

TEST_F(HeapWriteBack, MakesNoBlockBelowTheDeepest) {
  Records records = {{0x2807, {}, {}}};
  for (int level = 2; level < 16; ++level) records = {{0x2801, {}, std::move(records)}};
  EXPECT_FALSE(recordsAfterText(records, 5070, "owner").empty()) << "the sixteenth block";
  EXPECT_TRUE(recordsAfterNumber(records, 5076, 2, 1).empty()) << "would be the seventeenth";
  EXPECT_TRUE(doubles::state().reports.empty());
}

TEST_F(HeapWriteBack, EditsTheHeader) {
  const auto headerAfter = [&](host::u16 id, std::string_view text) {
    const Bytes heap =
        edited(ModelHeap{}.build(), [&](PropertyHolder& property) { property.addText(id, text); });
    return Bytes(heap.begin(), heap.begin() + 26);
  };
  const auto headerWith = [](std::size_t offset, const Bytes& bytes) {
    Bytes header = ModelHeap{}.build();
    header.resize(26);
    std::copy(bytes.begin(), bytes.end(), header.begin() + static_cast<std::ptrdiff_t>(offset));
    return header;
  };
  EXPECT_EQ(headerAfter(5003, "ABCDE"), headerWith(6, bytesOf("ABCD")));
  EXPECT_EQ(headerAfter(5004, "AB"), headerWith(10, {'A', 'B', 0, 0}));
  EXPECT_EQ(headerAfter(5001, "I"), headerWith(0, {}));
  const auto numberAfter = [&](host::u16 id) {
    const Bytes heap = edited(ModelHeap{}.build(), [&](PropertyHolder& property) {
      property.addNumber(id, 2, 0xA1B2C3D4);
    });
    return Bytes(heap.begin(), heap.begin() + 26);
  };
  const std::size_t offsets[] = {2, 6, 10, 14, 18, 22};
  for (host::u16 item = 1; item <= 6; ++item) {
    EXPECT_EQ(numberAfter(static_cast<host::u16>(5001 + item)),
              headerWith(offsets[item - 1], numbers32({0xA1B2C3D4})));
  }
}

TEST_F(HeapWriteBack, TurnsTheWholeHeapWhenItsByteOrderIsEdited) {
  const Records records = {{0x1810, numbers32({1, 2, 3, 4, 5, 6, 7})},
                           {0x102A, numbers16({1, 2, 3})},
                           {0x5011, numbers16({1, 2, 3, 4})},
                           {0x2807, {}, {{0x080A, texts({"a", "b"})}}}};
  for (const bool bigEndian : {false, true}) {
    const Bytes heap = ModelHeap{bigEndian, records}.build();
    const auto withOrder = [&](std::string_view order) {
      return edited(heap, [&](PropertyHolder& property) { property.addText(5001, order); });
    };
    EXPECT_EQ(withOrder("MM"), (ModelHeap{true, records}.build()));
    EXPECT_EQ(withOrder("II"), (ModelHeap{false, records}.build()));
    EXPECT_EQ(withOrder("any"), (ModelHeap{true, records}.build()));
    EXPECT_EQ(withOrder(""), (ModelHeap{true, records}.build()));
    EXPECT_EQ(edited(heap, [](PropertyHolder& property) { property.addNumber(5001, 16, 0x4949); }),
              (ModelHeap{false, records}.build()));
  }
}

TEST_F(HeapWriteBack, RefusesValuesOverSixtyFiveThousandBytes) {
  const auto isTaken = [](std::size_t bytesOfOther, host::u16 id, std::size_t length) {
    const ModelHeap heap = {false, {{0x0816, texts({"names"})}, {0x0099, Bytes(bytesOfOther)}}};
    return !edited(heap.build(), [&](PropertyHolder& property) {
              property.addText(id, std::string(length, 'x'));
            }).empty();
  };
  const std::size_t free = 65535 - 26 - 60000 - 1;
  EXPECT_TRUE(isTaken(60000, 5035, free));
  EXPECT_FALSE(isTaken(60000, 5035, free + 1));
  EXPECT_TRUE(isTaken(65535 - 26 - 6 - 3, 5037, 1)) << "a new record takes two bytes";
  EXPECT_FALSE(isTaken(65535 - 26 - 6 - 1, 5037, 1));
  EXPECT_TRUE(doubles::state().reports.empty()) << "a refusal is silent";
}

TEST_F(HeapWriteBack, KeepsTheHeadOfAWholeSegment) {
  PropertyHolder property;
  const Records records = {{0x0816, texts({"names"})}};
  property.addSegment(ModelHeap{false, records}.build());
  const std::string name(700, 'n');  // a length of two bytes
  property.addText(5035, name);
  ASSERT_TRUE(writeBack(property));
  const Bytes expected = ModelHeap{false, padded({{0x0816, texts({name})}})}.build();
  EXPECT_EQ(property.heap(), expected);
  const auto field = property.field(5000);
  const std::size_t length = expected.size() + 2;
  EXPECT_EQ(Bytes(field->block.begin(), field->block.begin() + 4),
            (Bytes{0xFF, 0xE0, static_cast<host::u8>(length >> 8), static_cast<host::u8>(length)}));
  EXPECT_EQ(field->dataSize, expected.size() + 4);
}

TEST_F(HeapWriteBack, RefusesAHeapThatFitsNoSegment) {
  const Records records = {{0x0816, texts({"names"})}, {0x0099, Bytes(60000)}};
  const Bytes heap = ModelHeap{false, records}.build();
  const std::size_t rest = 65533 - (heap.size() - 6);
  for (const bool fits : {true, false}) {
    PropertyHolder property;
    property.addSegment(heap);
    property.addText(5035, std::string(fits ? rest - 2 : rest - 1, 'x'));
    EXPECT_EQ(writeBack(property), fits);
    EXPECT_EQ(property.heap() != heap, fits);
  }
}

TEST_F(HeapWriteBack, StoresAShorterHeapInPlace) {
  PropertyHolder property;
  property.addHeap(ModelHeap{false, {{0x0816, texts({"a long enough name."})}}}.build());
  property.addText(5035, "short");
  const auto before = property.field(5000)->number;
  ASSERT_TRUE(writeBack(property));
  const Bytes expected = ModelHeap{false, {{0x0816, texts({"short"})}}}.build();
  EXPECT_EQ(property.heap(), expected);
  const auto field = property.field(5000);
  EXPECT_EQ(field->number, before) << "the same block";
  EXPECT_EQ(Bytes(field->block.begin(), field->block.begin() + 4),
            numbers32({static_cast<host::u32>(expected.size())}));
}

TEST_F(HeapWriteBack, ChangesTheFirstHeapFieldOnly) {
  PropertyHolder property;
  const Bytes heap = ModelHeap{false, {{0x0816, texts({"names"})}}}.build();
  property.addSegment(heap);
  ASSERT_EQ(property.expand(heap), 1);
  property.setText(5035, "other");
  ASSERT_TRUE(writeBack(property));
  EXPECT_EQ(property.heap(), (ModelHeap{false, {{0x0816, texts({"other"})}}}.build()));
  const auto fields = property.fields();
  EXPECT_EQ(Bytes(fields[2].block.begin() + 4, fields[2].block.end()), heap);
}

TEST_F(HeapWriteBack, TakesFieldsInTheirOrder) {
  const Bytes heap = edited(ModelHeap{}.build(), [](PropertyHolder& property) {
    property.addNumber(5025, 2, 1);
    property.addNumber(5025, 2, 2);
    property.addNumber(5028, 2, 3);
  });
  EXPECT_EQ(parsed(heap)->records,
            (Records{{0x5804, numbers32({2, 0})}, {0x5817, numbers32({3, 0})}}));
}

}  // namespace

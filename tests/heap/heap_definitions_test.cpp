// The table of known records and the label lists, against a listing of their own.
#include "property/heap_definitions.h"

#include "tests/heap/heap_fields.h"

namespace {

using namespace property;
using test::HeapTest;

class HeapDefinitions : public HeapTest {};

// Formats by character: s is skipped, a small letter before a character means the record's name.
struct ListedRow {
  unsigned kind, tag, parent, items, base;
  const char* formats;
};
constexpr ListedRow listedRows[] = {
    {2, 0x0000, 0, 7, 2800, "2 + 4 4 + s s"},
    {0, 0x0000, 0, 0, 2601, ""},
    {0, 0x0001, 0, 0, 2602, ""},
    {0, 0x5803, 0, 2, 2808, "+ ,"},
    {0, 0x1810, 0, 7, 2811, "+ + , ) + + +"},
    {0, 0x500A, 0, 4, 2819, "r* s s s"},
    {0, 0x5804, 0, 2, 2824, "r+ s"},
    {0, 0x5817, 0, 2, 2827, "r+ s"},
    {0, 0x180E, 0, 3, 2830, "/ ) +"},
    {0, 0x0816, 0, 1, 2834, "r-"},
    {0, 0x0817, 0, 1, 2836, "r-"},
    {0, 0x0805, 0, 1, 2838, "r-"},
    {0, 0x3002, 0, 0, 2840, ""},
    {0, 0x5010, 12, 4, 2841, "r* s s s"},
    {0, 0x5011, 12, 4, 2846, "r* s s s"},
    {0, 0x5805, 12, 2, 2851, "r+ s"},
    {0, 0x5813, 12, 2, 2854, ", ,"},
    {0, 0x1818, 12, 3, 2857, ", , ,"},
    {0, 0x5807, 12, 2, 2861, ", s"},
    {0, 0x3003, 0, 0, 2864, ""},
    {0, 0x5814, 19, 2, 2865, "r, s"},
    {0, 0x2807, 0, 0, 2868, ""},
    {0, 0x0810, 21, 1, 2869, "r-"},
    {0, 0x080A, 21, 2, 2871, ". ."},
    {0, 0x3004, 21, 1, 2874, "-"},
    {0, 0x580B, 24, 2, 2875, "r+ s"},
    {0, 0x501C, 24, 4, 2878, "+ s s s"},
    {0, 0x080B, 24, 1, 2883, "r-"},
};

std::string formatsOf(host::i32 row) {
  std::string formats;
  for (host::u32 item = 0; item < heapRow(row).itemCount; ++item) {
    const HeapItem entry = {row, item};
    if (item != 0) formats += ' ';
    if (entry.nameString() == heapRow(row).baseString) formats += 'r';
    const auto format = static_cast<host::u8>(entry.format());
    formats += format == 0x7F ? 's' : static_cast<char>(format < 10 ? format + '0' : format);
  }
  return formats;
}

TEST_F(HeapDefinitions, ListTwentyEightRecords) {
  ASSERT_EQ(heapRows().size(), std::size(listedRows));
  for (std::size_t i = 0; i < std::size(listedRows); ++i) {
    SCOPED_TRACE(i);
    const HeapRow& row = heapRows()[i];
    EXPECT_EQ(row.kind, listedRows[i].kind);
    EXPECT_EQ(row.tag, listedRows[i].tag);
    EXPECT_EQ(row.parentRow, listedRows[i].parent);
    EXPECT_EQ(row.itemCount, listedRows[i].items);
    EXPECT_EQ(row.baseString, listedRows[i].base);
    EXPECT_EQ(formatsOf(static_cast<host::i32>(i)), listedRows[i].formats);
  }
}

TEST_F(HeapDefinitions, NumberTheItemsFieldsFromTheStringIds) {
  for (host::u16 id = 0; id < 10000; ++id) {
    int row = -1;
    int item = -1;
    for (std::size_t i = 0; i < std::size(listedRows); ++i) {
      const int number = id - 2201 - static_cast<int>(listedRows[i].base);
      if (number < 0 || number >= static_cast<int>(listedRows[i].items)) continue;
      row = static_cast<int>(i);
      item = number;
    }
    const auto found = heapItemOfField(id);
    ASSERT_EQ(found.has_value(), row >= 0) << id;
    if (!found) continue;
    EXPECT_EQ(found->row, row) << id;
    EXPECT_EQ(static_cast<int>(found->item), item) << id;
    EXPECT_EQ(found->fieldId(), id);
  }
}

TEST_F(HeapDefinitions, FindARecordByItsIdWhateverItsLocation) {
  EXPECT_EQ(findHeapRow(0x5803), 3);
  EXPECT_EQ(findHeapRow(0x1803), 3);
  EXPECT_EQ(findHeapRow(0x9803), 3);
  EXPECT_EQ(findHeapRow(0x0000), 1) << "the header is no record of a block";
  EXPECT_EQ(findHeapRow(0x4001), 2);
  EXPECT_EQ(findHeapRow(0x080B), 27);
  EXPECT_EQ(findHeapRow(0x0810), 22) << "the type is a part of the id";
  EXPECT_EQ(findHeapRow(0x1810), 4);
  EXPECT_EQ(findHeapRow(0x0002), heapUnknownRow);
  EXPECT_EQ(findHeapRow(0x1010), 13);
}

TEST_F(HeapDefinitions, TellWhereAValueLies) {
  EXPECT_TRUE(hasValueData(0x0816));
  EXPECT_TRUE(hasValueData(0x1810));
  EXPECT_TRUE(hasValueData(0x2001));
  EXPECT_TRUE(hasValueData(0x3801));
  EXPECT_FALSE(hasValueData(0x5803));
  EXPECT_FALSE(hasValueData(0x8816));
  EXPECT_FALSE(hasValueData(0x2807));
  EXPECT_FALSE(hasValueData(0x3002));
  EXPECT_TRUE(isSubHeap(0x2807));
  EXPECT_TRUE(isSubHeap(0x3004));
  EXPECT_FALSE(isSubHeap(0x6807)) << "location bits: eight bytes";
  EXPECT_FALSE(isSubHeap(0x2004));
}

struct ListedLabel {
  unsigned key;
  std::uint32_t mask, match;
  unsigned string;
};
constexpr ListedLabel listedLabels[] = {
    {2801, 0xFFFFFFFF, 0x4949, 3600},
    {2801, 0xFFFFFFFF, 0x4D4D, 3601},
    {2803, 0xFFFFFFFF, 0x50414548, 3620},
    {2804, 0xFFFFFFFF, 0x4D47504A, 3621},
    {2804, 0xFFFFFFFF, 0x52444343, 3622},
    {2804, 0xFFFFFFFF, 0x50464954, 3623},
    {2804, 0xFFFFFFFF, 0x48435241, 3624},
    {2809, 0xFFFF0000, 0x00010000, 3602},
    {2809, 0xFFFF0000, 0x00020000, 3603},
    {2809, 0x0000FFFF, 0, 3604},
    {2809, 0x0000FFFF, 1, 3605},
    {2809, 0x0000FFFF, 2, 3606},
    {2809, 0x0000FFFF, 3, 3607},
    {2818, 0xFF, 0, 3608},
    {2818, 0xFF, 1, 3609},
    {2818, 0xFF00, 0, 3610},
    {2818, 0xFF00, 0x100, 3611},
    {2820, 0xFFFFFFFF, 0, 3612},
    {2820, 0xFFFFFFFF, 1, 3613},
    {2842, 0xFFFFFFFF, 0, 3614},
    {2842, 0xFFFFFFFF, 1, 3615},
    {2847, 0xFFFFFFFF, 0, 3616},
    {2847, 0xFFFFFFFF, 1, 3617},
};

TEST_F(HeapDefinitions, ListTheLabelsOfEightItems) {
  std::size_t listed = 0;
  for (const HeapLabelList& list : heapLabelLists()) {
    EXPECT_EQ(heapLabelsOf(list.itemString).data(), list.labels.data());
    for (const HeapLabel& label : list.labels) {
      ASSERT_LT(listed, std::size(listedLabels));
      SCOPED_TRACE(listed);
      EXPECT_EQ(list.itemString, listedLabels[listed].key);
      EXPECT_EQ(label.mask, listedLabels[listed].mask);
      EXPECT_EQ(label.match, listedLabels[listed].match);
      EXPECT_EQ(label.string, listedLabels[listed].string);
      ++listed;
    }
  }
  EXPECT_EQ(listed, std::size(listedLabels));
  EXPECT_EQ(heapLabelLists().size(), 8U);
  EXPECT_TRUE(heapLabelsOf(2810).empty());
  constexpr std::array formats = {2, 4, 4, '+' + 0, '+' + 0, '+' + 0, '+' + 0, '+' + 0};
  for (std::size_t i = 0; i < formats.size(); ++i) {
    EXPECT_EQ(static_cast<int>(heapLabelLists()[i].format), formats[i]);
  }
}

}  // namespace

// From an entry to a field's value: kinds, types, both byte orders, what is refused.
#include "exif/entry_store.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;
using exif::BlockHead;
using exif::DirectoryEntry;

// The result of storing one entry; frees its block.
struct Stored {
  host::PropertyField field;  // first, so that its numbers lie aligned
  Bytes block;
  bool stored;
};

Stored store(const DirectoryEntry& entry, host::u16 kind, const Bytes& tiff,
             FileOrder order = FileOrder::little, BlockHead head = BlockHead::length) {
  exif::ValueBudget budget;
  Stored result = {};
  result.field.valueKind = kind;
  result.stored = storeEntry(readerOf(tiff, order), entry, head, result.field, budget);
  if ((kind == 1 || kind == 5) && result.field.data != 0) {
    const auto* data = reinterpret_cast<const host::u8*>(result.field.data);
    result.block.assign(data, data + result.field.dataSize);
    GlobalFree(reinterpret_cast<HGLOBAL>(result.field.data));
  }
  return result;
}

Bytes payloadOf(const Stored& stored) { return StoredField{stored.field, stored.block}.payload(); }

TEST(StoreEntry, TheTiffTypeIsNoted) {
  for (const host::u16 kind : std::initializer_list<host::u16>{0, 1, 2, 5, 15, 99}) {
    EXPECT_EQ(store({1, 3, 1, 7}, kind, {}).field.sourceGroup, 3) << kind;
  }
}

TEST(StoreEntry, OnlyTheKnownKindsStore) {
  for (host::u16 kind = 0; kind < 20; ++kind) {
    const bool known = kind == 1 || kind == 2 || kind == 4 || kind == 5 || kind == 15 || kind == 16;
    EXPECT_EQ(store({1, 3, 1, 7}, kind, {}).stored, known) << kind;
  }
}

TEST(StoreEntry, NumbersStandInTheDescriptor) {
  for (const host::u16 kind : std::initializer_list<host::u16>{2, 4}) {
    const Stored number = store({1, 4, 1, 0xFEDCBA98}, kind, {});
    EXPECT_EQ(number.field.data, 0xFEDCBA98u);
    EXPECT_EQ(number.field.dataSize, 0u);
  }
  for (const host::u16 kind : std::initializer_list<host::u16>{15, 16}) {
    const Stored number = store({1, 4, 1, 0xFEDCBA98}, kind, {});
    EXPECT_EQ(number.field.data, 0xBA98u);
    EXPECT_EQ(number.field.dataSize, 0u);
  }
}

TEST(StoreEntry, ATextOfFourLiesInTheEntryAndOneOfFiveAtItsOffset) {
  const Bytes tiff = support::bytesOf("??Hello");
  Stored text = store({1, 2, 4, 0x44434241}, host::kindText, tiff);
  EXPECT_EQ(text.block, support::bytesOf("ABCD"));
  EXPECT_EQ(text.field.dataSize, 4u);
  text = store({1, 2, 5, 2}, host::kindText, tiff);
  EXPECT_EQ(text.block, support::bytesOf("Hello"));
  EXPECT_FALSE(store({1, 2, 6, 2}, host::kindText, tiff).stored);
  EXPECT_FALSE(store({1, 2, 5, 0xFFFFFFFF}, host::kindText, tiff).stored);
}

TEST(StoreEntry, ATextsLengthIsItsCountWhateverItsType) {
  const Stored text = store({1, 4, 4, 0x44434241}, host::kindText, {});
  EXPECT_EQ(text.block, support::bytesOf("ABCD"));
  EXPECT_EQ(store({1, 4, 5, 1}, host::kindText, support::bytesOf("?12345")).block,
            support::bytesOf("12345"));
}

TEST(StoreEntry, BehindATextLieTwoZeros) {
  exif::ValueBudget budget;
  host::PropertyField field = {};
  field.valueKind = host::kindText;
  const Bytes tiff = support::bytesOf("Hello");
  ASSERT_TRUE(storeEntry(readerOf(tiff), {1, 2, 5, 0}, BlockHead::length, field, budget));
  const auto* data = reinterpret_cast<const char*>(field.data);
  EXPECT_GE(GlobalSize(reinterpret_cast<HGLOBAL>(field.data)), 7u);
  EXPECT_EQ(std::string(data, 7), std::string("Hello\0\0", 7));
  GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
}

TEST(StoreEntry, AnEmptyTextAndAnEmptyBlockAreStored) {
  const Stored text = store({1, 2, 0, 0xFFFFFFFF}, host::kindText, {});
  EXPECT_TRUE(text.stored);
  EXPECT_EQ(text.field.dataSize, 0u);
  EXPECT_NE(text.field.data, 0u);
  const Stored block = store({1, 5, 0, 0xFFFFFFFF}, host::kindBlock, {}, FileOrder::big);
  EXPECT_TRUE(block.stored);
  EXPECT_EQ(block.block, Bytes(4));
}

// Elements 1, 2, 3 … in the file's order at offset 3; the block holds them in this machine's.
TEST(StoreEntry, ABlockOfEveryTypeHoldsItsElementsInThisMachinesOrder) {
  const struct {
    host::u16 type;
    unsigned width, words;
  } rows[] = {{1, 1, 1}, {2, 1, 1}, {3, 2, 1}, {4, 4, 1},  {5, 4, 2},  {6, 1, 1},
              {7, 1, 1}, {8, 2, 1}, {9, 4, 1}, {10, 4, 2}, {11, 4, 1}, {12, 8, 1}};
  for (const FileOrder order : bothOrders) {
    for (const auto& row : rows) {
      for (const unsigned count : {2u, 3u, 5u}) {
        if (row.width * row.words * count <= 4) continue;  // these lie in the entry
        std::vector<host::u64> numbers;
        for (host::u64 n = 1; n <= count * row.words; ++n) {
          numbers.push_back((n << (8 * row.width - 8)) | (row.width > 1 ? n + 0x10 : 0));
        }
        const Bytes tiff = support::joined({9, 9, 9}, bytesOfNumbers(order, row.width, numbers));
        const Stored block =
            store({1, row.type, static_cast<host::i32>(count), 3}, host::kindBlock, tiff, order);
        ASSERT_TRUE(block.stored) << row.type;
        EXPECT_EQ(payloadOf(block), bytesOfNumbers(FileOrder::little, row.width, numbers))
            << row.type << " x " << count;
      }
    }
  }
}

TEST(StoreEntry, ASingleBigEndianDoubleStaysInFileOrderAndTwoAreTurned) {
  const Bytes tiff = {1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 14, 15, 16, 17, 18};
  EXPECT_EQ(payloadOf(store({1, 12, 1, 0}, host::kindBlock, tiff, FileOrder::big)),
            (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_EQ(payloadOf(store({1, 12, 2, 0}, host::kindBlock, tiff, FileOrder::big)),
            (Bytes{8, 7, 6, 5, 4, 3, 2, 1, 18, 17, 16, 15, 14, 13, 12, 11}));
}

TEST(StoreEntry, ASingleRationalIsTurnedAlways) {
  const Bytes tiff = {0, 0, 0, 1, 0, 0, 1, 0};
  for (const host::u16 type : std::initializer_list<host::u16>{5, 10}) {
    EXPECT_EQ(payloadOf(store({1, type, 1, 0}, host::kindBlock, tiff, FileOrder::big)),
              (Bytes{1, 0, 0, 0, 0, 1, 0, 0}));
  }
}

// What lay in the entry was turned with it, so it is not turned again.
TEST(StoreEntry, InlineValuesAreTakenAsTheEntryHoldsThem) {
  for (const FileOrder order : bothOrders) {
    EXPECT_EQ(payloadOf(store({1, 3, 2, 0x00020001}, host::kindBlock, {}, order)),
              (Bytes{1, 0, 2, 0}));
    EXPECT_EQ(payloadOf(store({1, 3, 1, 0xFFFF0001}, host::kindBlock, {}, order)), (Bytes{1, 0}));
    EXPECT_EQ(payloadOf(store({1, 4, 1, 0x01020304}, host::kindBlock, {}, order)),
              (Bytes{4, 3, 2, 1}));
    EXPECT_EQ(payloadOf(store({1, 11, 1, 0x3F800000}, host::kindBlock, {}, order)),
              (Bytes{0, 0, 0x80, 0x3F}));
    EXPECT_EQ(payloadOf(store({1, 7, 3, 0x04030201}, host::kindBlock, {}, order)),
              (Bytes{1, 2, 3}));
  }
}

TEST(StoreEntry, TheEntryHeadRepeatsTheEntry) {
  const Bytes tiff = {0, 1, 0, 2, 0, 3};
  const Stored block =
      store({0xABCD, 3, 3, 0}, host::kindBlock, tiff, FileOrder::big, BlockHead::entry);
  EXPECT_EQ(block.field.dataSize, 12u + 6u);
  EXPECT_EQ(block.block, (Bytes{0xCD, 0xAB, 3, 0, 3, 0, 0, 0, 6, 0, 0, 0, 1, 0, 2, 0, 3, 0}));
}

TEST(StoreEntry, HostileCountsTypesAndOffsetsAreRefused) {
  const Bytes tiff(64);
  const DirectoryEntry entries[] = {
      {1, 0, 1, 0},           {1, 13, 1, 0},
      {1, 0xFFFF, 1, 0},      {1, 5, 0x7FFFFFFF, 0},
      {1, 12, 0x20000000, 0},  // 8 x 2^29 is 0 in 32 bits
      {1, 12, 0x20000001, 0}, {1, 3, -1, 0},
      {1, 1, 61, 4},          {1, 1, 5, 0xFFFFFFFF},
      {1, 5, 1, 57},          {1, 4, static_cast<host::i32>(0x80000000), 0}};
  for (const DirectoryEntry& entry : entries) {
    EXPECT_FALSE(store(entry, host::kindBlock, tiff).stored) << entry.type << " " << entry.count;
  }
  EXPECT_FALSE(store({1, 2, -1, 0}, host::kindText, tiff).stored);
  EXPECT_FALSE(store({1, 2, 0x7FFFFFFF, 0}, host::kindText, tiff).stored);
  EXPECT_TRUE(store({1, 1, 60, 4}, host::kindBlock, tiff).stored);
  EXPECT_TRUE(store({1, 5, 1, 56}, host::kindBlock, tiff).stored);
}

TEST(StoreEntry, TheBudgetIs64MiBAndEndsWithTheFirstValueThatDoesNotFit) {
  exif::ValueBudget budget;
  EXPECT_TRUE(budget.take((host::u64{64} << 20) - 1));
  EXPECT_TRUE(budget.take(1));
  EXPECT_TRUE(budget.take(0));
  EXPECT_FALSE(budget.take(1));
  EXPECT_FALSE(budget.take(0));
  exif::ValueBudget other;
  EXPECT_FALSE(other.take(~host::u64{0}));
}

TEST(StoreEntry, NothingIsStoredOnceTheBudgetIsUsedUp) {
  const Bytes tiff(64);
  for (const host::u16 kind : std::initializer_list<host::u16>{1, 2, 5, 15}) {
    exif::ValueBudget budget;
    EXPECT_FALSE(budget.take(~host::u64{0}));
    host::PropertyField field = {};
    field.valueKind = kind;
    EXPECT_FALSE(storeEntry(readerOf(tiff), {1, 1, 8, 0}, BlockHead::length, field, budget));
    EXPECT_EQ(field.data, 0u);
  }
}

}  // namespace

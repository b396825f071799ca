// The raw text of EXIF and GPS fields, both directions.
#include "exif/value_text.h"

#include "tests/exif/value_fields.h"

namespace {

using namespace test;
using exif::DisplayText;
using host::u16;
using host::u32;

constexpr u16 anyField = 5205;

// What the value is shown as, and whether it can be.
struct Shown {
  int handled;
  std::string text;
  bool operator==(const Shown&) const = default;
};
void PrintTo(const Shown& shown, std::ostream* out) { *out << shown.handled << " " << shown.text; }

Shown shown(MadeField& made) {
  DisplayText text(std::string_view("what was there"));
  const int handled = exif::fieldToText(made.field(), text);
  return {handled, std::string(text.view())};
}
Shown number(u16 kind, u16 type, u32 value) {
  return shown(MadeField(anyField, kind, type).number(value));
}
Shown block(u16 type, const Bytes& payload) {
  return shown(MadeField(anyField, host::kindBlock, type).payload(payload));
}
Shown shorts(u16 type, const std::vector<host::u64>& values) {
  return shown(MadeField(anyField, host::kindBlock, type).shorts(values));
}
Shown longs(u16 type, const std::vector<host::u64>& values) {
  return shown(MadeField(anyField, host::kindBlock, type).longs(values));
}
std::string repeated(std::string_view piece, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(ValueText, ATextIsCopiedUpTo256Bytes) {
  EXPECT_EQ(shown(MadeField(anyField, 1, 2).data(support::bytesOf("A text"))),
            (Shown{1, "A text"}));
  const std::string longest(256, 'x');
  EXPECT_EQ(shown(MadeField(anyField, 1, 2).data(support::bytesOf(longest))), (Shown{1, longest}));
  EXPECT_EQ(shown(MadeField(anyField, 1, 2).data(support::bytesOf(longest + "y"))),
            (Shown{1, longest}));
}

TEST(ValueText, AShorterTextLeavesNothingOfTheLastOne) {
  EXPECT_EQ(shown(MadeField(anyField, 1, 2).data(support::bytesOf("x"))), (Shown{1, "x"}));
}

TEST(ValueText, ATextWithoutDataLeavesTheBuffer) {
  MadeField made(anyField, 1, 2);
  EXPECT_EQ(shown(made), (Shown{1, "what was there"}));
}

TEST(ValueText, ASizeWordThatClaimsMoreThanTheBlockHasReadsNoFurther) {
  MadeField made(anyField, 1, 2);
  made.data(support::bytesOf("short"));
  made.field().dataSize = 4000;
  EXPECT_EQ(shown(made), (Shown{1, "short"}));
  MadeField bytes(anyField, 5, 7);
  bytes.payload({1, 2});
  bytes.field().dataSize = 4000;
  EXPECT_EQ(shown(bytes), (Shown{1, "01 02 "}));
}

TEST(ValueText, ANumberIsReadInTheWidthAndSignOfItsType) {
  for (const u16 kind : {u16{2}, u16{15}}) {
    EXPECT_EQ(number(kind, 1, 0x1FFFE), (Shown{1, "254"}));
    EXPECT_EQ(number(kind, 3, 0x1FFFE), (Shown{1, "65534"}));
    EXPECT_EQ(number(kind, 4, 0xFFFFFFFE), (Shown{1, "-2"}));
    EXPECT_EQ(number(kind, 9, 0xFFFFFFFE), (Shown{1, "-2"}));
    EXPECT_EQ(number(kind, 6, 0x1FFFE), (Shown{1, "-2"}));
    EXPECT_EQ(number(kind, 8, 0x1FFFE), (Shown{1, "-2"}));
    for (const u16 type : {u16{0}, u16{2}, u16{5}, u16{7}, u16{10}, u16{11}, u16{12}, u16{13}}) {
      EXPECT_EQ(number(kind, type, 7), (Shown{0, ""})) << type;
    }
  }
}

TEST(ValueText, OtherKindsAreEmptyAndHandled) {
  for (const u16 kind : {u16{0}, u16{3}, u16{4}, u16{6}, u16{7}, u16{14}, u16{16}, u16{17}}) {
    EXPECT_EQ(number(kind, 3, 7), (Shown{1, ""})) << kind;
  }
}

TEST(ValueText, BytesAreHexadecimalPairsWithABlankBehindEach) {
  for (const u16 type : {u16{1}, u16{6}, u16{7}}) {
    EXPECT_EQ(block(type, {0x0A, 0x1F, 0xFF}), (Shown{1, "0a 1f ff "}));
    EXPECT_EQ(block(type, {}), (Shown{1, ""}));
  }
}

TEST(ValueText, BytesEndInDotsWhereThreeMoreWouldReachTheLimit) {
  EXPECT_EQ(block(7, Bytes(83, 0xAB)), (Shown{1, repeated("ab ", 83)}));
  EXPECT_EQ(block(7, Bytes(84, 0xAB)), (Shown{1, repeated("ab ", 83) + "..."}));
  EXPECT_EQ(block(7, Bytes(5000, 0xAB)), (Shown{1, repeated("ab ", 83) + "..."}));
}

TEST(ValueText, CharactersAreTakenAsTheyAre) {
  EXPECT_EQ(block(2, support::bytesOf("Any text")), (Shown{1, "Any text"}));
  const std::string longest(256, 'x');
  EXPECT_EQ(block(2, support::bytesOf(longest)), (Shown{1, longest}));
  EXPECT_EQ(block(2, support::bytesOf(longest + "x")), (Shown{1, std::string(252, 'x') + "..."}));
}

TEST(ValueText, EveryShortIsToldWithItsSign) {
  EXPECT_EQ(shorts(3, {1, 65535, 3}), (Shown{1, "1; 65535; 3"}));
  EXPECT_EQ(shorts(8, {1, 65535, 3}), (Shown{1, "1; -1; 3"}));
  EXPECT_EQ(shorts(3, {7}), (Shown{1, "7"}));
  EXPECT_EQ(shorts(3, {}), (Shown{1, ""}));
}

TEST(ValueText, ShortsEndInDotsAtTheLimit) {
  // 35 pieces of 7 characters are 245; the last one of 5 still fits, another of 7 does not.
  const std::vector<host::u64> fit(36, 10000);
  EXPECT_EQ(shorts(3, fit), (Shown{1, repeated("10000; ", 35) + "10000"}));
  const std::vector<host::u64> more(37, 10000);
  EXPECT_EQ(shorts(3, more), (Shown{1, repeated("10000; ", 35) + "..."}));
}

TEST(ValueText, OfLongsEveryFourthIsTold) {
  for (const u16 type : {u16{4}, u16{9}}) {
    EXPECT_EQ(longs(type, {11}), (Shown{1, "11"}));
    EXPECT_EQ(longs(type, {11, 12}), (Shown{1, "11; "}));
    EXPECT_EQ(longs(type, {11, 12, 13}), (Shown{1, "11; "}));
    EXPECT_EQ(longs(type, {11, 12, 13, 14, 15}), (Shown{1, "11; 15"}));
    EXPECT_EQ(longs(type, {0xFFFFFFFF}), (Shown{1, "-1"}));
  }
}

TEST(ValueText, LongsEndInDotsAtTheLimit) {
  EXPECT_EQ(longs(4, std::vector<host::u64>(4 * 40, 10000)),
            (Shown{1, repeated("10000; ", 35) + "..."}));
}

TEST(ValueText, FractionsAreSignedNumeratorsAndDenominators) {
  for (const u16 type : {u16{5}, u16{10}}) {
    EXPECT_EQ(longs(type, {1, 250}), (Shown{1, "1/250"}));
    EXPECT_EQ(longs(type, {0xFFFFFFFF, 3, 5, 6}), (Shown{1, "-1/3; 5/6"}));
  }
}

TEST(ValueText, FractionsEndInDotsAtTheLimit) {
  // 19 pairs of 13 characters are 247, and a numerator with its stroke brings them to 253.
  EXPECT_EQ(longs(5, std::vector<host::u64>(2 * 30, 12345)),
            (Shown{1, repeated("12345/12345; ", 19) + "..."}));
  // 239 and a numerator are 245; the denominator with its separator would bring them to 252.
  std::vector<host::u64> late(2 * 30, 12345);
  late[0] = late[1] = 1;
  EXPECT_EQ(longs(5, late), (Shown{1, "1/1; " + repeated("12345/12345; ", 18) + "12345/..."}));
}

TEST(ValueText, RealsAndUnknownTypesHaveNoText) {
  for (const u16 type : {u16{0}, u16{11}, u16{12}, u16{13}, u16{4701}}) {
    EXPECT_EQ(block(type, Bytes(8, 1)), (Shown{0, ""})) << type;
  }
}

TEST(ValueText, AnAbsentBlockHasNoText) {
  MadeField made(anyField, 5, 7);
  EXPECT_EQ(shown(made), (Shown{0, ""}));
}

TEST(ValueText, APartOfAnElementIsNotTold) {
  EXPECT_EQ(block(3, {1, 0, 2}), (Shown{1, "1"}));
  EXPECT_EQ(block(5, {1, 0, 0, 0, 2, 0, 0, 0, 9}), (Shown{1, "1/2"}));
}

void edit(MadeField& made, std::string_view text) {
  EXPECT_EQ(exif::textToField(made.field(), DisplayText(text)), 1);
}

TEST(ValueText, AnEditedTextKeepsItsTerminatorAndTwoZerosMore) {
  MadeField made(anyField, 1, 2);
  made.data(support::bytesOf("old"));
  edit(made, "A new text");
  EXPECT_EQ(+made.field().dataSize, 11U);
  EXPECT_EQ(made.block(), support::joined(support::bytesOf("A new text"), {0}));
  EXPECT_GE(GlobalSize(reinterpret_cast<HGLOBAL>(made.field().data)), 13U);
  EXPECT_EQ(shown(made), (Shown{1, "A new text"}));
  edit(made, "");
  EXPECT_EQ(made.block(), Bytes{0});
}

TEST(ValueText, ATextWithoutDataStaysWithoutIt) {
  MadeField made(anyField, 1, 2);
  edit(made, "new");
  EXPECT_EQ(+made.field().data, 0U);
  EXPECT_EQ(+made.field().dataSize, 0U);
}

TEST(ValueText, AnEditedNumberIsTheLeadingOne) {
  const struct {
    const char* text;
    u32 value;
  } rows[] = {{"12", 12},
              {" -7 apples", 0xFFFFFFF9},
              {"apples", 0},
              {"", 0},
              {"99999999999999999999999", 0x7FFFFFFF},
              {"-99999999999999999999999", 0x80000000}};
  for (const u16 kind : {u16{2}, u16{15}}) {
    for (const auto& row : rows) {
      MadeField made(anyField, kind, 4);
      made.field().dataSize = 9;
      edit(made, row.text);
      EXPECT_EQ(+made.field().data, row.value) << row.text;
      EXPECT_EQ(+made.field().dataSize, 0U);
    }
  }
}

TEST(ValueText, AnEditedBlockHoldsTheCharactersWhateverItsType) {
  MadeField made(anyField, 5, 3);
  made.shorts({1, 2, 3});
  edit(made, "12");
  EXPECT_EQ(made.block(), (Bytes{2, 0, 0, 0, '1', '2'}));
  EXPECT_EQ(+made.field().sourceGroup, 3);
  EXPECT_EQ(shown(made), (Shown{1, "12849"})) << "the characters 1 and 2 as one SHORT";
  MadeField empty(anyField, 5, 7);
  edit(empty, "ab");
  EXPECT_EQ(empty.block(), (Bytes{2, 0, 0, 0, 'a', 'b'})) << "a block that was not there";
}

TEST(ValueText, AnEditOfAnotherKindOnlyClearsTheSize) {
  for (const u16 kind : {u16{3}, u16{4}, u16{6}, u16{16}}) {
    MadeField made(anyField, kind, 3);
    made.number(77).field().dataSize = 5;
    edit(made, "12");
    EXPECT_EQ(+made.field().data, 77U) << kind;
    EXPECT_EQ(+made.field().dataSize, 0U) << kind;
  }
}

}  // namespace

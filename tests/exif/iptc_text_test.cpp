// One IPTC field as text, both directions.
#include "exif/iptc_text.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;
using exif::TextDirection;

class IptcText : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    iptc_.set(4, 0, 1, 5604);  // the record version
    iptc_.set(1, 5, 1, 5601);
  }
  void TearDown() override {
    for (const host::PropertyField& each : fields_) {
      const bool block = each.valueKind == 1 || each.valueKind == 5;
      if (block && each.data != 0) GlobalFree(reinterpret_cast<HGLOBAL>(each.data));
    }
  }
  host::PropertyField& field(host::u16 id, host::u16 kind, const Bytes& data) {
    host::PropertyField& made = fields_.at(0);
    made.fieldId = id;
    made.valueKind = kind;
    void* block = GlobalAlloc(GMEM_FIXED | GMEM_ZEROINIT, data.size() + 1);
    std::copy(data.begin(), data.end(), static_cast<host::u8*>(block));
    made.data = reinterpret_cast<host::u64>(block);
    made.dataSize = static_cast<host::u32>(data.size());
    return made;
  }
  // What direction 0 hands out.
  std::string shown() {
    char buffer[exif::iptcNumberText] = "untouched";
    char* text = buffer;
    EXPECT_EQ(exif::convertFieldText(fields_, 0, TextDirection::fieldToText, &text), 1);
    return text;
  }
  void edit(std::string text) {
    char* slot = text.data();
    EXPECT_EQ(exif::convertFieldText(fields_, 0, TextDirection::textToField, &slot), 1);
  }
  Bytes data() const {
    const auto* first = reinterpret_cast<const host::u8*>(fields_[0].data);
    return first != nullptr ? Bytes(first, first + fields_[0].dataSize) : Bytes{};
  }
  std::vector<host::PropertyField> fields_{1};
};

TEST_F(IptcText, WithoutARecordOrSuchAFieldTheAnswerIs0) {
  char buffer[16] = "as it was";
  char* text = buffer;
  EXPECT_EQ(exif::convertFieldText({}, 0, TextDirection::fieldToText, &text), 0);
  EXPECT_EQ(exif::convertFieldText(fields_, 1, TextDirection::textToField, &text), 0);
  EXPECT_STREQ(text, "as it was");
}

TEST_F(IptcText, ATextFieldHandsOutItsOwnData) {
  const host::PropertyField& title = field(5601, 1, support::bytesOf("Title"));
  char buffer[exif::iptcNumberText] = {};
  char* text = buffer;
  EXPECT_EQ(exif::convertFieldText(fields_, 0, TextDirection::fieldToText, &text), 1);
  EXPECT_EQ(reinterpret_cast<host::u64>(text), title.data);
  EXPECT_STREQ(text, "Title");
}

TEST_F(IptcText, AFieldThatIsNoTextIsShownEmpty) {
  field(5601, 5, support::bytesOf("Title"));
  EXPECT_EQ(shown(), "");
}

TEST_F(IptcText, ARecordVersionIsShownAsItsHexadecimalDigits) {
  const struct {
    Bytes data;
    const char* text;
  } rows[] = {{{0, 4}, "4.0"}, {{0, 1, 2}, "18.0"}, {{0}, "0.0"}, {{}, "0.0"}, {{2, 0x10}, "48.0"}};
  for (const auto& row : rows) {
    GlobalFree(reinterpret_cast<HGLOBAL>(field(5604, 1, row.data).data));
    field(5604, 1, row.data);
    EXPECT_EQ(shown(), row.text);
    GlobalFree(reinterpret_cast<HGLOBAL>(fields_[0].data));
    fields_[0].data = 0;
  }
  EXPECT_EQ(shown(), "0.0");
}

TEST_F(IptcText, AnEditedRecordVersionIsKeptDigitByDigitBehindAZero) {
  const struct {
    const char* text;
    Bytes data;
  } rows[] = {{"4", {0, 4}},
              {"2", {0, 2}},
              {"18", {0, 1, 2}},
              {"0", {0}},
              {"abc", {0}},
              {" 7 apples", {0, 7}},
              {"255", {0, 15, 15}},
              {"+3", {0, 3}},
              {"-1", {0, 15, 15, 15, 15, 15, 15, 15, 15}},
              {"2147483647", {0, 7, 15, 15, 15, 15, 15, 15, 15}}};
  field(5604, 1, {0, 9});
  for (const auto& row : rows) {
    edit(row.text);
    EXPECT_EQ(data(), row.data) << row.text;
    EXPECT_EQ(fields_[0].dataSize, row.data.size());
  }
  edit("4");
  EXPECT_EQ(shown(), "4.0");
}

TEST_F(IptcText, AnEmptyRecordVersionHasNoData) {
  for (const char* blank : {"", "  \t"}) {
    field(5604, 1, {0, 9});
    edit(blank);
    EXPECT_EQ(fields_[0].data, 0u);
    EXPECT_EQ(fields_[0].dataSize, 0u);
  }
}

TEST_F(IptcText, ARecordVersionOfAnotherKindIsOneAllTheSame) {
  field(5604, 5, {0, 9});
  edit("3");
  EXPECT_EQ(data(), (Bytes{0, 3}));
  EXPECT_EQ(shown(), "3.0");
}

TEST_F(IptcText, AnEditedFieldThatIsNoTextLosesItsData) {
  field(5601, 5, support::bytesOf("Title"));
  edit("new");
  EXPECT_EQ(fields_[0].data, 0u);
  EXPECT_EQ(fields_[0].dataSize, 0u);
  EXPECT_EQ(fields_[0].valueKind, 5);
}

TEST_F(IptcText, AnEditedTextKeepsItsTerminator) {
  field(5601, 1, support::bytesOf("Title"));
  edit("A longer title");
  EXPECT_EQ(fields_[0].dataSize, 15u) << "one more than a decoded field of the same text";
  EXPECT_EQ(shown(), "A longer title");
  edit("");
  EXPECT_EQ(data(), Bytes{0});
  EXPECT_EQ(shown(), "");
}

}  // namespace

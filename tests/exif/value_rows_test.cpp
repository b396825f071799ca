// The EXIF and GPS lists, and the raw text of their rows.
#include "exif/value_rows.h"

#include "host/kfioutil.h"
#include "tests/exif/value_fields.h"

namespace {

using namespace test;
using exif::DefinitionSet;
using exif::DisplayText;
using exif::TextDirection;
using host::u16;

// Label, value and definition row of a list's row.
struct Line {
  std::string label;
  std::string value;
  int definition;
  bool operator==(const Line&) const = default;
};
void PrintTo(const Line& line, std::ostream* out) {
  *out << line.label << " | " << line.value << " | " << line.definition;
}

std::vector<Line> linesOf(const exif::ValueRows& rows) {
  std::vector<Line> lines;
  for (const exif::ValueRow& row : rows) {
    lines.push_back(
        {std::string(row.label.view()), std::string(row.value.view()), row.definitionRow});
  }
  return lines;
}

class ValueRowsTest : public testing::Test {
 protected:
  void SetUp() override {
    the().reset();
    ASSERT_TRUE(exifSet_.buildExif(exif::primaryGroup));
    ASSERT_TRUE(gpsSet_.buildGps());
    ASSERT_NE(Prop_ReAllocFieldSpace(slot_.address(), 1), 0);
  }
  void TearDown() override { EXPECT_TRUE(slot_.unlocked()); }

  void add(MadeField& made, std::string_view name) {
    host::PropertyField field = made.release();
    std::copy(name.begin(), name.end(), field.name);
    ASSERT_NE(Prop_ReAllocFieldSpace(slot_.address(), 1), 0);
    ASSERT_NE(Prop_AppendFieldData(slot_.handle(), &field), 0);
  }
  void addText(u16 id, std::string_view text, std::string_view name) {
    MadeField made(id, host::kindText, 2);
    add(made.data(support::bytesOf(text)), name);
  }
  std::vector<Line> exifLines(int expected = 1) {
    const property::PropertyRecord record(slot_.handle());
    exif::ValueRows rows(3);
    EXPECT_EQ(exif::fillExifRows(exifSet_, record, rows), expected);
    return linesOf(rows);
  }
  std::vector<Line> gpsLines(int expected = 1) {
    const property::PropertyRecord record(slot_.handle());
    exif::ValueRows rows(3);
    EXPECT_EQ(exif::fillGpsRows(gpsSet_, record, rows), expected);
    return linesOf(rows);
  }

  DefinitionSet exifSet_;
  DefinitionSet gpsSet_;
  PropertySlot slot_;
};

TEST_F(ValueRowsTest, ExifRowsComeInRecordOrderWithTheirFields) {
  addText(4006, "Maker", "Camera make");
  MadeField fNumber(5216, 5, 5);
  add(fNumber.longs({28, 10}), "F-number");
  addText(5218, "Sensitive", "Spectral sensitivity");
  addText(5271, "no row", "An entry behind the group");
  MadeField program(5217, 15, 3);
  add(program.number(3), "Exposure program");
  addText(5300, "not EXIF", "GPS");
  EXPECT_EQ(exifLines(), (std::vector<Line>{{"F-number", "F/2.8", 16},
                                            {"Spectral sensitivity", "Sensitive", 18},
                                            {"Exposure program", "Aperture priority", 17}}));
}

TEST_F(ValueRowsTest, FieldsFrom5250OnShowTheirRawText) {
  MadeField zoom(5249, 5, 5);
  add(zoom.longs({3, 2}), "zoom");
  MadeField film(5250, 15, 3);
  add(film.number(35), "film");
  MadeField gamma(5270, 5, 5);
  add(gamma.longs({3, 2}), "gamma");
  EXPECT_EQ(exifLines(),
            (std::vector<Line>{{"zoom", "1.5 x", 49}, {"film", "35", 50}, {"gamma", "3/2", 70}}));
}

TEST_F(ValueRowsTest, AValueThatCannotBeShownIsEmpty) {
  MadeField reals(5208, 5, 11);
  add(reals.payload(Bytes(8, 1)), "comment");
  MadeField shortKind(5217, 16, 3);
  add(shortKind.number(3), "program");
  EXPECT_EQ(exifLines(), (std::vector<Line>{{"comment", "", 8}, {"program", "", 17}}));
}

TEST_F(ValueRowsTest, EveryRowOfAFieldShowsTheFirst) {
  addText(5218, "first", "one");
  addText(5218, "second", "two");
  EXPECT_EQ(exifLines(), (std::vector<Line>{{"one", "first", 18}, {"two", "first", 18}}));
}

TEST_F(ValueRowsTest, RowsBehindThe71stHaveNoValueAndBehindTheMapNoField) {
  for (int i = 0; i < 214; ++i) addText(5218, "text", "label");
  const std::vector<Line> lines = exifLines();
  ASSERT_EQ(lines.size(), 214U);
  EXPECT_EQ(lines[70], (Line{"label", "text", 18}));
  EXPECT_EQ(lines[71], (Line{"label", "", 18}));
  EXPECT_EQ(lines[212], (Line{"label", "", 18}));
  EXPECT_EQ(lines[213], (Line{"label", "", exif::ValueRow::noDefinition}));
}

TEST_F(ValueRowsTest, GpsRowsAreRawButTheVersion) {
  MadeField version(5300, 5, 1);
  add(version.payload({2, 2, 0, 0}), "version");
  MadeField latitude(5302, 5, 5);
  add(latitude.longs({48, 1, 30, 1, 0, 1}), "latitude");
  addText(5329, "2008:12:31", "date");
  addText(5332, "no row", "behind");
  addText(5299, "no row", "before");
  EXPECT_EQ(gpsLines(), (std::vector<Line>{{"version", "2,2,0,0", 0},
                                           {"latitude", "48/1; 30/1; 0/1", 2},
                                           {"date", "2008:12:31", 29}}));
}

TEST_F(ValueRowsTest, GpsRowsBehindTheMapHaveAValueButNoField) {
  for (int i = 0; i < 33; ++i) addText(5329, "text", "label");
  const std::vector<Line> lines = gpsLines();
  ASSERT_EQ(lines.size(), 33U);
  EXPECT_EQ(lines[31], (Line{"label", "text", 29}));
  EXPECT_EQ(lines[32], (Line{"label", "text", exif::ValueRow::noDefinition}));
}

TEST_F(ValueRowsTest, ASetOfTheWrongSizeGivesLabelsAlone) {
  addText(5218, "text", "label");
  addText(5329, "text", "date");
  ASSERT_TRUE(exifSet_.buildExif(exif::bothGroups));
  EXPECT_EQ(exifLines(), (std::vector<Line>{{"label", "", 18}}));
  ASSERT_TRUE(gpsSet_.buildExif(exif::primaryGroup));
  EXPECT_EQ(gpsLines(), (std::vector<Line>{{"date", "", 29}}));
}

TEST_F(ValueRowsTest, WithoutARecordOrASetThereAreNoRows) {
  addText(5218, "text", "label");
  ASSERT_TRUE(exifSet_.buildExif(0));
  EXPECT_TRUE(exifLines(0).empty());
  const property::PropertyRecord none(nullptr);
  exif::ValueRows rows(3);
  EXPECT_EQ(exif::fillGpsRows(gpsSet_, none, rows), 0);
  EXPECT_TRUE(rows.empty());
}

TEST_F(ValueRowsTest, ALabelOf61CharactersEndsAtItsField) {
  addText(5218, "text", std::string(61, 'n'));
  EXPECT_EQ(exifLines(), (std::vector<Line>{{std::string(61, 'n'), "text", 18}}));
}

TEST_F(ValueRowsTest, ARowsRawTextIsReadAndWritten) {
  MadeField fNumber(5216, 5, 5);
  add(fNumber.longs({28, 10}), "F-number");
  addText(5329, "2008:12:31", "date");
  const property::PropertyRecord record(slot_.handle());
  DisplayText text;
  EXPECT_EQ(exif::exifRowText(exifSet_, 16, TextDirection::fieldToText, text, record), 1);
  EXPECT_EQ(text.view(), "28/10");
  EXPECT_EQ(exif::gpsRowText(gpsSet_, 29, TextDirection::fieldToText, text, record), 1);
  EXPECT_EQ(text.view(), "2008:12:31");
  text = DisplayText(std::string_view("2010:01:02"));
  EXPECT_EQ(exif::gpsRowText(gpsSet_, 29, TextDirection::textToField, text, record), 1);
  EXPECT_EQ(storedFields(slot_.handle()).back().text(), std::string("2010:01:02\0", 11));
}

TEST_F(ValueRowsTest, ThereIsNoTextOfARowWithoutAFieldOrOfAnotherSet) {
  addText(5218, "text", "label");
  addText(5301, "N", "ref");
  const property::PropertyRecord record(slot_.handle());
  DisplayText text;
  const auto exifText = [&](int row) {
    return exif::exifRowText(exifSet_, row, TextDirection::fieldToText, text, record);
  };
  EXPECT_EQ(exifText(18), 1);
  EXPECT_EQ(exifText(17), 0);
  EXPECT_EQ(exifText(71), 0);
  EXPECT_EQ(exifText(-1), 0);
  EXPECT_EQ(exif::gpsRowText(gpsSet_, 32, TextDirection::fieldToText, text, record), 0);
  ASSERT_TRUE(exifSet_.buildExif(exif::bothGroups));
  EXPECT_EQ(exifText(18), 0);
  EXPECT_EQ(exif::gpsRowText(exifSet_, 1, TextDirection::fieldToText, text, record), 0);
}

}  // namespace

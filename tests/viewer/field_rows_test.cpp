// Rows of the IPTC page and what its value box shows.
#include "viewer/field_rows.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;

class FieldRows : public testing::Test {
 protected:
  void SetUp() override { the().reset(); }

  void add(host::u16 id, const char* name, std::string_view text, host::u16 kind = host::kindText) {
    host::PropertyField field = {};
    field.descriptorSize = sizeof field;
    field.fieldId = id;
    field.valueKind = kind;
    std::memcpy(field.name, name, std::min(std::strlen(name), sizeof field.name));
    HGLOBAL block = GlobalAlloc(GPTR, text.size() + 1);
    std::memcpy(block, text.data(), text.size());
    field.data = reinterpret_cast<host::u64>(block);
    field.dataSize = static_cast<host::u32>(text.size());
    ASSERT_EQ(doubles::reserveFields(slot_.address(), 1), 1);
    ASSERT_EQ(doubles::appendField(slot_.handle(), &field), 1);
  }
  std::vector<std::string> rows() const {
    const property::PropertyRecord record(slot_.handle());
    std::vector<std::string> result;
    for (const auto& row : viewer::iptcRows(record.fields())) {
      result.push_back(row.name + "=" + row.value);
    }
    return result;
  }
  std::string box(std::size_t row) const {
    const property::PropertyRecord record(slot_.handle());
    return viewer::iptcBoxText(record.fields(), row);
  }

  PropertySlot slot_;
};

TEST_F(FieldRows, ListIptcFieldsInTheOrderOfTheRecord) {
  add(5599, "before", "x");
  add(5626, "last", "b");
  add(5627, "behind", "y");
  add(5600 + 5, "City", "Wien");
  EXPECT_THAT(rows(), testing::ElementsAre("last=b", "City=Wien"));
}

TEST_F(FieldRows, TheBoxTakesTheRowNumberAsTheDescriptorsIndex) {
  add(5000, "first of its own", "text of descriptor 1");
  add(5605, "City", "Wien");
  EXPECT_EQ(box(0), "") << "descriptor 0 is the header field";
  EXPECT_EQ(box(1), "text of descriptor 1");
  EXPECT_EQ(box(2), "Wien");
  EXPECT_EQ(box(3), "");
}

TEST_F(FieldRows, AFullNameEndsWithItsField) {
  const std::string longName(61, 'n');
  add(5605, longName.c_str(), "v");
  EXPECT_THAT(rows(), testing::ElementsAre(longName + "=v"));
}

TEST_F(FieldRows, AFieldThatIsNoTextIsEmpty) {
  add(5605, "City", "bytes", host::kindBlock);
  EXPECT_THAT(rows(), testing::ElementsAre("City="));
}

TEST(RowText, TheClipboardGetsALineForEveryRow) {
  EXPECT_EQ(viewer::rowsAsText({{"City", "Wien"}, {"Date", ""}}), "City\tWien\r\nDate\t\r\n");
  EXPECT_EQ(viewer::rowsAsText({{"Text", "a\nb"}}), "Text\ta b\r\n");
  EXPECT_EQ(viewer::rowsAsText({}), "");
}

TEST(RowText, TheListGetsALineEndAsOneSpace) {
  EXPECT_EQ(viewer::lineText("plain"), "plain");
  EXPECT_EQ(viewer::lineText("a\r\nb\nc\rd\te"), "a b c d e");
}

TEST(RowText, TheBoxGetsItsOwnLineEnds) {
  EXPECT_EQ(viewer::boxText("plain"), "plain");
  EXPECT_EQ(viewer::boxText("a\nb\rc\r\nd\r"), "a\r\nb\r\nc\r\nd\r\n");
}

}  // namespace

// The tag definition set: groups, their order, lookup, labels.
#include "exif/definition_set.h"

#include "tests/exif/exif_test.h"

namespace {

using namespace test;
using exif::DefinitionSet;

class Definitions : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    for (host::u16 row = 0; row < 113; ++row) {
      exif_.set(row, static_cast<host::u16>(1000 + row), 1, static_cast<host::u16>(5200 + row));
    }
    for (host::u16 row = 0; row < 32; ++row) {
      gps_.set(row, static_cast<host::u16>(2000 + row), 1, 1);
    }
  }
  DefinitionSet set_;
};

TEST_F(Definitions, TheModesBitsChooseTheGroupsPrimaryFirst) {
  const struct {
    host::u32 mode;
    unsigned size;
    host::u16 firstTag, lastTag;
  } rows[] = {{1, 71, 1000, 1070}, {2, 42, 1071, 1112}, {3, 113, 1000, 1112}, {7, 113, 1000, 1112}};
  for (const auto& row : rows) {
    ASSERT_TRUE(set_.buildExif(row.mode));
    EXPECT_EQ(set_.size(), row.size) << row.mode;
    EXPECT_EQ(set_.row(0).tag, row.firstTag);
    EXPECT_EQ(set_.row(row.size - 1).tag, row.lastTag);
  }
  EXPECT_TRUE(set_.buildExif(0));
  EXPECT_EQ(set_.size(), 0u);
  EXPECT_EQ(set_.find(1000), std::nullopt);
}

TEST_F(Definitions, AGpsSetHasAllItsRows) {
  ASSERT_TRUE(set_.buildGps());
  EXPECT_EQ(set_.size(), 32u);
  EXPECT_EQ(set_.row(31).tag, 2031);
}

TEST_F(Definitions, ALookupGivesTheFirstRowOfATag) {
  exif_.set(20, 7777, 1, 1);
  exif_.set(90, 7777, 1, 2);
  exif_.set(112, 8888, 1, 3);
  ASSERT_TRUE(set_.buildExif(3));
  EXPECT_EQ(set_.find(7777), 20u);
  EXPECT_EQ(set_.find(8888), 112u);
  EXPECT_EQ(set_.find(9999), std::nullopt);
  ASSERT_TRUE(set_.buildExif(2));
  EXPECT_EQ(set_.find(7777), 90u - 71u);
}

TEST_F(Definitions, ColumnsAreTheHostsOwn) {
  exif_.set(0, 0x1234, 16, 5200, 2401);
  ASSERT_TRUE(set_.buildExif(1));
  EXPECT_EQ(set_.row(0).kind, 16);
  EXPECT_EQ(set_.row(0).fieldId, 5200);
  EXPECT_EQ(host::u32{set_.row(0).labelId}, 2401u);
}

TEST_F(Definitions, ARowsLabelComesFromTheResourceLibraryAndIsFilledWithZeros) {
  exif_.set(0, 1, 1, 1, 2413);
  exif_.set(1, 2, 1, 1, host::noLabel);
  exif_.set(2, 3, 1, 1, 2402);
  ASSERT_TRUE(set_.buildExif(1));
  const auto expect = [&](unsigned row, const std::string& text) {
    const exif::Label& label = set_.label(row);
    std::string whole(text);
    whole.resize(60);
    EXPECT_EQ(std::string(label.data(), label.size()), whole) << row;
  };
  for (int again = 0; again < 2; ++again) {
    expect(0, "Original transmission reference");
    expect(1, "");
    expect(2, "Urgency");
  }
  exif_.set(0, 1, 1, 1, 2402);
  ASSERT_TRUE(set_.buildExif(1));
  expect(0, "Urgency");
}

TEST_F(Definitions, AStringThatTheLibraryLacksIsAnEmptyLabel) {
  exif_.set(0, 1, 1, 1, 64999);
  ASSERT_TRUE(set_.buildExif(1));
  EXPECT_EQ(set_.label(0), exif::Label{});
}

}  // namespace

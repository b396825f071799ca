// Which pages a file has, under which templates and titles.
#include "viewer/page_list.h"

#include "tests/plugin/plugin.h"

namespace {

using namespace test;

class PageList : public testing::Test {
 protected:
  void SetUp() override { the().reset(); }

  void addField(int id) {
    HGLOBAL* slot = data_.with([](auto& data) { return property::propertySlot(data.record); });
    host::PropertyField field = {};
    field.descriptorSize = sizeof field;
    field.fieldId = static_cast<host::u16>(id);
    ASSERT_EQ(doubles::reserveFields(slot, 1), 1);
    ASSERT_EQ(doubles::appendField(data_.properties(), &field), 1);
  }
  void noteHeap() {
    data_.with([](auto& data) {
      data.tail.tag = host::jpegTailTag;
      data.tail.heapPresent = 1;
    });
  }
  std::vector<std::pair<int, int>> pages() const {
    std::vector<std::pair<int, int>> result;
    for (const auto& page : viewer::pagesOf(data_.handle())) {
      result.emplace_back(page.templateId, page.titleString);
    }
    return result;
  }

  FileData data_;
};

using Pages = std::vector<std::pair<int, int>>;

TEST_F(PageList, AFileWithoutAPropertyRecordHasTheGeneralPage) {
  EXPECT_EQ(pages(), (Pages{{796, 791}}));
  noteHeap();
  EXPECT_EQ(pages(), (Pages{{796, 791}}));
  EXPECT_EQ(viewer::optionalPageCount(data_.handle()), 0U);
}

TEST_F(PageList, ExifAloneKeepsItsTitle) {
  addField(5200);
  EXPECT_EQ(pages(), (Pages{{796, 791}, {798, 793}}));
  EXPECT_EQ(viewer::optionalPageCount(data_.handle()), 1U);
}

TEST_F(PageList, EveryKindHasItsPage) {
  for (const int id : {5600, 5300, 5200}) addField(id);
  noteHeap();
  EXPECT_EQ(pages(), (Pages{{796, 791}, {797, 792}, {798, 793}, {798, 794}, {799, 795}}));
  EXPECT_EQ(viewer::optionalPageCount(data_.handle()), 4U);
  EXPECT_TRUE(data_.unlocked());
}

TEST_F(PageList, FieldsOutsideTheRangesMakeNoPage) {
  for (const int id : {5000, 5199, 5297, 5299, 5332, 5599, 5627}) addField(id);
  EXPECT_EQ(pages(), (Pages{{796, 791}}));
}

TEST_F(PageList, TheEndsOfTheRangesMakePages) {
  addField(5296);
  EXPECT_EQ(pages(), (Pages{{796, 791}, {798, 793}}));
  addField(5331);
  EXPECT_EQ(pages(), (Pages{{796, 791}, {798, 793}, {798, 794}}));
  addField(5626);
  EXPECT_EQ(pages(), (Pages{{796, 791}, {798, 793}, {798, 794}, {799, 795}}));
}

TEST_F(PageList, TheMapOfAMultiPictureRecordTellsOfCameraData) {
  const FileData mpo(sizeof(host::MpoFileData));
  mpo.with<host::MpoFileData>([](auto& data) {
    data.tag = host::mpoTailTag;
    data.list.heapPresent = 1;
    EXPECT_EQ(doubles::reserveFields(property::propertySlot(data.record), 0), 1);
  });
  const auto pages = viewer::pagesOf(mpo.handle());
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[1].templateId, 797);
}

TEST_F(PageList, WithoutFileDataThereIsNoPage) {
  EXPECT_TRUE(viewer::pagesOf(nullptr).empty());
  EXPECT_EQ(viewer::optionalPageCount(nullptr), 0U);
}

TEST(DialogResult, OnlyAChangeBehindAnOkIsTold) {
  EXPECT_EQ(viewer::dialogResult(1, false), 1);
  EXPECT_EQ(viewer::dialogResult(1, true), 8);
  EXPECT_EQ(viewer::dialogResult(0, true), 0);
  EXPECT_EQ(viewer::dialogResult(-1, true), -1);
  EXPECT_EQ(viewer::dialogResult(5, true), 5);
}

}  // namespace

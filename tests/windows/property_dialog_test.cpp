// The property dialog of the built plug-in, in the frame of the built kFioUtil.
#include <gmock/gmock.h>

#include "host/property_pages.h"
#include "tests/windows/property_files.h"
#include "tests/windows/real_plugin.h"
#include "tests/windows/sheet.h"
#include "tests/windows/support/screenshot.h"

namespace {

using namespace test;
using testing::ElementsAre;

constexpr int valueBox = 3051;
constexpr int tagList = 3081;
constexpr int iptcList = 3082;

constexpr MetadataKinds everything = {true, true, true, true};

class PropertyDialog : public testing::Test {
 protected:
  void open(const MetadataKinds& kinds, int flags = 0) {
    scratch_ = std::make_unique<ScratchFile>(jpegWith(kinds));
    file_ = std::make_unique<DescribedFile>(scratch_->path());
    show(flags);
  }
  void show(int flags = 0, int extraPages = 0, void* extra = nullptr) {
    thread_ = std::make_unique<DialogThread>([=, this] {
      auto* entry = realEntry<host::ShowPropertyEntry>(host::ordinalShowProperty);
      return entry(nullptr, file_->handle(), extraPages, extra, flags);
    });
  }
  [[nodiscard]] Sheet sheet() const { return Sheet(*thread_); }
  int close() {
    sheet().cancel();
    return thread_->result();
  }
  [[nodiscard]] unsigned locks() const {
    return (GlobalFlags(file_->handle()) & GMEM_LOCKCOUNT) +
           (GlobalFlags(file_->properties()) & GMEM_LOCKCOUNT);
  }

  std::unique_ptr<ScratchFile> scratch_;
  std::unique_ptr<DescribedFile> file_;
  std::unique_ptr<DialogThread> thread_;
};

TEST_F(PropertyDialog, ShowsThePagesThatTheRecordHasSomethingFor) {
  open({.exif = true});
  EXPECT_THAT(sheet().titles(), ElementsAre("General", "EXIF"));
  EXPECT_EQ(sheet().window().text(), "JPEG");
  EXPECT_EQ(close(), 0);
  open(everything);
  EXPECT_THAT(sheet().titles(), ElementsAre("General", "Camera data", "EXIF", "GPS", "IPTC"));
  EXPECT_EQ(close(), 0);
  open({});
  EXPECT_THAT(sheet().titles(), ElementsAre("General"));
  EXPECT_EQ(close(), 0);
}

TEST_F(PropertyDialog, TheGeneralPageTellsThePicture) {
  open(everything);
  const Window page = sheet().page(0);
  EXPECT_EQ(page.control(3202).text(), "JPEG");
  EXPECT_EQ(page.control(3203).text(), "24 x 16 pixels");
  EXPECT_EQ(page.control(3206).text(), "72 x 72");
  EXPECT_EQ(page.control(3207).text(), "Baseline");
  EXPECT_TRUE(page.control(3208).visible());
  EXPECT_FALSE(page.control(3211).visible()) << "no number of images in a JPEG file";
  EXPECT_FALSE(page.control(3261).visible()) << "and no label for it";
  EXPECT_GT(saveScreenshot(sheet().window(), "property_general"), 8U);
  close();
}

TEST_F(PropertyDialog, TheExifPageListsFormattedValuesAndShowsTheRawOne) {
  open(everything);
  const Window page = sheet().page(2);
  const ListView list(page.control(tagList));
  EXPECT_EQ(list.title(0), "Name");
  EXPECT_EQ(list.title(1), "Value");
  EXPECT_EQ(list.columnWidth(0), 140);
  EXPECT_EQ(list.columnWidth(1), 250);
  ASSERT_EQ(list.rows(), 8);
  EXPECT_EQ(list.text(2, 0), "F-number");
  EXPECT_EQ(list.text(2, 1), "F/2.8");
  EXPECT_NE(page.control(valueBox).style() & ES_READONLY, 0U);
  EXPECT_EQ(page.control(valueBox).text(), "");
  list.clickRow(2);
  EXPECT_EQ(page.control(valueBox).text(), "28/10");
  list.clickRow(1);
  EXPECT_EQ(page.control(valueBox).text(), "1/250");
  EXPECT_GT(saveScreenshot(sheet().window(), "property_exif"), 8U);
  close();
}

TEST_F(PropertyDialog, TheGpsPageListsItsFields) {
  open(everything);
  const Window page = sheet().page(3);
  const ListView list(page.control(tagList));
  EXPECT_EQ(list.columnWidth(0), 140);
  EXPECT_EQ(list.columnWidth(1), 140);
  ASSERT_EQ(list.rows(), 5);
  EXPECT_EQ(list.text(0, 1), "2,2,0,0");
  list.clickRow(0);
  EXPECT_EQ(page.control(valueBox).text(), "02 02 00 00 ");
  EXPECT_GT(saveScreenshot(sheet().window(), "property_gps"), 8U);
  close();
}

TEST_F(PropertyDialog, TheIptcBoxShowsTheDescriptorOfTheRowsNumber) {
  open(everything);
  const Window page = sheet().page(4);
  const ListView list(page.control(iptcList));
  ASSERT_EQ(list.rows(), 4);
  EXPECT_EQ(list.columnWidth(0), 140);
  EXPECT_EQ(list.columnWidth(1), 140);
  EXPECT_EQ(list.text(0, 0), "Record version");
  EXPECT_EQ(list.text(0, 1), "2.0");
  EXPECT_EQ(list.text(1, 1), "Wien");
  list.clickRow(0);
  EXPECT_EQ(page.control(valueBox).text(), "") << "the record's first descriptor is no text";
  EXPECT_GT(saveScreenshot(sheet().window(), "property_iptc"), 8U);
  close();
}

TEST_F(PropertyDialog, TheCameraPageHoldsTheTreeListFivePixelsInside) {
  open(everything);
  const Window page = sheet().page(1);
  const Window main = page.control(1);
  EXPECT_EQ(main.className(), "Ciff_TreeList");
  const RECT area = main.placeIn(page);
  const RECT client = page.clientArea();
  EXPECT_EQ(area.left, 5);
  EXPECT_EQ(area.top, 5);
  EXPECT_EQ(area.right, client.right - 5);
  EXPECT_EQ(area.bottom, client.bottom - 5);
  EXPECT_GT(saveScreenshot(sheet().window(), "property_camera_data"), 8U);
  close();
}

TEST_F(PropertyDialog, ThePagesHoldTheirLocksAsLongAsTheyLive) {
  open(everything);
  EXPECT_EQ(locks(), 0U) << "the general page holds none";
  sheet().page(2);
  EXPECT_EQ(locks(), 2U);
  sheet().page(3);
  EXPECT_EQ(locks(), 4U);
  sheet().page(4);
  EXPECT_EQ(locks(), 6U);
  close();
  EXPECT_EQ(locks(), 0U);
}

}  // namespace

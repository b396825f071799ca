// Opening the property dialog: what the frame is called with, in which order, and the results.
#include "host/property_pages.h"
#include "tests/plugin/plugin.h"

namespace {

using namespace test;
using host::PropertyPage;

// What the frame was shown.
struct Shown {
  HWND owner = nullptr;
  host::PropertyDialogHeader header = {};
  std::vector<PropertyPage> pages;
  std::vector<std::string> titles;
  int flags = 0;
};

class ShowProperty : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    the().showProperty = [this](HWND owner, host::PropertyDialogHeader& header, int count,
                                PropertyPage* pages, int flags) {
      shown_ = {};
      shown_.owner = owner;
      shown_.header = header;
      shown_.flags = flags;
      shown_.pages.assign(pages, pages + count);
      const auto own = static_cast<std::size_t>(count) - extra_.size();
      for (std::size_t slot = 0; slot < own; ++slot) {
        shown_.titles.emplace_back(reinterpret_cast<const char*>(pages[slot].title));
      }
      header.lastPage = leaveOnPage_;
      return result_;
    };
  }
  // A record whose metadata has been taken in: these fields and no more.
  void addField(int id) {
    HGLOBAL* slot = data_.with([](auto& data) {
      return reinterpret_cast<HGLOBAL*>(reinterpret_cast<host::u8*>(&data.record) + 738);
    });
    ASSERT_EQ(doubles::reserveFields(slot, 1), 1);
    host::PropertyField field = {};
    field.descriptorSize = sizeof field;
    field.fieldId = static_cast<host::u16>(id);
    ASSERT_EQ(doubles::appendField(data_.properties(), &field), 1);
    const platform::LockedGlobal lock(data_.properties());
    static_cast<host::u8*>(lock.address())[8 + 69] = 1;
  }
  int show(int flags = 0, HWND owner = nullptr) {
    the().calls.clear();
    return entry<host::ShowPropertyEntry>(host::ordinalShowProperty)(
        owner, data_.handle(), static_cast<int>(extra_.size()),
        extra_.empty() ? nullptr : extra_.data(), flags);
  }
  std::vector<host::u32> templates() const {
    std::vector<host::u32> ids;
    for (const PropertyPage& page : shown_.pages) ids.push_back(page.templateId);
    return ids;
  }

  FileData data_;
  std::vector<PropertyPage> extra_;
  Shown shown_;
  int result_ = 0;
  host::u32 leaveOnPage_ = 0;
};

TEST_F(ShowProperty, ThePropertyRecordIsFetchedBeforeTheFrameOpens) {
  addField(5200);
  EXPECT_EQ(show(), 0);
  EXPECT_THAT(the().calls, testing::ElementsAre("gfioGetFileSourcePath", "kFioShowProperty:2"));
}

TEST_F(ShowProperty, TheHeaderNamesTheFileDataAndTheCaption) {
  HWND owner = reinterpret_cast<HWND>(std::uintptr_t{0x1234});
  EXPECT_EQ(show(5, owner), 0);
  EXPECT_EQ(shown_.owner, owner);
  EXPECT_EQ(shown_.flags, 5);
  EXPECT_EQ(+shown_.header.size, 72u);
  EXPECT_EQ(+shown_.header.fileData, reinterpret_cast<host::u64>(data_.handle()));
  EXPECT_STREQ(shown_.header.caption, "JPEG");
}

TEST_F(ShowProperty, PagesAreDescribedByTheirRecords) {
  for (const int id : {5600, 5300, 5200}) addField(id);
  data_.with([](auto& data) {
    data.tail.tag = host::jpegTailTag;
    data.tail.heapPresent = 1;
  });
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(templates(), (std::vector<host::u32>{796, 797, 798, 798, 799}));
  EXPECT_EQ(shown_.titles,
            (std::vector<std::string>{"General", "Camera data", "EXIF", "GPS", "IPTC"}));
  std::vector<host::u64> procedures;
  for (const PropertyPage& page : shown_.pages) {
    EXPECT_EQ(+page.size, 72u);
    EXPECT_EQ(+page.resources, reinterpret_cast<host::u64>(GetModuleHandleA("KFRES.DLL")));
    EXPECT_NE(+page.procedure, 0u);
    EXPECT_EQ(std::count(procedures.begin(), procedures.end(), +page.procedure), 0);
    procedures.push_back(page.procedure);
  }
}

TEST_F(ShowProperty, AMissingPageShiftsNoTitle) {
  addField(5200);
  addField(5600);
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(templates(), (std::vector<host::u32>{796, 798, 799}));
  EXPECT_EQ(shown_.titles, (std::vector<std::string>{"General", "EXIF", "IPTC"}));
}

TEST_F(ShowProperty, TheCallersPagesFollowUnchanged) {
  addField(5200);
  extra_.resize(2);
  std::memset(extra_.data(), 0xA5, extra_.size() * sizeof extra_[0]);
  extra_[1].templateId = 77;
  EXPECT_EQ(show(), 0);
  ASSERT_EQ(shown_.pages.size(), 4u);
  EXPECT_EQ(std::memcmp(&shown_.pages[2], extra_.data(), 80), 0);
}

TEST_F(ShowProperty, AFileWithoutMetadataHasTheGeneralPage) {
  EXPECT_EQ(show(), 0);
  EXPECT_EQ(templates(), (std::vector<host::u32>{796}));
}

TEST_F(ShowProperty, ThePageShownLastIsPassedInAgain) {
  leaveOnPage_ = 3;
  show();
  leaveOnPage_ = 1;
  show();
  EXPECT_EQ(+shown_.header.lastPage, 3u);
  leaveOnPage_ = 0;
  show();
  EXPECT_EQ(+shown_.header.lastPage, 1u);
  show();
  EXPECT_EQ(+shown_.header.lastPage, 0u);
}

TEST_F(ShowProperty, TheFramesResultStands) {
  for (const int result : {0, 1, 2, 100, -2}) {
    result_ = result;
    EXPECT_EQ(show(), result);
  }
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(ShowProperty, AFailedFrameIsReportedOnce) {
  result_ = -1;
  EXPECT_EQ(show(), -1);
  EXPECT_EQ(reportedErrors(), (std::vector<std::vector<int>>{{1004, 1, 870, 872, 955}}));
  EXPECT_TRUE(data_.unlocked());
}

TEST_F(ShowProperty, WithoutFileDataNothingIsShown) {
  auto* entryPoint = entry<host::ShowPropertyEntry>(host::ordinalShowProperty);
  EXPECT_EQ(entryPoint(nullptr, nullptr, 0, nullptr, 0), 0);
  EXPECT_TRUE(callsOf({"kFioShowProperty"}).empty());
  EXPECT_TRUE(the().reports.empty());
}

TEST_F(ShowProperty, PagesThatMemoryCannotHoldFail) {
  PropertyPage page = {};
  auto* entryPoint = entry<host::ShowPropertyEntry>(host::ordinalShowProperty);
  EXPECT_EQ(entryPoint(nullptr, data_.handle(), 0x7FFFFFFF, &page, 0), -1);
  EXPECT_EQ(reportedErrors(), (std::vector<std::vector<int>>{{1004, 1, 870, 872, 955}}));
  EXPECT_TRUE(callsOf({"kFioShowProperty"}).empty());
}

TEST_F(ShowProperty, NothingStaysLocked) {
  addField(5200);
  EXPECT_EQ(show(), 0);
  EXPECT_TRUE(data_.unlocked());
  EXPECT_EQ(GlobalFlags(data_.properties()) & GMEM_LOCKCOUNT, 0u);
}

TEST_F(ShowProperty, TheFileDataDialogIsTheSame) {
  result_ = 42;
  HWND owner = reinterpret_cast<HWND>(std::uintptr_t{0x1234});
  auto* dialog = entry<host::JpgShowDlgEntry>(host::ordinalJpgShowDlgFileData);
  EXPECT_EQ(dialog(99, owner, data_.handle()), 42);
  EXPECT_EQ(shown_.owner, owner);
  EXPECT_EQ(shown_.flags, 0);
  EXPECT_EQ(templates(), (std::vector<host::u32>{796}));
}

}  // namespace

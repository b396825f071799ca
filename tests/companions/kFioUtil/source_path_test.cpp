#include <cstring>
#include <string>

#include "host/file_data.h"
#include "host/kfioutil.h"
#include "platform/global_memory.h"
#include "tests/companions/loaded_module.h"

namespace {

using host::FileDataRecord;

class SourcePath : public testing::Test {
 protected:
  // Both slots begin with something that must be overwritten.
  void ask() {
    ansi_ = &before_;
    wide_ = &wideBefore_;
    result_ = byHandle_(block_.get(), &ansi_, &wide_);
  }
  void fill(const FileDataRecord& record, std::size_t size = sizeof(FileDataRecord)) {
    block_ = platform::OwnedGlobal(platform::movableZeroed, size);
    platform::LockedGlobal lock(block_.get());
    std::memcpy(lock.address(), &record, std::min(size, sizeof(record)));
  }
  static FileDataRecord recordOf(const std::string& ansi, const wchar_t* wide) {
    FileDataRecord record = {};
    std::memcpy(record.ansiPath, ansi.data(), std::min(ansi.size(), sizeof(record.ansiPath)));
    record.pathFlags = wide != nullptr ? host::pathFlagWide : host::u16{0};
    record.widePath = reinterpret_cast<host::u64>(wide);
    return record;
  }

  test::LoadedModule module_{"fio/kFioUtil.dll"};
  decltype(gfioGetFileSourcePath)* byHandle_ =
      module_.function<decltype(gfioGetFileSourcePath)>("gfioGetFileSourcePath");
  decltype(gfioGetFileSourcePath_DS)* byAddress_ =
      module_.function<decltype(gfioGetFileSourcePath_DS)>("gfioGetFileSourcePath_DS");
  platform::OwnedGlobal block_;
  char before_ = 'x';
  wchar_t wideBefore_ = L'x';
  char* ansi_ = nullptr;
  wchar_t* wide_ = nullptr;
  int result_ = -1;
};

TEST_F(SourcePath, GivesBothForms) {
  fill(recordOf("C:\\a.jpg", L"C:\\\u00E4.jpg"));
  ask();
  EXPECT_EQ(result_, 1);
  EXPECT_STREQ(ansi_, "C:\\a.jpg");
  EXPECT_STREQ(wide_, L"C:\\\u00E4.jpg");
}

TEST_F(SourcePath, ClearsTheSlotOfAMissingForm) {
  fill(recordOf("a.jpg", nullptr));
  ask();
  EXPECT_STREQ(ansi_, "a.jpg");
  EXPECT_EQ(wide_, nullptr);
  fill(recordOf("", L"a.jpg"));
  ask();
  EXPECT_EQ(result_, 1);
  EXPECT_EQ(ansi_, nullptr);
  EXPECT_STREQ(wide_, L"a.jpg");
}

TEST_F(SourcePath, TakesTheWidePathOnlyWhenItsFlagIsSet) {
  FileDataRecord record = recordOf("", L"a.jpg");
  record.pathFlags = 0xFFFE;
  fill(record);
  ask();
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(wide_, nullptr);
}

TEST_F(SourcePath, TakesAPathOf259Characters) {
  const std::string longest(259, 'p');
  fill(recordOf(longest, nullptr));
  ask();
  ASSERT_NE(ansi_, nullptr);
  EXPECT_EQ(ansi_, longest);
}

TEST_F(SourcePath, HandsOutNoTextThatRunsOutOfItsField) {
  fill(recordOf(std::string(260, 'p'), nullptr));
  ask();
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(ansi_, nullptr);
}

TEST_F(SourcePath, ReadsNoFieldThatTheBlockDoesNotReach) {
  const FileDataRecord record = recordOf("a.jpg", L"a.jpg");
  fill(record, 264);
  ask();
  EXPECT_STREQ(ansi_, "a.jpg");
  EXPECT_EQ(wide_, nullptr);
  fill(record, 263);
  ask();
  EXPECT_EQ(ansi_, nullptr);
  fill(record, 724);
  ask();
  EXPECT_STREQ(wide_, L"a.jpg");
  fill(record, 723);
  ask();
  EXPECT_EQ(wide_, nullptr);
}

TEST_F(SourcePath, ClearsTheSlotsOfNoRecord) {
  ask();
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(ansi_, nullptr);
  EXPECT_EQ(wide_, nullptr);
}

TEST_F(SourcePath, BearsNullSlots) {
  fill(recordOf("a.jpg", L"b.jpg"));
  EXPECT_EQ(byHandle_(block_.get(), nullptr, nullptr), 1);
  EXPECT_EQ(byHandle_(block_.get(), &ansi_, nullptr), 1);
  EXPECT_STREQ(ansi_, "a.jpg");
  EXPECT_EQ(byHandle_(block_.get(), nullptr, &wide_), 1);
  EXPECT_STREQ(wide_, L"b.jpg");
}

TEST_F(SourcePath, LeavesTheRecordUnlocked) {
  fill(recordOf("a.jpg", nullptr));
  ask();
  EXPECT_EQ(GlobalFlags(block_.get()) & GMEM_LOCKCOUNT, 0U);
}

TEST_F(SourcePath, ReadsALockedRecordTheSameWay) {
  FileDataRecord record = recordOf("a.jpg", L"b.jpg");
  EXPECT_EQ(byAddress_(&record, &ansi_, &wide_), 1);
  EXPECT_EQ(ansi_, record.ansiPath);
  EXPECT_STREQ(wide_, L"b.jpg");
  record = recordOf("", nullptr);
  EXPECT_EQ(byAddress_(&record, &ansi_, &wide_), 0);
  EXPECT_EQ(ansi_, nullptr);
  EXPECT_EQ(wide_, nullptr);
  EXPECT_EQ(byAddress_(nullptr, &ansi_, &wide_), 0);
}

}  // namespace

#include <thread>

#include "host/k32comm.h"
#include "tests/companions/loaded_module.h"

namespace {

class ErrorReportTest : public testing::Test {
 protected:
  ErrorReportTest() { clear_(); }

  [[nodiscard]] host::ErrorReport last() const {
    host::ErrorReport report = {-1, -1, -1, -1, -1, -1, -1};
    last_(&report);
    return report;
  }

  test::LoadedModule module_{"fio/k32Comm.dll"};
  decltype(c32SetDLLErrInfo)* set_ =
      module_.function<decltype(c32SetDLLErrInfo)>("c32SetDLLErrInfo");
  decltype(kfioLastError)* last_ = module_.function<decltype(kfioLastError)>("kfioLastError");
  decltype(kfioClearError)* clear_ = module_.function<decltype(kfioClearError)>("kfioClearError");
};

TEST_F(ErrorReportTest, IsAllZerosWhenThereIsNone) {
  const host::ErrorReport report = last();
  EXPECT_EQ(report.count, 0);
  EXPECT_EQ(report.owner, 0);
  EXPECT_EQ(report.code, 0);
  EXPECT_EQ(report.position, 0);
}

TEST_F(ErrorReportTest, HoldsTheArgumentsInOrder) {
  set_(nullptr, 4020, 1, 890, 891, 521);
  const host::ErrorReport report = last();
  EXPECT_EQ(report.count, 1);
  EXPECT_EQ(report.owner, 0);
  EXPECT_EQ(report.code, 4020);
  EXPECT_EQ(report.site, 1);
  EXPECT_EQ(report.unit, 890);
  EXPECT_EQ(report.source, 891);
  EXPECT_EQ(report.position, 521);
}

TEST_F(ErrorReportTest, KeepsTheLastAndCountsAll) {
  set_(nullptr, 1004, 1, 870, 872, 955);
  set_(nullptr, 4021, 2, 1890, 1892, 131);
  EXPECT_EQ(last().count, 2);
  EXPECT_EQ(last().code, 4021);
}

TEST_F(ErrorReportTest, StartsAgainAfterAClear) {
  set_(nullptr, 1004, 1, 870, 872, 955);
  clear_();
  EXPECT_EQ(last().count, 0);
  EXPECT_EQ(last().code, 0);
  set_(nullptr, 4005, 1, 890, 891, 242);
  EXPECT_EQ(last().count, 1);
}

TEST_F(ErrorReportTest, NeverShowsTheOwner) {
  set_(reinterpret_cast<HWND>(this), 1004, 1, 870, 872, 955);
  EXPECT_EQ(last().owner, 0);
}

TEST_F(ErrorReportTest, BelongsToItsThread) {
  set_(nullptr, 4019, 1, 890, 891, 184);
  host::ErrorReport before = {};
  host::ErrorReport after = {};
  std::thread([&] {
    before = last();
    set_(nullptr, 4005, 1, 890, 891, 242);
    after = last();
  }).join();
  EXPECT_EQ(before.count, 0);
  EXPECT_EQ(after.code, 4005);
  EXPECT_EQ(last().code, 4019);
  EXPECT_EQ(last().count, 1);
}

TEST_F(ErrorReportTest, BearsANullRecord) { last_(nullptr); }

}  // namespace

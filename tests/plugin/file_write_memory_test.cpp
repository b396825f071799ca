// A write whose record cannot take what the write says of it: the picture is there, the call fails.
#include "platform/posix/diagnostics.h"
#include "tests/plugin/file_write_fixture.h"

namespace {

using namespace test;

constexpr std::size_t recordWithTail = 814;

// No block of that size, while it lives.
class WithoutRecords {
 public:
  WithoutRecords() {
    platform::posix::setAllocationFilter([](std::size_t size) { return size != recordWithTail; });
  }
  WithoutRecords(const WithoutRecords&) = delete;
  WithoutRecords& operator=(const WithoutRecords&) = delete;
  ~WithoutRecords() { platform::posix::setAllocationFilter(nullptr); }
};

TEST_F(FileWrite, ARecordThatCannotGrowFailsAndKeepsTheFileOpen) {
  make(746);
  play([](auto&) {});
  {
    const WithoutRecords scarce;
    EXPECT_EQ(write(), 0);
  }
  EXPECT_TRUE(reportedErrors().empty());
  EXPECT_EQ(data().bytes().size(), 746u);
  EXPECT_EQ(output_.write(output_.file, 1, "x"), 1) << "still open";
  EXPECT_NE(CloseHandle(output_.file), 0);
}

}  // namespace

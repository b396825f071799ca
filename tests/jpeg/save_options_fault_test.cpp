// A confirmed dialog whose record cannot be enlarged.
#include "frame/save_options.h"
#include "jpeg/save_options_values.h"
#include "platform/posix/diagnostics.h"
#include "tests/plugin/plugin.h"

namespace {

using test::FileData;

TEST(SaveOptionsFault, ARecordThatCannotGrowIsLeftAsItWas) {
  const FileData data(sizeof(host::FileDataRecord));
  const std::vector<host::u8> before = data.bytes();
  platform::LockedGlobal lock(data.handle());
  platform::posix::setAllocationFilter([](std::size_t) { return false; });
  const bool stored = jpeg::storeInRecord(data.handle(), lock, {11, 1, 2, 1});
  platform::posix::setAllocationFilter(nullptr);
  EXPECT_FALSE(stored);
  EXPECT_EQ(data.bytes(), before);
  EXPECT_TRUE(data.unlocked());
}

}  // namespace

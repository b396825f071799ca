#include "host/kfioutil.h"
#include "tests/companions/loaded_module.h"

namespace {

class Version : public testing::Test {
 protected:
  test::LoadedModule module_{"fio/kFioUtil.dll"};
  decltype(CheckFIOVersion)* check_ =
      module_.function<decltype(CheckFIOVersion)>("CheckFIOVersion");
};

TEST_F(Version, AcceptsALoadedModule) {
  const test::LoadedModule other("fio/k32Comm.dll");
  EXPECT_EQ(check_(module_.handle()), 1);
  EXPECT_EQ(check_(other.handle()), 1);
}

TEST_F(Version, RefusesWhatIsNoModule) {
  EXPECT_NE(check_(nullptr), 1);
  alignas(4096) static char nothing[4096];
  EXPECT_NE(check_(reinterpret_cast<HMODULE>(nothing)), 1);
}

}  // namespace

#include "host/k32misc.h"
#include "tests/companions/loaded_module.h"

namespace {

TEST(DialogStart, IsFoundByItsOrdinalAndLetsTheDialogGoOn) {
  const test::LoadedModule module("fio/K32MISC.dll");
  const auto start = module.function<decltype(k32MiscDialogStart)>(WORD{20});
  ASSERT_NE(start, nullptr);
  EXPECT_EQ(start(nullptr, 1, 0, 0), 0);
}

}  // namespace

// For tests that link the plug-in's code itself, to reach its inner parts: the code is attached
// like the module, so that companions and resources are found.
#include <gtest/gtest.h>

#include "platform/system.h"
#include "tests/plugin/doubles/doubles.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) noexcept;

namespace {

class AttachedCode : public testing::Environment {
 public:
  void SetUp() override {
    doubles::state().reset();
    ASSERT_TRUE(DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_ATTACH, nullptr));
  }
  void TearDown() override { DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_DETACH, nullptr); }
};

// The test program owns its environments.
[[maybe_unused]] const testing::Environment* const attached =
    testing::AddGlobalTestEnvironment(new AttachedCode);

}  // namespace

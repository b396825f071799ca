// The main program of tests that link the plug-in's code itself, to reach its inner parts: it
// attaches like the module, so that companions and resources are found.
#include <gmock/gmock.h>

#include "platform/system.h"
#include "tests/plugin/doubles/doubles.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved) noexcept;

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  // The build lists the tests of a fresh program before its companions lie beside it.
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  doubles::state().reset();
  if (DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_ATTACH, nullptr) == FALSE) return 1;
  const int result = RUN_ALL_TESTS();
  DllMain(GetModuleHandleA(nullptr), DLL_PROCESS_DETACH, nullptr);
  return result;
}

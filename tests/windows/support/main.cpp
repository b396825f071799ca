// The main program of tests that open windows.
#include <gmock/gmock.h>

#include <cstdlib>

#include "platform/system.h"
#include "tests/windows/support/private_desktop.h"
#include "tests/windows/support/watchdog.h"

namespace {

// Opening a dialog a thousand times under a loaded machine takes a good minute.
std::chrono::seconds limitOfATest() {
  const char* seconds = std::getenv("KF_TEST_SECONDS");
  return std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 240);
}

}  // namespace

int main(int argc, char** argv) {
  if (const auto result = test::runOnPrivateDesktop()) return *result;
  SetProcessDPIAware();  // else the system shows 96 dots per inch and enlarges the picture
  testing::InitGoogleMock(&argc, argv);
  // The list owns its listeners.
  testing::UnitTest::GetInstance()->listeners().Append(new test::Watchdog(limitOfATest()));
  return RUN_ALL_TESTS();
}

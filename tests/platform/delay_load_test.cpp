#include "platform/delay_load.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/platform/loaded_library.h"
#include "tests/platform/modules/greeter.h"

namespace {

using platform::DelayNotification;

struct Notification {
  DelayNotification kind;
  std::string library;
};

std::vector<Notification> notifications;
HMODULE substitute = nullptr;

HMODULE record(DelayNotification kind, const char* library) noexcept {
  notifications.push_back({kind, library});
  return kind == DelayNotification::libraryNotLoaded ? substitute : nullptr;
}

class DelayLoad : public ::testing::Test {
 protected:
  DelayLoad() {
    notifications.clear();
    platform::setDelayFailureHook(record);
  }
  ~DelayLoad() override {
    platform::setDelayFailureHook(nullptr);
    substitute = nullptr;
  }
};

TEST_F(DelayLoad, ExportIsFoundWithoutAskingTheHook) {
  FARPROC byName = platform::findDelayed("greeter.dll", "greeterAdd");
  const LoadedLibrary reference(GetModuleHandleA("greeter.dll"));  // the one that the search kept
  EXPECT_NE(byName, nullptr);
  EXPECT_EQ(byName, GetProcAddress(reference.get(), "greeterAdd"));
  EXPECT_TRUE(notifications.empty());
}

TEST_F(DelayLoad, MissingLibraryIsAskedFor) {
  EXPECT_EQ(platform::findDelayed("nobody.dll", "anything"), nullptr);
  ASSERT_EQ(notifications.size(), 1u);
  EXPECT_EQ(notifications[0].kind, DelayNotification::libraryNotLoaded);
  EXPECT_EQ(notifications[0].library, "nobody.dll");
}

TEST_F(DelayLoad, ModuleOfTheHookIsUsedInstead) {
  const LoadedLibrary greeter("greeter.dll");
  substitute = greeter.get();
  EXPECT_EQ(platform::findDelayed("nobody.dll", static_cast<WORD>(7)),
            GetProcAddress(greeter.get(), MAKEINTRESOURCEA(7)));
}

TEST_F(DelayLoad, MissingExportIsTold) {
  const LoadedLibrary greeter("greeter.dll");
  substitute = greeter.get();
  EXPECT_EQ(platform::findDelayed("nobody.dll", "greeterMissing"), nullptr);
  ASSERT_EQ(notifications.size(), 2u);
  EXPECT_EQ(notifications[1].kind, DelayNotification::procedureNotFound);
}

}  // namespace

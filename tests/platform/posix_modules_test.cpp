#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/platform/file_handle.h"
#include "tests/platform/loaded_library.h"
#include "tests/platform/temporary_folder.h"

namespace {

const std::string modules = KF_TEST_MODULES;

TEST(PosixModules, BareNameIsFoundInAFolderOfPath) {
  EXPECT_EQ(LoadedLibrary("greeter.dll").get(), nullptr);
  const std::string before = std::getenv("PATH");
  SetEnvironmentVariableA("PATH", ("/nowhere:" + modules + ":" + before).c_str());
  const LoadedLibrary greeter("greeter.dll");
  SetEnvironmentVariableA("PATH", before.c_str());
  EXPECT_NE(greeter.get(), nullptr);
}

TEST(PosixModules, FileIsOneModuleUnderAllItsNames) {
  const TemporaryFolder folder;
  std::filesystem::create_symlink(modules + "/greeter.dll", folder.file("soft.dll"));
  const LoadedLibrary greeter(modules + "/greeter.dll");
  const LoadedLibrary soft(folder.file("soft.dll"));
  ASSERT_NE(greeter.get(), nullptr);
  EXPECT_EQ(soft.get(), greeter.get());
}

TEST(PosixModules, StringIsCutBetweenCharacters) {
  const LoadedLibrary greeter(modules + "/greeter.dll");
  char buffer[8];
  EXPECT_EQ(LoadStringA(greeter.get(), 200, buffer, sizeof(buffer)), 6);
  EXPECT_STREQ(buffer, "d\xC3\xBC\xE2\x82\xAC");
  EXPECT_EQ(LoadStringA(greeter.get(), 200, buffer, 6), 3);  // two bytes of the last character fit
  EXPECT_STREQ(buffer, "d\xC3\xBC");
  EXPECT_EQ(LoadStringA(greeter.get(), 200, buffer, 3), 1);
}

TEST(PosixModules, StringOfNoModuleAndNoBufferAreRefused) {
  const LoadedLibrary greeter(modules + "/greeter.dll");
  char buffer[8] = "before";
  EXPECT_EQ(LoadStringA(reinterpret_cast<HINSTANCE>(buffer), 100, buffer, sizeof(buffer)), 0);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(LoadStringA(greeter.get(), 100, nullptr, 8), 0);
  EXPECT_EQ(LoadStringA(greeter.get(), 100, buffer, 0), 0);
  EXPECT_EQ(LoadStringA(greeter.get(), 100, buffer, -1), 0);
}

TEST(PosixModules, FileNameThatIsCutEndsInANul) {  // as it does since Windows Vista
  char narrow[8] = "xxxxxxx";
  wchar_t wide[8] = L"xxxxxxx";
  EXPECT_EQ(GetModuleFileNameA(nullptr, narrow, 5), 5u);
  EXPECT_EQ(narrow[4], '\0');
  EXPECT_EQ(GetModuleFileNameW(nullptr, wide, 5), 5u);
  EXPECT_EQ(wide[4], L'\0');
  EXPECT_EQ(GetModuleFileNameA(nullptr, narrow, 0), 0u);
}

TEST(PosixModules, NullAndForeignModulesAreRefused) {
  int foreign = 0;
  auto* module = reinterpret_cast<HMODULE>(&foreign);
  char path[MAX_PATH];
  EXPECT_FALSE(FreeLibrary(module));
  EXPECT_FALSE(FreeLibrary(nullptr));
  EXPECT_FALSE(DisableThreadLibraryCalls(module));
  EXPECT_EQ(GetProcAddress(module, "greeterAdd"), nullptr);
  EXPECT_EQ(GetModuleFileNameA(module, path, MAX_PATH), 0u);
  EXPECT_EQ(lastError(), 126u);
  EXPECT_EQ(LoadLibraryA(nullptr), nullptr);
  EXPECT_EQ(LoadLibraryA(""), nullptr);
}

}  // namespace

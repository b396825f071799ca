#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "tests/platform/file_handle.h"
#include "tests/platform/loaded_library.h"
#include "tests/platform/modules/greeter.h"
#include "tests/platform/temporary_folder.h"

namespace {

namespace fs = std::filesystem;

TEST(Modules, BareNameIsFoundBesideTheProgram) {
  TemporaryFolder folder;
  const fs::path before = fs::current_path();
  fs::current_path(folder.path());
  const LoadedLibrary greeter("greeter.dll");
  fs::current_path(before);
  EXPECT_NE(greeter.get(), nullptr);
}

TEST(Modules, NameWithoutADotGetsTheLibraryExtension) {
  const LoadedLibrary greeter("greeter");
  ASSERT_NE(greeter.get(), nullptr);
  EXPECT_EQ(GetModuleHandleA("greeter"), greeter.get());
  EXPECT_EQ(LoadedLibrary("greeter.").get(), nullptr);  // the dot means: no extension
}

TEST(Modules, BareNameIsFoundInTheCurrentFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(programFolder() / "apart");
  const LoadedLibrary nester("nester.dll");
  fs::current_path(before);
  EXPECT_NE(nester.get(), nullptr);
}

TEST(Modules, PathLoadsThatFile) {
  EXPECT_EQ(LoadedLibrary("nester.dll").get(), nullptr);
  EXPECT_EQ(lastError(), 126u);
  const LoadedLibrary nester(apart("nester.dll"));
  EXPECT_NE(nester.get(), nullptr);
  const LoadedLibrary wide(
      LoadLibraryW((programFolder() / "apart" / "nester.dll").wstring().c_str()));
  EXPECT_EQ(wide.get(), nester.get());
}

TEST(Modules, BackslashesSeparateFolders) {
  const LoadedLibrary nester(programFolder().string() + "\\apart\\nester.dll");
  EXPECT_NE(nester.get(), nullptr);
}

TEST(Modules, LoadedModuleIsFoundByNameWithoutRegardToCase) {
  const LoadedLibrary nester(apart("nester.dll"));
  EXPECT_EQ(GetModuleHandleA("NESTER.Dll"), nester.get());
  EXPECT_EQ(GetModuleHandleA("Nester"), nester.get());
  const LoadedLibrary again("NeSter.DLL");  // although no folder of the search has it
  EXPECT_EQ(again.get(), nester.get());
}

TEST(Modules, ReferencesAreCounted) {
  LoadedLibrary first(apart("nester.dll"));
  LoadedLibrary second(apart("nester.dll"));
  EXPECT_EQ(first.get(), second.get());
  EXPECT_TRUE(first.release());
  EXPECT_EQ(GetModuleHandleA("nester.dll"), second.get());
  HMODULE released = second.get();
  EXPECT_TRUE(second.release());
  EXPECT_EQ(GetModuleHandleA("nester.dll"), nullptr);
  EXPECT_EQ(lastError(), 126u);
  EXPECT_FALSE(FreeLibrary(released));
}

TEST(Modules, DllMainIsCalledOnceForTheFirstLoad) {
  const LoadedLibrary first("greeter.dll");
  const LoadedLibrary second("greeter.dll");
  ASSERT_NE(first.get(), nullptr);
  const AttachReport* report = first.find<GreeterAttachReport>("greeterAttachReport")();
  EXPECT_EQ(report->attached, 1);
  EXPECT_EQ(report->instance, first.get());
}

TEST(Modules, DllMainAlreadyKnowsItsModule) {
  const LoadedLibrary greeter("greeter.dll");
  ASSERT_NE(greeter.get(), nullptr);
  const AttachReport* report = greeter.find<GreeterAttachReport>("greeterAttachReport")();
  EXPECT_TRUE(fs::equivalent(report->fileName, programFolder() / "greeter.dll"));
  EXPECT_STREQ(report->greeting, "Good day");
}

TEST(Modules, DllMainIsCalledForTheLastReleaseOnly) {
  int detached = 0;
  LoadedLibrary first("greeter.dll");
  LoadedLibrary second("greeter.dll");
  ASSERT_NE(first.get(), nullptr);
  first.find<GreeterSetDetachCounter>("greeterSetDetachCounter")(&detached);
  first.release();
  EXPECT_EQ(detached, 0);
  second.release();
  EXPECT_EQ(detached, 1);
}

TEST(Modules, ModuleThatRefusesIsNotLoaded) {
  const LoadedLibrary refuser(apart("refuser.dll"));
  EXPECT_EQ(refuser.get(), nullptr);
  EXPECT_EQ(lastError(), 1114u);
  EXPECT_EQ(GetModuleHandleA("refuser.dll"), nullptr);
}

TEST(Modules, DllMainMayLoadAndReleaseAnotherModule) {
  {
    const LoadedLibrary nester(apart("nester.dll"));
    ASSERT_NE(nester.get(), nullptr);
    HMODULE inner = nester.find<HMODULE (*)()>("nesterGreeter")();
    EXPECT_NE(inner, nullptr);
    EXPECT_EQ(inner, GetModuleHandleA("greeter.dll"));
  }
  EXPECT_EQ(GetModuleHandleA("greeter.dll"), nullptr);
}

TEST(Modules, ThreadsLoadAndReleaseTogether) {
  const auto repeat = [] {
    for (int i = 0; i < 20; ++i) {
      const LoadedLibrary nester(apart("nester.dll"));
      const LoadedLibrary greeter("greeter.dll");
      const auto add = greeter.find<GreeterAdd>("greeterAdd");
      ASSERT_NE(add, nullptr);
      EXPECT_EQ(add(i, 2), i + 2);
    }
  };
  std::thread first(repeat);
  std::thread second(repeat);
  first.join();
  second.join();
  EXPECT_EQ(GetModuleHandleA("greeter.dll"), nullptr);
}

TEST(Modules, ExportsAreFoundByNameAndByOrdinal) {
  const LoadedLibrary greeter("greeter.dll");
  const auto add = greeter.find<GreeterAdd>("greeterAdd");
  ASSERT_NE(add, nullptr);
  EXPECT_EQ(add(2, 3), 5);
  EXPECT_EQ(greeter.find<GreeterAdd>(MAKEINTRESOURCEA(7)), add);
  const auto* table = greeter.find<const int*>("greeterTable");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table[2], 33);
}

TEST(Modules, OnlyExportsAreFound) {
  const LoadedLibrary greeter("greeter.dll");
  EXPECT_EQ(GetProcAddress(greeter.get(), "greeterMissing"), nullptr);
  EXPECT_EQ(lastError(), 127u);
  EXPECT_EQ(GetProcAddress(greeter.get(), "GreeterAdd"), nullptr);  // names have case
  EXPECT_EQ(GetProcAddress(greeter.get(), MAKEINTRESOURCEA(99)), nullptr);
  EXPECT_EQ(GetProcAddress(greeter.get(), "GlobalAlloc"),
            nullptr);  // what it links to is not its own
}

TEST(Modules, FileThatIsNoModuleIsTold) {
  EXPECT_EQ(LoadedLibrary(apart("plain_text.dll")).get(), nullptr);
  EXPECT_EQ(lastError(), 193u);
  EXPECT_EQ(LoadedLibrary(apart("missing.dll")).get(), nullptr);
  EXPECT_EQ(lastError(), 126u);
}

TEST(Modules, MainModuleIsTheProgram) {
  EXPECT_NE(GetModuleHandleA(nullptr), nullptr);
  char byNull[MAX_PATH] = {};
  char byHandle[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameA(nullptr, byNull, MAX_PATH);
  EXPECT_EQ(length, std::strlen(byNull));
  EXPECT_EQ(GetModuleFileNameA(GetModuleHandleA(nullptr), byHandle, MAX_PATH), length);
  EXPECT_STREQ(byNull, byHandle);
  EXPECT_TRUE(fs::is_regular_file(byNull));
}

TEST(Modules, FileNameThatDoesNotFitIsCut) {
  char whole[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, whole, MAX_PATH);
  char narrow[8];
  std::memset(narrow, 'x', sizeof(narrow));
  EXPECT_EQ(GetModuleFileNameA(nullptr, narrow, 5), 5u);
  EXPECT_EQ(lastError(), 122u);
  EXPECT_EQ(std::string(narrow, 4), std::string(whole, 4));
  EXPECT_EQ(narrow[5], 'x');
  wchar_t wide[8] = {};
  EXPECT_EQ(GetModuleFileNameW(nullptr, wide, 5), 5u);
  EXPECT_EQ(lastError(), 122u);
  EXPECT_EQ(wide[3], static_cast<wchar_t>(whole[3]));
}

}  // namespace

// Where the companions are found: by the normal search, else in "fio" beside the executable.
#include <gtest/gtest.h>

#include "host/format_info.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"

namespace {

// Loads the plug-in and asks for a format: nonzero when a utility library was found and accepted.
host::u16 versionedFormatId() {
  HMODULE module = LoadLibraryA(KF_PLUGIN_PATH);
  if (module == nullptr) return 0xFFFF;
  FARPROC found = GetProcAddress(module, MAKEINTRESOURCEA(host::ordinalJpgGetFormatInfo));
  HGLOBAL info = reinterpret_cast<host::GetFormatInfoEntry*>(reinterpret_cast<void*>(found))();
  const host::u16 id = platform::LockedGlobal(info).as<host::FormatInfoRecord>()->versionedFormatId;
  GlobalFree(info);
  return id;
}

// This program's folder has no "fio"; the current folder has one, which does not count.
TEST(CompanionSearch, OnlyTheFolderBesideTheExecutableCounts) {
  ASSERT_NE(SetCurrentDirectoryA(KF_FOLDER_WITH_FIO), 0);
  EXPECT_EQ(versionedFormatId(), 0);
}

}  // namespace

// The plug-in in a host that has none of the companions: it loads, and every call that needs one
// fails as the companion's own failure would.
#include <gtest/gtest.h>

#include "host/format_info.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"

namespace {

class CompanionsMissing : public testing::Test {
 protected:
  static void SetUpTestSuite() { module = LoadLibraryA(KF_PLUGIN_PATH); }
  void SetUp() override { ASSERT_NE(module, nullptr); }

  template <typename Entry>
  static Entry* entry(host::PluginOrdinal ordinal) {
    FARPROC found = GetProcAddress(module, MAKEINTRESOURCEA(ordinal));
    return reinterpret_cast<Entry*>(reinterpret_cast<void*>(found));
  }
  static inline HMODULE module = nullptr;
};

int takeNothing(host::ReadRequest*, host::u64, host::u32, host::u32, host::u32, host::u8**,
                host::u16, host::i32, host::u32) {
  ADD_FAILURE() << "no rows without a codec";
  return 1;
}

void* giveNothing(void*, host::u64, host::u32, host::u32, host::u32, host::u32, host::i32,
                  host::i32) {
  ADD_FAILURE() << "no rows without a codec";
  return nullptr;
}

TEST_F(CompanionsMissing, TheFormatsAreStillDescribedWithoutAnAcceptedVersion) {
  EXPECT_EQ(entry<host::GetFileFmtNumEntry>(host::ordinalGetFileFmtNum)(), 2);
  for (const auto ordinal : {host::ordinalJpgGetFormatInfo, host::ordinalMPOGetFormatInfo}) {
    HGLOBAL info = entry<host::GetFormatInfoEntry>(ordinal)();
    ASSERT_NE(info, nullptr);
    {
      const platform::LockedGlobal lock(info);
      EXPECT_EQ(lock.as<host::FormatInfoRecord>()->versionedFormatId, 0);
      EXPECT_NE(lock.as<host::FormatInfoRecord>()->formatId, 0);
    }
    GlobalFree(info);
  }
}

TEST_F(CompanionsMissing, EveryFileIsUnreadable) {
  const auto described = entry<host::JpgGetFileDataEntry>(host::ordinalJpgGetFileData)(0, "a.jpg");
  EXPECT_EQ(reinterpret_cast<host::u64>(described), host::fileNotServed);
}

TEST_F(CompanionsMissing, ReadingAndWritingFailCleanly) {
  HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, 814);
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  auto* read = entry<host::JpgFileReadEntry>(host::ordinalJpgFileRead);
  EXPECT_EQ(read(0, "a.jpg", data, &request, takeNothing), 0);
  request.fullImage = 0;
  EXPECT_EQ(read(0, "a.jpg", data, &request, takeNothing), 0);
  auto* write = entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite);
  EXPECT_EQ(write(nullptr, data, nullptr, giveNothing), 0) << "no source path";
  EXPECT_EQ(GlobalFlags(data) & GMEM_LOCKCOUNT, 0u);
  GlobalFree(data);
}

}  // namespace

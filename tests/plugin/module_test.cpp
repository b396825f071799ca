// Attaching: what is loaded and called, and in which order; the export table by name.
#include "tests/plugin/plugin.h"

namespace {

using namespace test;

constexpr struct {
  host::u16 ordinal;
  const char* name;
} exportTable[] = {
    {2, "kfDLLGetFileFmtNum"},    {10, "kfJpgFIOAction"},         {11, "kfJpgGetFormatInfo"},
    {12, "kfJpgGetFileData"},     {16, "kfJpgFileRead"},          {17, "kfJpgFileWrite"},
    {23, "kfDLLGetProperty"},     {24, "kfDLLSetProperty"},       {110, "kfMPOFIOAction"},
    {111, "kfMPOGetFormatInfo"},  {112, "kfMPOGetFileData"},      {116, "kfMPOFileRead"},
    {117, "kfMPOFileWrite"},      {123, "kfDLLMPOGetProperty"},   {124, "kfDLLMPOSetProperty"},
#ifdef _WIN32
    {14, "kfJpgShowDlgFileData"}, {15, "kfJpgShowDlgSaveOption"}, {25, "kfDLLShowProperty"},
#endif
};

class Module : public PluginTest {};

TEST_F(Module, EveryEntryIsFoundByOrdinalAndByName) {
  for (const auto& row : exportTable) {
    FARPROC byName = GetProcAddress(pluginModule(), row.name);
    EXPECT_NE(byName, nullptr) << row.name;
    EXPECT_EQ(GetProcAddress(pluginModule(), MAKEINTRESOURCEA(row.ordinal)), byName) << row.name;
  }
}

// A copy of the module attaches anew.
TEST_F(Module, AttachingLoadsTheSettingsThenIntroducesTheModule) {
  const std::string copy = std::string(KF_PLUGIN_PATH) + ".copy";
  FILE* source = std::fopen(KF_PLUGIN_PATH, "rb");
  FILE* target = std::fopen(copy.c_str(), "wb");
  ASSERT_TRUE(source != nullptr && target != nullptr);
  char buffer[65536];
  while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, source)) {
    ASSERT_EQ(std::fwrite(buffer, 1, count, target), count);
  }
  std::fclose(source);
  std::fclose(target);

  the().calls.clear();
  HMODULE module = LoadLibraryA(copy.c_str());
  ASSERT_NE(module, nullptr);
  EXPECT_NE(module, pluginModule());
  EXPECT_THAT(the().calls,
              testing::ElementsAre("k32GetKavroIniFileName:260", "LauncherSetInitMsgString"));
  the().calls.clear();
  EXPECT_NE(FreeLibrary(module), 0);
  EXPECT_TRUE(the().calls.empty()) << "detaching stores nothing";
  std::remove(copy.c_str());
}

}  // namespace

// The format count and the two format-information records.
#include "tests/plugin/plugin.h"

namespace {

using namespace test;

class FormatInfo : public PluginTest {
 protected:
  static std::vector<host::u8> record(host::PluginOrdinal ordinal) {
    HGLOBAL block = entry<host::GetFormatInfoEntry>(ordinal)();
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(GlobalSize(block), 120u);
    EXPECT_EQ(GlobalFlags(block) & GMEM_LOCKCOUNT, 0u);
    return FileData(block).bytes();
  }
};

TEST_F(FormatInfo, TheModuleServesTwoFormatsHoweverOftenItIsAsked) {
  auto* count = entry<host::GetFileFmtNumEntry>(host::ordinalGetFileFmtNum);
  for (int time = 0; time < 3; ++time) EXPECT_EQ(count(), 2);
}

TEST_F(FormatInfo, JpegRecordHoldsTheAgreedValues) {
  const auto bytes = record(host::ordinalJpgGetFormatInfo);
  EXPECT_EQ(at<host::u16>(bytes, 0), 0x8268);
  EXPECT_EQ(at<host::u16>(bytes, 2), 0x1268);
  EXPECT_EQ(at<host::u32>(bytes, 4), 1u);
  EXPECT_EQ(at<host::u32>(bytes, 8), 1u);
  EXPECT_EQ(at<host::u32>(bytes, 12), 0u);
  EXPECT_EQ(at<host::u32>(bytes, 16), 0u);
  EXPECT_EQ(at<host::u32>(bytes, 20), 1u);
  EXPECT_EQ(at<host::u32>(bytes, 24), 0xFFFFFFFFu);
  EXPECT_EQ(std::string(bytes.begin() + 28, bytes.begin() + 32), std::string("JPG\0", 4));
  const std::string name(reinterpret_cast<const char*>(bytes.data() + 32));
  EXPECT_THAT(name, testing::HasSubstr("JPEG"));
  EXPECT_LT(name.size(), 48u);
  EXPECT_EQ(std::vector<host::u8>(bytes.begin() + 80, bytes.begin() + 102),
            std::vector<host::u8>(22, 0));
  EXPECT_EQ(std::vector<host::u8>(bytes.begin() + 102, bytes.begin() + 106),
            (std::vector<host::u8>{0x02, 0x00, 0xFF, 0xD8}));
  EXPECT_EQ(std::vector<host::u8>(bytes.begin() + 106, bytes.end()), std::vector<host::u8>(14, 0));
}

TEST_F(FormatInfo, MpoRecordDiffersInIdsDialogFlagExtensionAndName) {
  const auto jpeg = record(host::ordinalJpgGetFormatInfo);
  const auto mpo = record(host::ordinalMPOGetFormatInfo);
  EXPECT_EQ(at<host::u16>(mpo, 0), 0x8668);
  EXPECT_EQ(at<host::u16>(mpo, 2), 0x1668);
  EXPECT_EQ(at<host::u32>(mpo, 8), 0u);
  EXPECT_EQ(std::string(mpo.begin() + 28, mpo.begin() + 32), std::string("MPO\0", 4));
  EXPECT_STREQ(reinterpret_cast<const char*>(mpo.data() + 32), "Multi-Picture Format");
  const auto same = [&](std::size_t from, std::size_t to) {
    return std::equal(jpeg.begin() + static_cast<std::ptrdiff_t>(from),
                      jpeg.begin() + static_cast<std::ptrdiff_t>(to),
                      mpo.begin() + static_cast<std::ptrdiff_t>(from));
  };
  EXPECT_TRUE(same(4, 8));
  EXPECT_TRUE(same(12, 28));
  EXPECT_TRUE(same(80, 120));
}

TEST_F(FormatInfo, ARefusedVersionClearsTheSecondFieldAlone) {
  for (const auto ordinal : {host::ordinalJpgGetFormatInfo, host::ordinalMPOGetFormatInfo}) {
    auto accepted = record(ordinal);
    for (const int answer : {0, 2, -1}) {
      the().checkVersion = [=](HMODULE) { return answer; };
      const auto refused = record(ordinal);
      EXPECT_EQ(at<host::u16>(refused, 2), 0);
      auto expected = accepted;
      expected[2] = expected[3] = 0;
      EXPECT_EQ(refused, expected);
    }
    the().checkVersion = [](HMODULE) { return 1; };
  }
}

TEST_F(FormatInfo, TheVersionIsCheckedForThePluginsOwnModule) {
  HMODULE asked = nullptr;
  the().checkVersion = [&](HMODULE module) {
    asked = module;
    return 1;
  };
  record(host::ordinalJpgGetFormatInfo);
  EXPECT_EQ(asked, pluginModule());
}

}  // namespace

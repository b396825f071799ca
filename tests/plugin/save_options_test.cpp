// The save options as a write sees them: loaded anew from the settings file each time.
#include <optional>

#include "tests/plugin/plugin.h"
#include "tests/plugin/settings_file.h"

namespace {

using namespace test;

void* giveNoRows(void*, host::u64, host::u32, host::u32, host::u32, host::u32, host::i32,
                 host::i32) {
  return nullptr;
}

class SaveOptions : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    file_.emplace();
    the().write = [this](auto&, auto&, const host::WriteOptions& options) {
      used_ = options;
      return 1;
    };
  }

  void settings(const std::string& text) const { file_->write(text); }

  // Mode, sample, quality and JFIF that a record without options of its own is written with.
  std::vector<host::i32> optionsOfAWrite() {
    const FileData data(sizeof(host::FileDataRecord));
    static int file = 0;
    EXPECT_EQ(entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(&file, data.handle(),
                                                                        nullptr, giveNoRows),
              1);
    return {static_cast<host::i32>(used_.mode), static_cast<host::i32>(used_.sample),
            static_cast<host::i32>(used_.quality), static_cast<host::i32>(used_.jfif)};
  }

  std::optional<SettingsFile> file_;
  host::WriteOptions used_ = {};
};

TEST_F(SaveOptions, WithoutASettingsFileTheDefaultsHold) {
  EXPECT_EQ(optionsOfAWrite(), (std::vector<host::i32>{0, 1, 85, 1}));
  the().iniPath.clear();
  EXPECT_EQ(optionsOfAWrite(), (std::vector<host::i32>{0, 1, 85, 1}));
}

TEST_F(SaveOptions, AllFourAreRead) {
  settings("[KF_IJPG]\r\nMode=1\r\nSample=3\r\nQuality=60\r\nJFIF=0\r\n");
  EXPECT_EQ(optionsOfAWrite(), (std::vector<host::i32>{1, 3, 60, 0}));
}

TEST_F(SaveOptions, ModeAndSampleAreForcedIntoRangeQualityAndJfifAreNot) {
  settings("[KF_IJPG]\r\nMode=2\r\nSample=4\r\nQuality=150\r\nJFIF=7\r\n");
  EXPECT_EQ(optionsOfAWrite(), (std::vector<host::i32>{0, 1, 150, 7}));
  settings("[KF_IJPG]\r\nMode=-1\r\nSample=-1\r\nQuality=-5\r\n");
  EXPECT_EQ(optionsOfAWrite(), (std::vector<host::i32>{0, 1, -5, 1}));
}

TEST_F(SaveOptions, AnEditBetweenTwoWritesTakesEffect) {
  settings("[KF_IJPG]\r\nQuality=10\r\n");
  EXPECT_EQ(optionsOfAWrite().at(2), 10);
  settings("[KF_IJPG]\r\nQuality=20\r\n");
  EXPECT_EQ(optionsOfAWrite().at(2), 20);
}

TEST_F(SaveOptions, AnotherSectionIsNotOurs) {
  settings("[OTHER]\r\nQuality=10\r\n[KF_IJPG]\r\nMode=1\r\n");
  EXPECT_EQ(optionsOfAWrite(), (std::vector<host::i32>{1, 1, 85, 1}));
}

}  // namespace

// What the save-options dialog edits, without its window.
#include "jpeg/save_options_values.h"

#include <optional>

#include "frame/save_options.h"
#include "tests/plugin/plugin.h"
#include "tests/plugin/settings_file.h"

namespace {

using jpeg::SaveOptionValues;
using jpeg::SliderMove;
using namespace test;

std::vector<host::i64> listed(const SaveOptionValues& values) {
  return {values.quality, values.mode, values.sample, values.jfif};
}

class SaveOptionsValues : public testing::Test {
 protected:
  void SetUp() override {
    the().reset();
    file_.emplace();
    frame::setSaveOptions({1, 2, 60, 7});
  }

  static std::vector<host::i64> initial(const FileData& data) {
    return listed(jpeg::initialSaveOptions(platform::LockedGlobal(data.handle())));
  }
  static bool store(const FileData& data, const SaveOptionValues& values) {
    platform::LockedGlobal lock(data.handle());
    return jpeg::storeInRecord(data.handle(), lock, values);
  }
  static void giveTail(const FileData& data, host::u32 colourType = host::colourTrue) {
    data.with([=](host::JpegFileData& record) {
      record.record.colourType = colourType;
      record.tail.tag = host::jpegTailTag;
      record.tail.quality = 40;
      record.tail.mode = 0;
      record.tail.sample = 3;
      record.tail.markerFlags = host::markerJfif;
    });
  }

  std::optional<SettingsFile> file_;
};

TEST_F(SaveOptionsValues, BeginWithTheRecordsOwn) {
  const FileData data;
  giveTail(data);
  EXPECT_EQ(initial(data), (std::vector<host::i64>{40, 0, 3, 1}));
}

TEST_F(SaveOptionsValues, BeginWithTheSettingsWhenTheRecordHasNone) {
  const FileData data;
  data.with([](auto& record) { record.record.colourType = host::colourTrue; });
  EXPECT_EQ(initial(data), (std::vector<host::i64>{60, 1, 2, 1}));
  const FileData small(sizeof(host::FileDataRecord));
  small.with<host::FileDataRecord>([](auto& record) { record.colourType = host::colourTrue; });
  EXPECT_EQ(initial(small), (std::vector<host::i64>{60, 1, 2, 1}));
  frame::setSaveOptions({1, 2, 60, 0});
  EXPECT_EQ(initial(small).at(3), 0);
}

// Kept: the JFIF word is what a save leaves, not what the next dialog shows.
TEST_F(SaveOptionsValues, TakeTheJfifChoiceFromTheFlagAlone) {
  const FileData data;
  giveTail(data);
  data.with([](auto& record) {
    record.tail.markerFlags = static_cast<host::u16>(~host::markerJfif);
    record.tail.jfif = 1;
  });
  EXPECT_EQ(initial(data).at(3), 0);
  data.with([](auto& record) {
    record.tail.markerFlags = host::markerJfif | host::markerAdobe;
    record.tail.jfif = 0;
  });
  EXPECT_EQ(initial(data).at(3), 1);
}

TEST_F(SaveOptionsValues, ReplaceASamplingThatIsNoChoice) {
  const FileData data;
  giveTail(data);
  for (const host::u32 sample : {4U, 1000U, 0xFFFFFFFFU}) {
    data.with([=](auto& record) { record.tail.sample = sample; });
    EXPECT_EQ(initial(data).at(2), 2) << sample;
  }
}

TEST_F(SaveOptionsValues, HaveNoSamplingForOtherColours) {
  const FileData data;
  for (const host::u32 colour :
       {host::colourGrey, host::colourFourComponents, host::colourUnserved}) {
    giveTail(data, colour);
    EXPECT_EQ(initial(data).at(2), jpeg::sampleNotApplicable) << colour;
  }
  const FileData tiny(8);
  EXPECT_EQ(initial(tiny), (std::vector<host::i64>{60, 1, -1, 1}));
}

TEST_F(SaveOptionsValues, BeginWithTheBestQualityWhenItIsAboveThat) {
  const FileData data;
  giveTail(data);
  data.with([](auto& record) { record.tail.quality = 101; });
  EXPECT_EQ(initial(data).at(0), 100);
  frame::setSaveOptions({1, 2, 150, 7});
  EXPECT_EQ(initial(FileData(4)).at(0), 100);
}

TEST_F(SaveOptionsValues, BecomeTheSettingsAndAreStored) {
  jpeg::keepAsSettings({30, 0, 1, 0});
  EXPECT_EQ(frame::saveOptions().quality, 30U);
  EXPECT_EQ(file_->lines(),
            (std::vector<std::string>{"[KF_IJPG]", "Mode=0", "Sample=1", "Quality=30", "JFIF=0"}));
}

TEST_F(SaveOptionsValues, LeaveTheSamplingSettingWhenThereWasNoChoice) {
  jpeg::keepAsSettings({30, 0, jpeg::sampleNotApplicable, 0});
  EXPECT_EQ(frame::saveOptions().sample, 2U);
  EXPECT_EQ(file_->lines().at(2), "Sample=2");
}

TEST_F(SaveOptionsValues, AreStoredAsTheyStandWhenNothingWasSelected) {
  jpeg::keepAsSettings({30, ~0U, 1, 0});
  EXPECT_EQ(file_->lines().at(1), "Mode=-1");
  frame::loadSaveOptions();
  EXPECT_EQ(frame::saveOptions().mode, 0U);
}

TEST_F(SaveOptionsValues, GoIntoTheRecordsTailAndNowhereElse) {
  const FileData data;
  giveTail(data);
  std::vector<host::u8> expected = data.bytes();
  const auto put = [&](std::size_t offset, host::u32 value) {
    std::memcpy(&expected[offset], &value, sizeof value);
  };
  put(752, 11);
  put(762, 1);
  put(766, 0xFFFFFFFF);
  put(770, 1);
  EXPECT_TRUE(store(data, {11, 1, -1, 1}));
  EXPECT_EQ(data.bytes(), expected);
  EXPECT_TRUE(data.unlocked());
}

TEST_F(SaveOptionsValues, GiveARecordOfAnotherFormatATail) {
  for (const std::size_t size : {746U, 800U}) {
    const FileData data(size);
    ASSERT_TRUE(store(data, {11, 1, 2, 1}));
    std::vector<host::u8> expected(814);
    const auto put = [&](std::size_t offset, host::u32 value) {
      std::memcpy(&expected[offset], &value, sizeof value);
    };
    put(692, 62);
    std::memcpy(&expected[746], "JEPG\x90\x01", 6);  // 400
    put(752, 11);
    put(762, 1);
    put(766, 2);
    put(770, 1);
    EXPECT_EQ(data.bytes(), expected) << size;
    EXPECT_TRUE(data.unlocked());
  }
}

TEST(TypedQuality, IsCorrectedAboveTheBestAndWithoutANumber) {
  const auto typed = [](host::u32 number, bool valid) {
    const jpeg::TypedQuality quality = jpeg::typedQuality(number, valid);
    return std::pair(quality.quality, quality.corrected);
  };
  EXPECT_EQ(typed(0, true), std::pair(0U, false));
  EXPECT_EQ(typed(100, true), std::pair(100U, false));
  EXPECT_EQ(typed(101, true), std::pair(100U, true));
  EXPECT_EQ(typed(~0U, true), std::pair(100U, true));
  EXPECT_EQ(typed(0, false), std::pair(0U, true));
  EXPECT_EQ(typed(55, false), std::pair(0U, true));
}

struct Slide {
  SliderMove move;
  host::u32 from;
  host::u32 position;
  host::u32 result;
};

TEST(SlidQuality, FollowsEveryMoveAndStaysInItsRange) {
  const Slide slides[] = {
      {SliderMove::lineLeft, 50, 9, 49},    {SliderMove::lineLeft, 0, 9, 0},
      {SliderMove::lineRight, 50, 9, 51},   {SliderMove::lineRight, 100, 9, 100},
      {SliderMove::pageLeft, 50, 9, 40},    {SliderMove::pageLeft, 5, 9, 0},
      {SliderMove::pageRight, 50, 9, 60},   {SliderMove::pageRight, 95, 9, 100},
      {SliderMove::toPosition, 50, 9, 9},   {SliderMove::toPosition, 50, 65535, 100},
      {SliderMove::home, 50, 9, 0},         {SliderMove::end, 50, 9, 100},
      {SliderMove::none, 50, 9, 50},        {SliderMove::none, 300, 9, 100},
      {SliderMove::lineRight, ~0U, 9, 100},
  };
  for (const Slide& slide : slides) {
    EXPECT_EQ(jpeg::slidQuality(slide.from, slide.move, slide.position), slide.result)
        << static_cast<int>(slide.move) << " from " << slide.from;
  }
}

}  // namespace

// Reading a JPEG file: previews that are scaled here.
#include "tests/plugin/file_read_fixture.h"

namespace {

using namespace test;

class ScaledRead : public FileRead {
 protected:
  void SetUp() override {
    FileRead::SetUp();
    the().shrink = [this](host::u8* target, const host::u8* source, host::u32 sourceWidth,
                          host::u32 bytesPerPixel, const host::u32* map, host::u32 targetWidth) {
      EXPECT_EQ(bytesPerPixel, 3u);
      EXPECT_EQ(targetWidth, request_.targetWidth);
      sourceWidths_.push_back(sourceWidth);
      maps_.emplace_back(map, map + targetWidth);
      target[0] = static_cast<host::u8>(source[0] + 100);
    };
  }
  std::vector<host::u32> sourceWidths_;
  std::vector<std::vector<host::u32>> maps_;
};

TEST_F(ScaledRead, RowsAndColumnsAreDroppedWithTheSameRatio) {
  request_ = {1, {}, 1, {}, 4, 3};
  play([](const host::CodecCallback& callback) {
    for (host::u32 index = 0; index < 8; ++index) EXPECT_EQ(row(callback, index, 10, 8), 1u);
  });
  EXPECT_EQ(read(), 1);
  // Ratio 2.5: rows 0-2, 3-4, 5-7 map to 0, 1, 2.
  std::vector<std::pair<host::u32, int>> rows;
  for (const Delivery& delivery : delivered) {
    rows.emplace_back(delivery.first, delivery.firstByteOfRows.at(0));
    EXPECT_EQ(delivery.width, 4u);
  }
  EXPECT_EQ(rows,
            (std::vector<std::pair<host::u32, int>>{
                {0, 100}, {0, 101}, {0, 102}, {1, 103}, {1, 104}, {2, 105}, {2, 106}, {2, 107}}));
  EXPECT_EQ(maps_.at(0), (std::vector<host::u32>{0, 3, 5, 8}));  // i * 2.5 + 0.5, cut
  EXPECT_EQ(sourceWidths_.at(0), 10u);
}

TEST_F(ScaledRead, RowsBeyondTheTargetHeightAreNotDelivered) {
  request_ = {1, {}, 1, {}, 5, 2};
  play([](const host::CodecCallback& callback) {
    for (host::u32 index = 0; index < 10; ++index) EXPECT_EQ(row(callback, index, 10, 10), 1u);
  });
  read();
  EXPECT_EQ(delivered.size(), 4u);
}

TEST_F(ScaledRead, UpwardsTheMapHoldsWhatTheFormulaGives) {
  request_ = {1, {}, 1, {}, 5, 5};
  play([](const host::CodecCallback& callback) { row(callback, 0, 2, 2); });
  read();
  EXPECT_EQ(maps_.at(0), (std::vector<host::u32>{0, 0, 1, 1, 2}));
}

TEST_F(ScaledRead, TheBlocksAreMadeAnewWhenAWidthChanges) {
  request_ = {1, {}, 1, {}, 4, 9};
  play([](const host::CodecCallback& callback) {
    row(callback, 0, 8, 9);
    row(callback, 1, 12, 9);
    row(callback, 2, 12, 9);
  });
  read();
  EXPECT_EQ(maps_.at(0), (std::vector<host::u32>{0, 2, 4, 6}));
  EXPECT_EQ(maps_.at(1), (std::vector<host::u32>{0, 3, 6, 9}));
  EXPECT_EQ(maps_.at(2), maps_.at(1));
}

TEST_F(ScaledRead, ABlockThatCannotBeHadStopsTheCodecForTheRestOfTheRead) {
  request_ = {1, {}, 1, {}, 0xFFFFFFFF, 2};
  play(
      [&](const host::CodecCallback& callback) {
        host::u8 pixel[3] = {};
        host::RowBlock block = {40, 0, 1, 2, 0xFFFFFFFF, {}, 3, {}, pixel};
        EXPECT_EQ(static_cast<int>(callback.callback(callback.context, 3, 0, &block)), -102);
        request_.targetWidth = 4;
        EXPECT_EQ(static_cast<int>(row(callback, 0, 8, 2)), -102);
      },
      -102);
  EXPECT_EQ(read(), 0);
  EXPECT_TRUE(delivered.empty());
}

}  // namespace

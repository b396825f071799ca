#include <random>
#include <vector>

#include "host/kfioutil.h"
#include "tests/companions/loaded_module.h"

namespace {

using host::u32;
using host::u8;
using Row = std::vector<u8>;
using Map = std::vector<u32>;

// The column map as the plug-in makes it.
Map evenMap(u32 sourceWidth, u32 targetWidth) {
  Map map(targetWidth);
  const double step = static_cast<double>(sourceWidth) / targetWidth;
  for (u32 i = 0; i < targetWidth; ++i) map[i] = static_cast<u32>(i * step + 0.5);
  return map;
}

// The same mean in floating point, column by column.
Row plainlyShrunk(const Row& source, u32 depth, const Map& map) {
  const auto width = static_cast<u32>(source.size() / depth);
  Row target;
  for (std::size_t i = 0; i < map.size(); ++i) {
    const u32 begin = std::min(map[i], width - 1);
    u32 end = i + 1 < map.size() ? std::min(map[i + 1], width) : width;
    if (end <= begin) end = begin + 1;
    for (u32 component = 0; component < depth; ++component) {
      double sum = 0;
      for (u32 column = begin; column < end; ++column) sum += source[column * depth + component];
      target.push_back(static_cast<u8>(sum / (end - begin) + 0.5));
    }
  }
  return target;
}

class ShrinkImageTest : public testing::Test {
 protected:
  // The row and the target are as long as they must be and no longer, for the sanitizers.
  [[nodiscard]] Row shrunk(const Row& source, u32 depth, const Map& map) const {
    Row target(map.size() * depth, 0xEE);
    shrink_(target.data(), source.data(), 0, static_cast<u32>(source.size() / depth), depth,
            map.data(), static_cast<u32>(map.size()));
    return target;
  }

  test::LoadedModule module_{"fio/kFioUtil.dll"};
  decltype(ShrinkImage)* shrink_ = module_.function<decltype(ShrinkImage)>("ShrinkImage");
};

TEST_F(ShrinkImageTest, AveragesAllColumnsBetweenTwoEntries) {
  EXPECT_EQ(shrunk({10, 20, 30, 40, 50, 60}, 1, {0, 2, 3}), (Row{15, 30, 50}));
}

TEST_F(ShrinkImageTest, AveragesEachComponentByItself) {
  EXPECT_EQ(shrunk({0, 100, 200, 10, 110, 210}, 3, {0}), (Row{5, 105, 205}));
  EXPECT_EQ(shrunk({0, 50, 100, 200, 10, 60, 110, 210}, 4, {0}), (Row{5, 55, 105, 205}));
}

TEST_F(ShrinkImageTest, RoundsToTheNearest) {
  EXPECT_EQ(shrunk({1, 2, 1, 1, 2}, 1, {0, 2}), (Row{2, 1}));
  EXPECT_EQ(shrunk({255, 255, 255}, 1, {0}), (Row{255}));
}

TEST_F(ShrinkImageTest, RepeatsColumnsWhenTheMapStretches) {
  EXPECT_EQ(shrunk({10, 20}, 1, {0, 0, 1, 1}), (Row{10, 10, 20, 20}));
}

TEST_F(ShrinkImageTest, ClampsEntriesBeyondTheRow) {
  EXPECT_EQ(shrunk({10, 20}, 1, {0, 2, 0xFFFFFFFF}), (Row{15, 20, 20}));
  EXPECT_EQ(shrunk({10, 20, 30}, 1, {2, 0}), (Row{30, 20}));
}

TEST_F(ShrinkImageTest, AgreesWithThePlainMean) {
  std::mt19937 random(1);
  for (const u32 depth : {1U, 2U, 3U, 4U, 6U}) {
    for (const u32 width : {1U, 2U, 7U, 64U, 641U}) {
      Row source(width * depth);
      for (u8& byte : source) byte = static_cast<u8>(random());
      for (const u32 target : {1U, 3U, 7U, 160U, 700U}) {
        const Map map = evenMap(width, target);
        EXPECT_EQ(shrunk(source, depth, map), plainlyShrunk(source, depth, map))
            << depth << " bytes, " << width << " to " << target;
      }
    }
  }
}

TEST_F(ShrinkImageTest, AgreesWithThePlainMeanForAnyMap) {
  std::mt19937 random(2);
  Row source(40 * 3);
  for (u8& byte : source) byte = static_cast<u8>(random());
  for (int round = 0; round < 200; ++round) {
    Map map(random() % 20 + 1);
    for (u32& entry : map) entry = static_cast<u32>(random()) % 60;
    EXPECT_EQ(shrunk(source, 3, map), plainlyShrunk(source, 3, map));
  }
}

TEST_F(ShrinkImageTest, LeavesTheTargetOfAnEmptyRowAlone) {
  u8 target[2] = {1, 2};
  const u8 source[1] = {9};
  const u32 map[2] = {0, 0};
  shrink_(target, source, 0, 0, 1, map, 2);
  EXPECT_EQ(target[0], 1);
  EXPECT_EQ(target[1], 2);
  shrink_(target, source, 0, 1, 1, map, 0);
  EXPECT_EQ(target[0], 1);
}

}  // namespace

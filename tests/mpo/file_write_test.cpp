// The simple entry: a file of one image.
#include "tests/mpo/image_write_fixture.h"

namespace {

using namespace test;

struct SimpleCall {
  void* user;
  std::vector<u32> numbers;
};
std::vector<SimpleCall> simpleCalls;
Bytes simpleRows;

void* giveSimpleRows(void* user, u32 width, u32 height, u32 firstRow, u32 rowCount, int one,
                     int seven, u32 mode) {
  simpleCalls.push_back(
      {user,
       {width, height, firstRow, rowCount, static_cast<u32>(one), static_cast<u32>(seven), mode}});
  return simpleRows.empty() ? nullptr : simpleRows.data();
}

class MpoFileWrite : public MpoImageWrite {
 protected:
  void SetUp() override {
    MpoImageWrite::SetUp();
    simpleCalls.clear();
    simpleRows.assign(64, 0x42);
  }
  int writeSimple() {
    return entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite)(9, data_->handle(), &codec_,
                                                                     giveSimpleRows);
  }
};

TEST_F(MpoFileWrite, NullArgumentsGiveZeroAndOpenNothing) {
  auto* write = entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite);
  EXPECT_EQ(write(0, nullptr, nullptr, giveSimpleRows), 0);
  EXPECT_EQ(write(0, data_->handle(), nullptr, nullptr), 0);
  EXPECT_FALSE(scratch_.exists());
}

TEST_F(MpoFileWrite, AFileOfOneDisparityImageIsWritten) {
  EXPECT_EQ(writeSimple(), 1);
  const Bytes payload = codec_.segments.back().second;
  const auto half = [&](std::size_t at) { return payload.at(at) | payload.at(at + 1) << 8; };
  const auto word = [&](std::size_t at) {
    return static_cast<u32>(half(at)) | static_cast<u32>(half(at + 2)) << 16;
  };
  EXPECT_EQ(half(12), 4) << "entries of the index";
  EXPECT_EQ(word(14 + 36 + 8), 1u) << "total frames";
  const std::size_t table = 18 + 48;
  EXPECT_EQ(word(table), 0x20020002u);
  const std::size_t attributes = table + 16;
  std::vector<int> tags;
  for (int entry = 0; entry < half(attributes); ++entry) {
    tags.push_back(half(attributes + 2 + 12 * static_cast<std::size_t>(entry)));
  }
  EXPECT_THAT(tags, testing::ElementsAre(0xB000, 0xB101, 0xB204, 0xB205, 0xB206));
  EXPECT_EQ(word(attributes + 2 + 12 + 8), 1u) << "individual number";
  EXPECT_EQ(word(attributes + 2 + 24 + 8), 1u) << "base viewpoint";
  const std::size_t values = attributes + 2 + 60 + 4;
  const u32 ratios[] = {word(values), word(values + 4), word(values + 8), word(values + 12)};
  EXPECT_THAT(ratios, testing::ElementsAre(0, 0, 0xFFFFFFFF, 0));

  const ReadBack back = readBack();
  ASSERT_EQ(back.entries.size(), 1u);
  EXPECT_EQ(+back.entries[0].size, scratch_.read().size());
  EXPECT_EQ(+back.entries[0].fileOffset, 0u);
}

TEST_F(MpoFileWrite, RowsComeFromTheHostsCallback) {
  EXPECT_EQ(writeSimple(), 1);
  ASSERT_EQ(simpleCalls.size(), 2u);
  for (u32 row = 0; row < 2; ++row) {
    EXPECT_EQ(+simpleCalls[row].user, &codec_);
    EXPECT_THAT(simpleCalls[row].numbers, testing::ElementsAre(5, 2, row, 1, 1, 7, 7));
  }
  const Bytes file = scratch_.read();
  EXPECT_EQ(file.at(file.size() - 3), 0x42);
}

TEST_F(MpoFileWrite, WithoutRowsTheWriteFails) {
  simpleRows.clear();
  EXPECT_EQ(writeSimple(), 0);
  EXPECT_EQ(codec_.answerToRows, -109);
  EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{4021, 1, 1890, 1891, 871}));
}

}  // namespace

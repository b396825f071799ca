#include "fiohost/row_receiver.h"

#include <gmock/gmock.h>

#include "fiohost/failure.h"
#include "tests/fiohost/support/files.h"

namespace fiohost {
namespace {

constexpr host::u16 firstRow = 5;
constexpr host::u16 firstRowOfLaterPass = 69;
constexpr host::u16 otherRow = 1;

// Rows of one grey pixel each, handed over as the plug-in does.
class RowReceiverTest : public testing::Test {
 protected:
  RowReceiverTest()
      : output_(platform::displayPath(folder_.path() / "out.ppm")), progress_("test") {}

  std::unique_ptr<RowReceiver> receiver(const Size& size, std::optional<Size> box = {}) {
    const auto begin = [this](const PictureShape& shape) {
      output_.restart();
      return makePpmWriter(output_, shape);
    };
    return std::make_unique<RowReceiver>(RowReceiver::Target{begin, box}, 1U, size, progress_);
  }
  static int deliver(RowReceiver& receiver, host::u32 row, host::u32 width, host::u8 grey,
                     host::u16 flags) {
    std::vector<host::u8> pixels(width, grey);
    host::u8* rows[] = {pixels.data()};
    return RowReceiver::onRows(receiver.request(), 0, row, width, 1, rows, flags, -1, 7);
  }
  std::string committed() {
    output_.commit();
    return fiohostTest::readText(folder_.path() / "out.ppm");
  }

  fiohostTest::TemporaryFolder folder_;
  OutputFile output_;
  Progress progress_;
};

TEST_F(RowReceiverTest, WritesRowsInTheirOrder) {
  const auto rows = receiver({1, 2});
  EXPECT_EQ(deliver(*rows, 0, 1, 'a', firstRow), 1);
  EXPECT_EQ(deliver(*rows, 1, 1, 'b', otherRow), 1);
  rows->finish();
  EXPECT_EQ(committed(), "P6\n1 2\n255\naaabbb");
}

TEST_F(RowReceiverTest, ALaterPassReplacesTheEarlierOne) {
  const auto rows = receiver({1, 2});
  deliver(*rows, 0, 1, 'a', firstRow);
  deliver(*rows, 1, 1, 'b', otherRow);
  EXPECT_EQ(deliver(*rows, 0, 1, 'c', firstRowOfLaterPass), 1);
  EXPECT_EQ(deliver(*rows, 1, 1, 'd', otherRow), 1);
  rows->finish();
  EXPECT_EQ(committed(), "P6\n1 2\n255\ncccddd");
}

TEST_F(RowReceiverTest, TheFirstRowsMayCarryTheFlagOfALaterPass) {
  const auto rows = receiver({1, 1});
  EXPECT_EQ(deliver(*rows, 0, 1, 'a', firstRowOfLaterPass), 1);
  rows->finish();
  EXPECT_EQ(committed(), "P6\n1 1\n255\naaa");
}

TEST_F(RowReceiverTest, AReducedReadDeliversTheSizeInTheRequest) {
  const auto rows = receiver({8, 4}, Size{4, 2});
  rows->request()->preview = host::previewByCodec;
  rows->request()->targetHeight = 2;
  deliver(*rows, 0, 4, 'a', firstRowOfLaterPass);
  deliver(*rows, 1, 4, 'b', otherRow);
  rows->finish();
  EXPECT_EQ(committed(), "P6\n4 2\n255\naaaaaaaaaaaabbbbbbbbbbbb");
}

TEST_F(RowReceiverTest, WhatIsLargerThanAskedIsAveraged) {
  const auto rows = receiver({2, 2}, Size{1, 1});
  deliver(*rows, 0, 2, 'a', firstRow);
  deliver(*rows, 1, 2, 'c', otherRow);
  rows->finish();
  EXPECT_EQ(committed(), "P6\n1 1\n255\nbbb");
}

TEST_F(RowReceiverTest, MissingRowsAreAFailure) {
  const auto rows = receiver({1, 2});
  deliver(*rows, 0, 1, 'a', firstRow);
  EXPECT_THROW(rows->finish(), Failure);
}

TEST_F(RowReceiverTest, NoRowsAreAFailure) {
  const auto rows = receiver({1, 2});
  EXPECT_THROW(rows->finish(), Failure);
}

TEST_F(RowReceiverTest, ASkippedRowStopsTheRead) {
  const auto rows = receiver({1, 3});
  deliver(*rows, 0, 1, 'a', firstRow);
  EXPECT_EQ(deliver(*rows, 2, 1, 'b', otherRow), -1);
  EXPECT_THROW(rows->rethrow(), Failure);
}

TEST_F(RowReceiverTest, ARowBelowThePictureStopsTheRead) {
  const auto rows = receiver({1, 1});
  deliver(*rows, 0, 1, 'a', firstRow);
  EXPECT_EQ(deliver(*rows, 1, 1, 'b', otherRow), -1);
}

TEST_F(RowReceiverTest, ARowOfAnotherWidthStopsTheRead) {
  const auto rows = receiver({2, 2});
  deliver(*rows, 0, 2, 'a', firstRow);
  EXPECT_EQ(deliver(*rows, 1, 3, 'b', otherRow), -1);
}

}  // namespace
}  // namespace fiohost

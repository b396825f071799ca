#include "fiohost/row_pipe.h"

#include <gtest/gtest.h>

#include <thread>

namespace fiohost {
namespace {

TEST(RowPipe, RowsArriveInOrderAcrossThreads) {
  RowPipe pipe(false);
  std::thread reader([&] {
    for (host::u32 row = 0; row < 1000; ++row) {
      const auto byte = static_cast<host::u8>(row);
      ASSERT_TRUE(pipe.put(row, &byte, 1));
    }
    pipe.endPutting();
  });
  for (host::u32 row = 0; row < 1000; ++row) {
    const host::u8* bytes = pipe.take();
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(*bytes, static_cast<host::u8>(row));
  }
  EXPECT_EQ(pipe.take(), nullptr);
  reader.join();
}

TEST(RowPipe, OnlyTheLastOfSeveralPassesIsGivenOut) {
  RowPipe pipe(true);
  for (const host::u8 pass : {host::u8{1}, host::u8{2}}) {
    for (host::u32 row = 0; row < 200; ++row) EXPECT_TRUE(pipe.put(row, &pass, 1));
  }
  pipe.endPutting();
  for (host::u32 row = 0; row < 200; ++row) {
    const host::u8* bytes = pipe.take();
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(*bytes, 2);
  }
  EXPECT_EQ(pipe.take(), nullptr);
}

TEST(RowPipe, AStoppedWriterReleasesTheReader) {
  RowPipe pipe(false);
  std::thread reader([&] {
    const host::u8 byte = 0;
    host::u32 row = 0;
    while (pipe.put(row, &byte, 1)) ++row;
    pipe.endPutting();
  });
  EXPECT_NE(pipe.take(), nullptr);
  pipe.stopTaking();
  reader.join();
}

TEST(RowPipe, AnEndedReaderLeavesNoWriterWaiting) {
  RowPipe pipe(false);
  pipe.endPutting();
  EXPECT_EQ(pipe.take(), nullptr);
}

}  // namespace
}  // namespace fiohost

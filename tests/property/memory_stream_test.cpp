// The memory stream's operations, code by code.
#include "property/memory_stream.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

using property::MemoryStream;
using property::memoryStreamCallback;

class Stream : public testing::Test {
 protected:
  host::i64 call(host::u32 code, void* argument, host::i64 count) {
    return memoryStreamCallback(&stream_, code, argument, count);
  }
  host::i64 seek(host::i64 offset, host::i64 origin) {
    return call(5, reinterpret_cast<void*>(offset), origin);
  }
  std::string read(host::i64 count) {
    char buffer[64] = {};
    const host::i64 delivered = call(3, buffer, count);
    return {buffer, static_cast<std::size_t>(delivered)};
  }
  std::string bytes_ = "0123456789";
  MemoryStream stream_{10, reinterpret_cast<host::u8*>(bytes_.data()), 0};
};

TEST_F(Stream, AReadDeliversWhatIsLeftAndMovesOn) {
  EXPECT_EQ(read(4), "0123");
  EXPECT_EQ(stream_.position, 4u);
  EXPECT_EQ(read(60), "456789");
  EXPECT_EQ(stream_.position, 10u);
  EXPECT_EQ(read(1), "");
  stream_.position = 11;
  EXPECT_EQ(read(1), "") << "a position beyond the size";
  stream_.position = 2;
  EXPECT_EQ(read(0), "");
  EXPECT_EQ(read(-1), "");
  EXPECT_EQ(stream_.position, 2u);
}

TEST_F(Stream, AWriteThatFitsIsWrittenWhole) {
  char text[] = "abcdefghijk";
  EXPECT_EQ(call(4, text, 3), 3);
  EXPECT_EQ(bytes_, "abc3456789");
  EXPECT_EQ(stream_.position, 3u);
  EXPECT_EQ(call(4, text, 7), 7);
  EXPECT_EQ(bytes_, "abcabcdefg");
  EXPECT_EQ(call(4, text, 1), 0);
}

TEST_F(Stream, AWriteThatDoesNotFitWritesNothing) {
  char text[] = "abcdefghijk";
  EXPECT_EQ(call(4, text, 11), 0);
  stream_.position = 8;
  EXPECT_EQ(call(4, text, 3), 0);
  EXPECT_EQ(call(4, text, std::numeric_limits<host::i64>::max()), 0);
  EXPECT_EQ(call(4, text, -1), 0);
  EXPECT_EQ(bytes_, "0123456789");
  EXPECT_EQ(stream_.position, 8u);
}

TEST_F(Stream, ASeekCountsFromItsOrigin) {
  EXPECT_EQ(seek(4, 0), 0);
  EXPECT_EQ(stream_.position, 4u);
  EXPECT_EQ(seek(3, 1), 0);
  EXPECT_EQ(stream_.position, 7u);
  EXPECT_EQ(seek(-2, 1), 0);
  EXPECT_EQ(stream_.position, 5u);
  EXPECT_EQ(seek(-1, 2), 0);
  EXPECT_EQ(stream_.position, 9u);
  EXPECT_EQ(seek(3, 3), 0) << "any other origin leaves the position";
  EXPECT_EQ(stream_.position, 9u);
  EXPECT_EQ(seek(0, 2), 0) << "the end itself is not beyond it";
  EXPECT_EQ(stream_.position, 10u);
}

TEST_F(Stream, ASeekBeyondTheSizeEndsAtItAndGivesMinusOne) {
  const struct {
    host::i64 offset, origin;
  } rows[] = {{11, 0}, {1, 2},   {6, 1},
              {-1, 0}, {-11, 2}, {std::numeric_limits<host::i64>::max(), 1}};
  for (const auto& row : rows) {
    stream_.position = 5;
    EXPECT_EQ(seek(row.offset, row.origin), -1) << row.offset;
    EXPECT_EQ(stream_.position, 10u);
  }
}

TEST_F(Stream, TellGivesThePositionAndOtherCodesZero) {
  stream_.position = 6;
  EXPECT_EQ(call(6, nullptr, 0), 6);
  for (const host::u32 code : {0u, 1u, 2u, 7u, 100u}) EXPECT_EQ(call(code, nullptr, 9), 0);
  EXPECT_EQ(stream_.position, 6u);
}

}  // namespace

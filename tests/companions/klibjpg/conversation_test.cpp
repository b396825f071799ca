// The conversation with the host: which events are raised, and what an answer does.
#include <gtest/gtest.h>

#include "tests/companions/klibjpg/codec_calls.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;

constexpr host::u32 answerOf(int value) { return static_cast<host::u32>(value); }

// Answers a value to the n-th event of a kind, 1 to every other.
Answer answerTo(host::u32 kind, int n, int value) {
  return [=, seen = 0](host::u32 event, void*) mutable -> host::u32 {
    if (event == kind && ++seen == n) return answerOf(value);
    return host::codecGoOn;
  };
}

JpegBuilder picture() { return JpegBuilder().exif({1, 2, 3}).photoshop({4}); }

TEST(Conversation, SegmentsThenHeaderThenRows) {
  EXPECT_EQ(readInput(picture().build()).events,
            "555"
            "2"
            "3");
  EXPECT_EQ(readInput(picture().withoutJfif().progressive().build()).events,
            "55"
            "2"
            "3");
}

TEST(Conversation, HeaderOnlyLeavesOutThePixels) {
  const Reading reading = readInput(picture().build(), answerTo(2, 1, host::codecHeaderOnly));
  EXPECT_EQ(reading.result, 1);
  EXPECT_EQ(reading.events, "5552");
}

TEST(Conversation, HeaderOnlyHoldsForTheDeliveredSizeToo) {
  int headers = 0;
  const Reading reading = readInput(picture().build(), [&](host::u32 event, void* block) {
    if (event == host::eventHeader && ++headers == 1) {
      static_cast<host::ImageHeader*>(block)->width = 3;
    }
    return answerOf(headers == 2 ? host::codecHeaderOnly : host::codecGoOn);
  });
  EXPECT_EQ(reading.result, 1);
  EXPECT_EQ(reading.events, "55522");
}

TEST(Conversation, HeaderOnlyStopsWhereItIsNoAnswer) {
  EXPECT_EQ(readInput(picture().build(), answerTo(5, 1, 2)).result, 2);
  EXPECT_EQ(readInput(picture().build(), answerTo(3, 1, 2)).result, 2);
}

class Stop : public testing::TestWithParam<int> {};

TEST_P(Stop, EndsReadingAtASegment) {
  const Reading reading = readInput(picture().build(), answerTo(5, 2, GetParam()));
  EXPECT_EQ(reading.result, GetParam());
  EXPECT_EQ(reading.events, "55");
}

TEST_P(Stop, EndsReadingAtTheHeader) {
  const Reading reading = readInput(picture().build(), answerTo(2, 1, GetParam()));
  EXPECT_EQ(reading.result, GetParam());
  EXPECT_EQ(reading.events, "5552");
}

TEST_P(Stop, EndsReadingAtARow) {
  const Reading reading = readInput(picture().build(), answerTo(3, 4, GetParam()));
  EXPECT_EQ(reading.result, GetParam());
  EXPECT_EQ(reading.rows.size(), 4U);
}

TEST_P(Stop, EndsWritingAtTheHeader) {
  Writing writing;
  writing.answer = answerTo(2, 1, GetParam());
  EXPECT_EQ(writing.run(), GetParam());
  EXPECT_EQ(writing.events, "2");
  EXPECT_TRUE(writing.file.empty());
}

TEST_P(Stop, EndsWritingAtTheCount) {
  Writing writing;
  writing.answer = answerTo(4, 1, GetParam());
  EXPECT_EQ(writing.run(), GetParam());
  EXPECT_EQ(writing.events, "24");
}

TEST_P(Stop, EndsWritingAtASegment) {
  Writing writing;
  writing.segments = {{1, {1}}, {2, {2}}, {3, {3}}};
  writing.answer = answerTo(5, 2, GetParam());
  EXPECT_EQ(writing.run(), GetParam());
  EXPECT_EQ(writing.events, "2455");
}

TEST_P(Stop, EndsWritingAtARow) {
  Writing writing;
  writing.answer = answerTo(3, 5, GetParam());
  EXPECT_EQ(writing.run(), GetParam());
  EXPECT_EQ(writing.rowCalls, 5U);
}

INSTANTIATE_TEST_SUITE_P(Conversation, Stop,
                         testing::Values(host::codecStopped, host::codecNoRowBuffer,
                                         host::codecBadMpfSegment, host::codecNoRows, 0, 7),
                         [](const auto& tested) {
                           return (tested.param < 0 ? "Minus" : "") +
                                  std::to_string(tested.param < 0 ? -tested.param : tested.param);
                         });

TEST(Conversation, WritingAsksForHeaderCountSegmentsAndRows) {
  Writing writing;
  writing.segments = {{1, {1}}, {13, {2}}};
  EXPECT_EQ(writing.run(), 1);
  EXPECT_EQ(writing.events, "24553");
  EXPECT_EQ(writing.rowCalls, writing.height);
}

TEST(Conversation, RowBlockOfWritingDescribesTheRow) {
  Writing writing;
  host::u32 next = 0;
  writing.answer = [&](host::u32 event, void* block) {
    if (event != host::eventRow) return goOn(event, block);
    const auto& row = *static_cast<host::RowBlock*>(block);
    EXPECT_EQ(row.size, 40U);
    EXPECT_EQ(row.row, next++);
    EXPECT_EQ(row.width, 24U);
    EXPECT_EQ(row.imageHeight, 16U);
    EXPECT_EQ(row.bytesPerPixel, 3U);
    EXPECT_EQ(row.byteCount, 72U);
    return goOn(event, block);
  };
  EXPECT_EQ(writing.run(), 1);
  EXPECT_EQ(next, 16U);
}

TEST(Conversation, RowBlocksThatTheHostSpoilsDoNoHarm) {
  const auto spoil = [](host::u32 event, void* block) -> host::u32 {
    if (event == host::eventRow) {
      *static_cast<host::RowBlock*>(block) = {40, 9, 9, 9, 9, {}, 0x7FFFFFFF, {}, nullptr};
    }
    return host::codecGoOn;
  };
  Writing writing;
  writing.bytesPerPixel = 4;
  ASSERT_EQ(writing.run(), 1);
  Writing spoilt;
  spoilt.bytesPerPixel = 4;
  spoilt.answer = spoil;
  EXPECT_EQ(spoilt.run(), 1);
  EXPECT_EQ(spoilt.file, writing.file);
  EXPECT_EQ(readInput(writing.file, spoil).pixels, readInput(writing.file).pixels);
}

TEST(Conversation, NullArgumentsFail) {
  const host::CodecCallback silent = {nullptr, nullptr};
  host::InputDescriptor input = {};
  host::OutputDescriptor output = {};
  const host::WriteOptions options = {};
  EXPECT_EQ(kJpgFileReadEx(nullptr, &silent, nullptr), 0);
  EXPECT_EQ(kJpgFileReadExW(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(kJpgRead(nullptr, &silent, nullptr), 0);
  EXPECT_EQ(kJpgRead(&input, &silent, nullptr), 0);
  EXPECT_EQ(kJpgWrite(nullptr, &silent, &options), 0);
  EXPECT_EQ(kJpgWrite(&output, &silent, &options), 0);
  EXPECT_EQ(kJpgStreamRead(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(kJpgStreamWrite(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(kJpgFileGetInfo(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(kJpgFileGetInfoW(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(kJpgStreamGetInfo(nullptr, nullptr, nullptr), 0);
}

TEST(Conversation, MissingFileFails) {
  const Reading reading = readFile("there/is/no/such.jpg");
  EXPECT_EQ(reading.result, 0);
  EXPECT_EQ(reading.events, "");
}

}  // namespace
}  // namespace klibjpg_test

// Dates on their way back into the heap, and as text.
#include "property/heap_date.h"

#include <ctime>

#include "property/heap_edit.h"
#include "tests/heap/heap_fields.h"
#include "tests/heap/known_items.h"

namespace {

using namespace test;

class HeapDate : public HeapTest {};

// What the stored date and time stand for: the mask of the month is 14, and 1 is not subtracted.
host::u32 localSeconds(int date, int time) {
  std::tm local = {};
  local.tm_sec = (time & 31) * 2;
  local.tm_min = time >> 5 & 63;
  local.tm_hour = time >> 11;
  local.tm_mday = date & 31;
  local.tm_mon = (date >> 5) & 14;
  local.tm_year = (date >> 9) + 80;
  local.tm_isdst = -1;
  return static_cast<host::u32>(std::mktime(&local));
}

TEST_F(HeapDate, WritesDatesAsLocalTime) {
  const std::vector<ModelRecord> records = {{0x180E, numbers32({1, 2, 3})}};
  for (const int year : {1980, 1998, 2000, 2004, 2026, 2037}) {
    for (int month = 0; month <= 15; ++month) {
      for (const int day : {1, 15, 28, 31}) {
        const int date = (year - 1980) << 9 | month << 5 | day;
        const int time = 21 << 11 | 33 << 5 | 9;
        if (year == 2037 && (month & 14) > 10) continue;
        const Bytes heap = edited(ModelHeap{false, records}.build(), [&](PropertyHolder& property) {
          property.addDate(5031, static_cast<host::u16>(date), static_cast<host::u16>(time));
        });
        ASSERT_FALSE(heap.empty());
        EXPECT_EQ(parsed(heap)->records[0].value, numbers32({localSeconds(date, time), 2, 3}))
            << year << ' ' << month << ' ' << day;
      }
    }
  }
}

TEST_F(HeapDate, NormalisesTimesThatNoClockShows) {
  const int date = 20 << 9 | 5 << 5;  // day 0
  const int time = 31 << 11 | 63 << 5 | 31;
  const auto records = recordsAfterNumber({{0x180E, numbers32({1, 2, 3})}}, 5031, 6,
                                          static_cast<host::u64>(time) << 16 | date);
  ASSERT_EQ(records.size(), 1U);
  EXPECT_EQ(records[0].value, numbers32({localSeconds(date, time), 2, 3}));
}

TEST_F(HeapDate, RefusesDatesThatHaveNoSeconds) {
  const int late = (2100 - 1980) << 9 | 2 << 5 | 1;
  EXPECT_TRUE(
      recordsAfterNumber({{0x180E, numbers32({1, 2, 3})}}, 5031, 6, static_cast<host::u64>(late))
          .empty());
}

TEST_F(HeapDate, ReadsAgainTheDateThatItWrote) {
  // Even months keep their number on the way.
  const int date = 20 << 9 | 10 << 5 | 27;
  const int time = 12 << 11 | 56 << 5 | 13;
  PropertyHolder property;
  ASSERT_EQ(property.expand(ModelHeap{false, {{0x180E, numbers32({1, 0, 0})}}}.build()), 1);
  property.setNumber(5031, static_cast<host::u64>(time) << 16 | date);
  ASSERT_TRUE(writeBack(property));
  PropertyHolder again;
  ASSERT_EQ(again.expand(property.heap()), 1);
  const auto seconds = static_cast<std::time_t>(localSeconds(date, time));
  const std::tm* utc = std::gmtime(&seconds);
  EXPECT_EQ(again.field(5031)->number & 31, static_cast<unsigned>(utc->tm_mday));
  EXPECT_EQ(again.field(5031)->number >> 5 & 15, static_cast<unsigned>(utc->tm_mon + 1));
  EXPECT_EQ(again.field(5031)->number >> 27, static_cast<unsigned>(utc->tm_hour));
  EXPECT_EQ(again.field(5031)->number >> 21 & 63, static_cast<unsigned>(utc->tm_min));
}

class HeapDateText : public HeapTest {
 protected:
  // The seconds that the text stands for; none when the edit is refused.
  static std::optional<host::u32> written(std::string_view text) {
    property::ParsedHeap heap(frame::resourceLibrary());
    EXPECT_TRUE(heap.start(property::ParsedHeap::newHeader()));
    const auto item = property::heapItemOfField(5031);
    if (!property::editHeapItem(heap, *item,
                                {.format = property::HeapFormat::date, .text = text})) {
      EXPECT_FALSE(heap.modified());
      return std::nullopt;
    }
    EXPECT_TRUE(heap.modified());
    return numberAt({heap.value(1).begin(), heap.value(1).end()}, 0, 4);
  }
  static host::u32 seconds(int month, int day, int year, int hour, int minute, int second) {
    std::tm local = {};
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_year = year - 1900;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    local.tm_isdst = -1;
    return static_cast<host::u32>(std::mktime(&local));
  }
};

TEST_F(HeapDateText, HoldsSixNumbers) {
  EXPECT_EQ(written("10/27/2000 22:56:26"), seconds(10, 27, 2000, 22, 56, 26));
  EXPECT_EQ(written("1/2/1999 3:4:5"), seconds(1, 2, 1999, 3, 4, 5));
  EXPECT_EQ(written("01/02/1999 03:04:05 and more"), seconds(1, 2, 1999, 3, 4, 5));
  EXPECT_EQ(written("13/40/2000 25:61:61"), seconds(13, 40, 2000, 25, 61, 61));
}

TEST_F(HeapDateText, TheLastSecondOf32BitsIsTakenAndNoneBehindIt) {
  constexpr std::time_t last = 0xFFFFFFFF;
  for (const std::time_t time : {last, last + 1}) {
    char text[40] = {};
    std::strftime(text, sizeof text, "%m/%d/%Y %H:%M:%S", std::localtime(&time));
    EXPECT_EQ(written(text).has_value(), time == last) << text;
  }
}

TEST_F(HeapDateText, ItsNumbersEndAt9999) {
  EXPECT_EQ(written("1/1/2000 0:0:9999"), seconds(1, 1, 2000, 2, 46, 39));
  EXPECT_EQ(written("1/1/2000 0:0:10000"), std::nullopt);
}

TEST_F(HeapDateText, IsRefusedWithFewerOrImpossibleNumbers) {
  for (const char* text : {"", "10/27/2000 22:56", "10/27/2000", "10-27-2000 22:56:26", "text",
                           "1/1/1900 0:0:0", "1/1/2200 0:0:0", "1/1/99999999999 0:0:0",
                           "-2147483648/1/2000 0:0:0", "1/1/-2147483648 0:0:0"}) {
    EXPECT_EQ(written(text), std::nullopt) << text;
  }
}

}  // namespace

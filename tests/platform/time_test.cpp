#include <gtest/gtest.h>

#include <ctime>

#include "platform/system.h"

namespace {

std::tm brokenDown(int year, int month, int day, int hour, int minute, int second) {
  std::tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  time.tm_isdst = -1;
  return time;
}

TEST(Time, SecondsAreBrokenDownAsUtc) {
  const __time32_t seconds = 1234567890;
  const std::tm* time = _gmtime32(&seconds);
  ASSERT_NE(time, nullptr);
  EXPECT_EQ(time->tm_year, 109);
  EXPECT_EQ(time->tm_mon, 1);
  EXPECT_EQ(time->tm_mday, 13);
  EXPECT_EQ(time->tm_hour, 23);
  EXPECT_EQ(time->tm_min, 31);
  EXPECT_EQ(time->tm_sec, 30);
  EXPECT_EQ(time->tm_wday, 5);
}

TEST(Time, FirstAndLastSecondsAreBrokenDown) {
  const __time32_t first = 0;
  const std::tm* time = _gmtime32(&first);
  ASSERT_NE(time, nullptr);
  EXPECT_EQ(time->tm_year, 70);
  const __time32_t last = 0x7FFFFFFF;
  time = _gmtime32(&last);
  ASSERT_NE(time, nullptr);
  EXPECT_EQ(time->tm_year, 138);
  EXPECT_EQ(time->tm_mday, 19);
}

TEST(Time, TimesBefore1970AreRefused) {
  const __time32_t before = -86400;
  EXPECT_EQ(_gmtime32(&before), nullptr);
  EXPECT_EQ(_localtime32(&before), nullptr);
}

TEST(Time, LocalTimeComesBackToItsSeconds) {
  for (const __time32_t seconds : {86400 * 2, 1000000000, 1234567890, 2000000000}) {
    std::tm* local = _localtime32(&seconds);
    ASSERT_NE(local, nullptr);
    EXPECT_EQ(_mktime32(local), seconds);
    EXPECT_EQ(_mktime64(local), seconds);
  }
}

TEST(Time, NumbersAreBroughtIntoTheirRanges) {
  std::tm time = brokenDown(2009, 14, 32, 12, 0, 0);  // 32 February 2010
  const __time32_t seconds = _mktime32(&time);
  EXPECT_EQ(time.tm_year, 110);
  EXPECT_EQ(time.tm_mon, 2);
  EXPECT_EQ(time.tm_mday, 4);
  std::tm same = brokenDown(2010, 3, 4, 12, 0, 0);
  EXPECT_EQ(_mktime32(&same), seconds);
}

TEST(Time, YearsOutsideOfTheRangeHaveNoSeconds) {
  std::tm early = brokenDown(1960, 1, 1, 0, 0, 0);
  EXPECT_EQ(_mktime32(&early), -1);
  EXPECT_EQ(early.tm_year, 60);
  EXPECT_EQ(_mktime64(&early), -1);
  std::tm late = brokenDown(2039, 1, 1, 0, 0, 0);
  EXPECT_EQ(_mktime32(&late), -1);
  EXPECT_GT(_mktime64(&late), 0x7FFFFFFFLL);
  std::tm tooLate = brokenDown(3002, 1, 1, 0, 0, 0);
  EXPECT_EQ(_mktime64(&tooLate), -1);
}

}  // namespace

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/platform/file_handle.h"

namespace {

SYSTEMTIME sampleTime() {
  SYSTEMTIME time = {};
  time.wYear = 2009;
  time.wMonth = 2;
  time.wDay = 13;
  time.wHour = 23;
  time.wMinute = 31;
  time.wSecond = 30;
  return time;
}

int formatDate(const SYSTEMTIME& time, char* buffer, int capacity) {
  return GetDateFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE, &time, nullptr, buffer,
                        capacity);
}

int formatTime(const SYSTEMTIME& time, char* buffer, int capacity) {
  return GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE | TIME_FORCE24HOURFORMAT,
                        &time, nullptr, buffer, capacity);
}

TEST(DateFormat, LengthCountsTheNul) {
  char buffer[80];
  const int dateLength = formatDate(sampleTime(), buffer, sizeof(buffer));
  EXPECT_EQ(static_cast<std::size_t>(dateLength), std::strlen(buffer) + 1);
  EXPECT_EQ(formatDate(sampleTime(), nullptr, 0), dateLength);
  EXPECT_NE(std::string(buffer).find("13"), std::string::npos);
  const int timeLength = formatTime(sampleTime(), buffer, sizeof(buffer));
  EXPECT_EQ(static_cast<std::size_t>(timeLength), std::strlen(buffer) + 1);
  EXPECT_EQ(std::string(buffer).substr(0, 8), "23:31:30");
}

TEST(DateFormat, TextThatDoesNotFitIsAFailure) {
  char buffer[4];
  EXPECT_EQ(formatDate(sampleTime(), buffer, sizeof(buffer)), 0);
  EXPECT_EQ(lastError(), 122u);
  EXPECT_EQ(formatTime(sampleTime(), buffer, sizeof(buffer)), 0);
  EXPECT_EQ(lastError(), 122u);
}

TEST(DateFormat, TimesThatDoNotExistAreRefused) {
  char buffer[80];
  SYSTEMTIME noHour = sampleTime();
  noHour.wHour = 24;
  EXPECT_EQ(formatTime(noHour, buffer, sizeof(buffer)), 0);
  EXPECT_EQ(lastError(), 87u);
}

}  // namespace

#include <gtest/gtest.h>

#include "tests/platform/file_handle.h"

namespace {

TEST(PosixFormat, FormsAreThoseOfTheCLocale) {
  SYSTEMTIME time = {};
  time.wYear = 2009;
  time.wMonth = 2;
  time.wDay = 3;
  time.wHour = 4;
  time.wMinute = 5;
  time.wSecond = 6;
  char buffer[16];
  EXPECT_EQ(GetDateFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE, &time, nullptr, buffer, 9),
            9);
  EXPECT_STREQ(buffer, "02/03/09");
  EXPECT_EQ(
      GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, TIME_FORCE24HOURFORMAT, &time, nullptr, buffer, 9), 9);
  EXPECT_STREQ(buffer, "04:05:06");
  EXPECT_EQ(GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, 0, &time, nullptr, buffer, 8), 0);
  EXPECT_EQ(lastError(), 122u);
}

bool isFormatted(WORD year, WORD month, WORD day) {
  SYSTEMTIME time = {};
  time.wYear = year;
  time.wMonth = month;
  time.wDay = day;
  return GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, &time, nullptr, nullptr, 0) != 0;
}

TEST(PosixFormat, DaysThatDoNotExistAreRefused) {
  EXPECT_TRUE(isFormatted(2008, 2, 29));
  EXPECT_FALSE(isFormatted(2009, 2, 29));
  EXPECT_EQ(lastError(), 87u);
  EXPECT_TRUE(isFormatted(2000, 2, 29));
  EXPECT_FALSE(isFormatted(1900, 2, 29));
  EXPECT_FALSE(isFormatted(2009, 0, 1));
  EXPECT_FALSE(isFormatted(2009, 13, 1));
  EXPECT_FALSE(isFormatted(2009, 4, 31));
  EXPECT_FALSE(isFormatted(2009, 4, 0));
  EXPECT_FALSE(isFormatted(1600, 1, 1));
}

TEST(PosixFormat, OnlyWhatIsUsedIsThere) {
  SYSTEMTIME time = {};
  time.wYear = 2009;
  time.wMonth = 2;
  time.wDay = 3;
  char buffer[16];
  EXPECT_EQ(GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, nullptr, nullptr, buffer, 16), 0);
  EXPECT_EQ(GetDateFormatA(LOCALE_SYSTEM_DEFAULT, 0, &time, "yyyy", buffer, 16), 0);
  EXPECT_EQ(GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, 0, &time, "HH", buffer, 16), 0);
  EXPECT_EQ(lastError(), 87u);
}

}  // namespace

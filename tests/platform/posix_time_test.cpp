// The time zone of the environment, which each system writes in its own way.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "platform/system.h"

namespace {

class TimeZone : public ::testing::Test {
 protected:
  TimeZone() {
    if (const char* value = std::getenv("TZ")) before_ = value;
  }
  ~TimeZone() override { use(before_ ? before_->c_str() : nullptr); }

  static void use(const char* zone) {
    SetEnvironmentVariableA("TZ", zone);
    tzset();
  }

  std::optional<std::string> before_;
};

std::tm noon(int year, int month, int day) {
  std::tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = 12;
  time.tm_isdst = -1;
  return time;
}

TEST_F(TimeZone, LocalTimeFollowsTheZone) {
  const __time32_t seconds = 1234567890;  // 23:31:30 UTC
  use("XYZ-2");
  EXPECT_EQ(_localtime32(&seconds)->tm_hour, 1);
  EXPECT_EQ(_localtime32(&seconds)->tm_mday, 14);
  use("UTC");
  EXPECT_EQ(_localtime32(&seconds)->tm_hour, 23);
}

TEST_F(TimeZone, SecondsFollowTheZoneAndItsSummer) {
  use("EST5EDT,M3.2.0,M11.1.0");
  std::tm winter = noon(2009, 1, 15);
  EXPECT_EQ(_mktime32(&winter), 1232038800);
  EXPECT_EQ(winter.tm_isdst, 0);
  std::tm summer = noon(2009, 7, 15);
  EXPECT_EQ(_mktime32(&summer), 1247673600);
  EXPECT_EQ(summer.tm_isdst, 1);
}

TEST_F(TimeZone, LastSecondOf32BitsIsThatOfWindows) {
  use("UTC");
  std::tm last = noon(2038, 1, 18);
  last.tm_hour = 23;
  last.tm_min = 59;
  last.tm_sec = 59;
  std::tm next = last;
  EXPECT_EQ(_mktime32(&last), 0x7FFFD27F);
  ++next.tm_sec;
  errno = 0;
  EXPECT_EQ(_mktime32(&next), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(_mktime64(&next), 0x7FFFD280);
  EXPECT_EQ(_mktime32(nullptr), -1);
}

TEST_F(TimeZone, YearsThatNoCountReachesAreRefused) {
  use("UTC");
  std::tm last = noon(3000, 12, 31);
  EXPECT_EQ(_mktime64(&last), 32535172800);
  std::tm far = noon(1900, 1, 1);
  far.tm_year = 2147483647;
  EXPECT_EQ(_mktime64(&far), -1);
  EXPECT_EQ(far.tm_year, 2147483647);
}

}  // namespace

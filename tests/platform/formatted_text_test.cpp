#include <gtest/gtest.h>

#include <string>

#include "platform/system.h"

namespace {

template <typename... Arguments>
std::string formatted(const char* format, Arguments... arguments) {
  char buffer[1100];
  const int length = wsprintfA(buffer, format, arguments...);
  EXPECT_EQ(static_cast<std::size_t>(length), std::string(buffer).size());
  return buffer;
}

TEST(FormattedText, NumbersInDecimal) {
  EXPECT_EQ(formatted("%d", 85), "85");
  EXPECT_EQ(formatted("%d", -2147483647 - 1), "-2147483648");
  EXPECT_EQ(formatted("%u", 4294967295u), "4294967295");
  EXPECT_EQ(formatted("%i/%d", 1, 0), "1/0");
  EXPECT_EQ(formatted("%ld", static_cast<LONG>(-7)), "-7");
}

TEST(FormattedText, NumbersInHexadecimal) {
  EXPECT_EQ(formatted("%x", 0xBEEFu), "beef");
  EXPECT_EQ(formatted("%X", 0xBEEFu), "BEEF");
  EXPECT_EQ(formatted("%#x", 0x1Fu), "0x1f");
  EXPECT_EQ(formatted("%08X", 0xBEEFu), "0000BEEF");
}

TEST(FormattedText, WidthAndPrecision) {
  EXPECT_EQ(formatted("[%5d]", 42), "[   42]");
  EXPECT_EQ(formatted("[%-5d]", 42), "[42   ]");
  EXPECT_EQ(formatted("[%05d]", 42), "[00042]");
  EXPECT_EQ(formatted("[%.4d]", 42), "[0042]");
  EXPECT_EQ(formatted("[%6.4d]", 42), "[  0042]");
}

TEST(FormattedText, Texts) {
  EXPECT_EQ(formatted("%s and %s", "one", "two"), "one and two");
  EXPECT_EQ(formatted("[%5s]", "ab"), "[   ab]");
  EXPECT_EQ(formatted("[%-5s]", "ab"), "[ab   ]");
  EXPECT_EQ(formatted("[%.2s]", "abc"), "[ab]");
  EXPECT_EQ(formatted("%c%c", 'x', 'y'), "xy");
}

TEST(FormattedText, PercentSign) { EXPECT_EQ(formatted("100%%"), "100%"); }

TEST(FormattedText, DateForm) {
  EXPECT_EQ(formatted("%d/%d/%d %d:%d:%d", 12, 31, 2009, 23, 5, 9), "12/31/2009 23:5:9");
}

}  // namespace

// Numbers in texts, whatever the texts are.
#include "exif/number_scan.h"

#include <gtest/gtest.h>

namespace {

using exif::NumberScan;

TEST(NumberScan, ReadsOneNumberBehindTheOther) {
  NumberScan scan(" 12:-34 x");
  EXPECT_EQ(scan.decimal(), 12);
  EXPECT_EQ(scan.decimal(), std::nullopt) << "nothing is consumed without a digit";
  scan.skipCharacter();
  EXPECT_EQ(scan.decimal(), -34);
  scan.skipCharacter();
  scan.skipCharacter();
  scan.skipCharacter();
  EXPECT_EQ(scan.decimal(), std::nullopt);
}

TEST(NumberScan, ReadsHexadecimalNumbers) {
  NumberScan scan("0a fF 0x10 g");
  EXPECT_EQ(scan.hexadecimal(), 10U);
  EXPECT_EQ(scan.hexadecimal(), 255U);
  EXPECT_EQ(scan.hexadecimal(), 16U);
  EXPECT_EQ(scan.hexadecimal(), std::nullopt);
}

TEST(NumberScan, KeepsToItsRange) {
  EXPECT_EQ(NumberScan("2147483648").decimal(), 2147483647);
  EXPECT_EQ(NumberScan("-2147483649").decimal(), -2147483647 - 1);
  EXPECT_EQ(NumberScan("99999999999999999999999999").decimal(), 2147483647);
  EXPECT_EQ(NumberScan("fffffffff").hexadecimal(), 0xFFFFFFFFU);
}

}  // namespace

#include <gtest/gtest.h>

#include <cstring>

#include "tests/platform/loaded_library.h"

namespace {

class ResourceStrings : public ::testing::Test {
 protected:
  LoadedLibrary greeter_{"greeter.dll"};
};

TEST_F(ResourceStrings, StringIsCopiedWithItsLength) {
  char buffer[32];
  EXPECT_EQ(LoadStringA(greeter_.get(), 101, buffer, sizeof(buffer)), 14);
  EXPECT_STREQ(buffer, "A text with %d");
  EXPECT_EQ(LoadStringA(greeter_.get(), 4660, buffer, sizeof(buffer)), 4);
  EXPECT_STREQ(buffer, "last");
}

TEST_F(ResourceStrings, StringThatDoesNotFitIsCutAndEnded) {
  char buffer[8];
  std::memset(buffer, 'x', sizeof(buffer));
  EXPECT_EQ(LoadStringA(greeter_.get(), 100, buffer, 5), 4);
  EXPECT_STREQ(buffer, "Good");
  EXPECT_EQ(buffer[5], 'x');
  EXPECT_EQ(LoadStringA(greeter_.get(), 100, buffer, 1), 0);
  EXPECT_STREQ(buffer, "");
}

TEST_F(ResourceStrings, StringThatFitsExactlyIsWhole) {
  char buffer[9];
  EXPECT_EQ(LoadStringA(greeter_.get(), 100, buffer, sizeof(buffer)), 8);
  EXPECT_STREQ(buffer, "Good day");
}

TEST_F(ResourceStrings, MissingStringIsNothing) {
  char buffer[8] = "before";
  EXPECT_EQ(LoadStringA(greeter_.get(), 99, buffer, sizeof(buffer)), 0);
  EXPECT_EQ(LoadStringA(nullptr, 100, buffer, sizeof(buffer)), 0);  // the program has none
}

}  // namespace

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/platform/file_handle.h"

namespace {

TEST(Process, LastErrorBelongsToTheThread) {
  std::atomic<int> step = 0;
  std::thread other([&step] {
    while (step != 1) {
    }
    SetLastError(2);
    step = 2;
  });
  SetLastError(5);  // nothing else is called in between, because starting a thread may set it too
  step = 1;
  while (step != 2) {
  }
  const unsigned own = lastError();
  other.join();
  EXPECT_EQ(own, 5u);
}

TEST(Process, ThreadsHaveDifferentNumbers) {
  const DWORD own = GetCurrentThreadId();
  DWORD other = own;
  std::thread([&other] { other = GetCurrentThreadId(); }).join();
  EXPECT_NE(own, other);
  EXPECT_EQ(GetCurrentThreadId(), own);
}

TEST(Process, ExchangeAnswersTheOldPointer) {
  int first = 0;
  int second = 0;
  PVOID slot = &first;
  EXPECT_EQ(InterlockedExchangePointer(&slot, &second), &first);
  EXPECT_EQ(slot, &second);
}

TEST(Process, EnvironmentVariableIsHandedOut) {
  ASSERT_TRUE(SetEnvironmentVariableA("KF_PLATFORM_TEST", "value"));
  char buffer[16] = {};
  EXPECT_EQ(GetEnvironmentVariableA("KF_PLATFORM_TEST", buffer, sizeof(buffer)), 5u);
  EXPECT_STREQ(buffer, "value");
  EXPECT_EQ(GetEnvironmentVariableA("KF_PLATFORM_TEST", buffer, 5), 6u);
  EXPECT_EQ(GetEnvironmentVariableA("KF_PLATFORM_TEST", nullptr, 0), 6u);
}

TEST(Process, MissingEnvironmentVariableIsTold) {
  ASSERT_TRUE(SetEnvironmentVariableA("KF_PLATFORM_TEST", "value"));
  ASSERT_TRUE(SetEnvironmentVariableA("KF_PLATFORM_TEST", nullptr));
  char buffer[16] = {};
  EXPECT_EQ(GetEnvironmentVariableA("KF_PLATFORM_TEST", buffer, sizeof(buffer)), 0u);
  EXPECT_EQ(lastError(), 203u);
}

}  // namespace

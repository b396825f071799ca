#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "tests/platform/file_handle.h"

namespace {

std::wstring wide(const std::string& text) {
  wchar_t buffer[64];
  const int length =
      MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), buffer, 64);
  return std::wstring(buffer, static_cast<std::size_t>(length));
}

std::string narrow(const std::wstring& text) {
  char buffer[64];
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                         buffer, 64, nullptr, nullptr);
  return std::string(buffer, static_cast<std::size_t>(length));
}

TEST(TextConversion, TextGoesBothWays) {
  const std::string bytes = "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80";
  const std::wstring text = L"a\u00FC\u20AC\U0001F600";
  EXPECT_EQ(wide(bytes), text);
  EXPECT_EQ(narrow(text), bytes);
}

TEST(TextConversion, AnsiIsAsciiBelow128) {
  wchar_t buffer[8];
  EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "Az 9", -1, buffer, 8), 5);
  EXPECT_EQ(std::wcscmp(buffer, L"Az 9"), 0);
  char back[8];
  BOOL usedDefault = TRUE;
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, buffer, -1, back, 8, nullptr, &usedDefault), 5);
  EXPECT_STREQ(back, "Az 9");
  EXPECT_FALSE(usedDefault);
}

TEST(TextConversion, LengthOfMinusOneIncludesTheNul) {
  wchar_t buffer[8];
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", -1, buffer, 8), 4);
  EXPECT_EQ(buffer[3], L'\0');
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 3, buffer, 8), 3);
}

TEST(TextConversion, CapacityOfZeroAsksForTheLength) {
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "a\xC3\xBC", -1, nullptr, 0), 3);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"a\u00FC", -1, nullptr, 0, nullptr, nullptr), 4);
}

TEST(TextConversion, ResultThatDoesNotFitIsAFailure) {
  wchar_t wideBuffer[2];
  char buffer[2];
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 3, wideBuffer, 2), 0);
  EXPECT_EQ(lastError(), 122u);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 3, buffer, 2, nullptr, nullptr), 0);
  EXPECT_EQ(lastError(), 122u);
}

TEST(TextConversion, MalformedTextIsReplacedOrRefused) {
  EXPECT_EQ(wide("a\xFFz"), L"a\uFFFDz");
  EXPECT_EQ(wide("\x80"), L"\uFFFD");
  wchar_t buffer[8];
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, "a\xFFz", 3, buffer, 8), 0);
  EXPECT_EQ(lastError(), 1113u);
  const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'z'};
  EXPECT_EQ(narrow(std::wstring(lone, 3)), "a\xEF\xBF\xBDz");
  char bytes[8];
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, lone, 3, bytes, 8, nullptr, nullptr),
            0);
  EXPECT_EQ(lastError(), 1113u);
}

TEST(TextConversion, UnusableArgumentsAreRefused) {
  wchar_t wideBuffer[8];
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, "abc", 0, wideBuffer, 8), 0);
  EXPECT_EQ(lastError(), 87u);
  EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, nullptr, 3, wideBuffer, 8), 0);
  EXPECT_EQ(lastError(), 87u);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 3, nullptr, 8, nullptr, nullptr), 0);
  EXPECT_EQ(lastError(), 87u);
  EXPECT_EQ(MultiByteToWideChar(54321, 0, "abc", 3, wideBuffer, 8), 0);
  EXPECT_EQ(lastError(), 87u);
}

}  // namespace

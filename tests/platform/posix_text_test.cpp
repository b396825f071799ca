// Text where this system differs: the ANSI code page is UTF-8 and a wide character a code point.
#include <gtest/gtest.h>

#include <string>

#include "tests/platform/file_handle.h"

namespace {

std::wstring wide(const std::string& bytes) {
  wchar_t buffer[64];
  const int length =
      MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), buffer, 64);
  return std::wstring(buffer, static_cast<std::size_t>(length));
}

TEST(PosixText, AnsiIsUtf8) { EXPECT_EQ(wide("\xC3\xBC\xF0\x9F\x98\x80"), L"\u00FC\U0001F600"); }

TEST(PosixText, EverySequenceOfTheStandardIsRead) {
  EXPECT_EQ(wide("\x7F\xC2\x80\xDF\xBF"), L"\x7F\u0080\u07FF");
  EXPECT_EQ(wide("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"), L"\u0800\uD7FF\uE000\uFFFF");
  EXPECT_EQ(wide("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), L"\U00010000\U0010FFFF");
}

// Unicode 15, table 3-8 and 3-11: one replacement for each maximal subpart.
TEST(PosixText, MalformedSequencesAreReplacedByTheirParts) {
  EXPECT_EQ(wide("\xC0\xAF"), L"\uFFFD\uFFFD");                      // overlong
  EXPECT_EQ(wide("\xE0\x80\x80"), L"\uFFFD\uFFFD\uFFFD");            // overlong
  EXPECT_EQ(wide("\xED\xA0\x80"), L"\uFFFD\uFFFD\uFFFD");            // a surrogate
  EXPECT_EQ(wide("\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD");  // past the last code point
  EXPECT_EQ(wide("\xE2\x82z"), L"\uFFFDz");                          // two bytes of three
  EXPECT_EQ(wide("\xF0\x9F\x98"), L"\uFFFD");                        // the end is missing
  EXPECT_EQ(wide("\xF5\xFF"), L"\uFFFD\uFFFD");
}

TEST(PosixText, ReplacedCharacterIsReported) {
  const wchar_t beyond[] = {L'a', static_cast<wchar_t>(0x110000)};
  char buffer[8] = {};
  BOOL usedDefault = FALSE;
  EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, beyond, 2, buffer, 8, nullptr, &usedDefault), 4);
  EXPECT_STREQ(buffer, "a\xEF\xBF\xBD");
  EXPECT_TRUE(usedDefault);
}

TEST(PosixText, DefaultCharacterIsForTheAnsiCodePage) {
  char buffer[8];
  BOOL usedDefault = FALSE;
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 3, buffer, 8, "?", nullptr), 0);
  EXPECT_EQ(lastError(), 87u);
  EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, L"abc", 3, buffer, 8, nullptr, &usedDefault), 0);
  EXPECT_EQ(lastError(), 87u);
}

TEST(PosixText, FormattedTextEndsAt1023Characters) {
  const std::string text(2000, 'a');
  char buffer[1100];
  EXPECT_EQ(wsprintfA(buffer, "%s", text.c_str()), 1023);
  EXPECT_EQ(std::string(buffer), std::string(1023, 'a'));
  EXPECT_EQ(wsprintfA(buffer, "%2000d|", 1), 1023);
}

}  // namespace

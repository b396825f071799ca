#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "tests/platform/file_handle.h"
#include "tests/platform/temporary_folder.h"

namespace {

std::string numbered(char prefix, int number) {
  std::string name(1, prefix);
  return name.append(std::to_string(number));
}

class IniFile : public ::testing::Test {
 protected:
  UINT number(const char* key, INT missing = 77, const char* section = "S") const {
    return GetPrivateProfileIntA(section, key, missing, path_.c_str());
  }
  bool set(const char* section, const char* key, const char* text) const {
    return WritePrivateProfileStringA(section, key, text, path_.c_str());
  }
  void write(const std::string& content) const { folder_.write("settings.ini", content); }
  // The lines without their ends, blank ones left out.
  std::string lines() const {
    std::string text = folder_.read("settings.ini");
    std::erase(text, '\r');
    const auto twoFeeds = [](char first, char second) { return first == '\n' && second == '\n'; };
    text.erase(std::unique(text.begin(), text.end(), twoFeeds), text.end());
    return text;
  }

  TemporaryFolder folder_;
  std::string path_ = folder_.file("settings.ini");
};

TEST_F(IniFile, MissingFileSectionAndKeyGiveTheDefault) {
  EXPECT_EQ(number("key"), 77u);
  write("[S]\r\nother=1\r\n[T]\r\nkey=2\r\n");
  EXPECT_EQ(number("key"), 77u);
  EXPECT_EQ(number("key", 77, "U"), 77u);
  EXPECT_EQ(number("key", 77, "T"), 2u);
}

TEST_F(IniFile, NamesAreComparedWithoutRegardToCase) {
  write("[Section]\r\nKey=5\r\n");
  EXPECT_EQ(number("kEY", 77, "SECTION"), 5u);
}

TEST_F(IniFile, ValueIsTrimmedAndUnquoted) {
  write("[S]\r\n  key  =  5  \r\nquoted=  \" 6 \"\r\n");
  EXPECT_EQ(number("key"), 5u);
  EXPECT_EQ(number("quoted"), 6u);
}

TEST_F(IniFile, LastLineNeedsNoEnd) {
  write("[S]\nkey=5");
  EXPECT_EQ(number("key"), 5u);
}

TEST_F(IniFile, CommentedKeyIsNotFound) {
  write("[S]\r\n;key=5\r\n");
  EXPECT_EQ(number("key"), 77u);
}

TEST_F(IniFile, FirstOfTwoEqualKeysCounts) {
  write("[S]\r\nkey=5\r\nkey=6\r\n");
  EXPECT_EQ(number("key"), 5u);
}

TEST_F(IniFile, NumbersAreReadUpToTheFirstOtherCharacter) {
  write(
      "[S]\r\nplain=85\r\nnegative=-3\r\npositive=+4\r\ntrailing=12 percent\r\nhex=0x1F\r\n"
      "word=abc\r\nempty=\r\nfraction=1.9\r\nlarge=4294967295\r\nquoted=\"7\"\r\n");
  EXPECT_EQ(number("plain"), 85u);
  EXPECT_EQ(number("negative"), static_cast<UINT>(-3));
  EXPECT_EQ(number("positive"), 4u);
  EXPECT_EQ(number("trailing"), 12u);
  EXPECT_EQ(number("hex"), 31u);
  EXPECT_EQ(number("word"), 0u);
  EXPECT_EQ(number("empty"), 77u);
  EXPECT_EQ(number("fraction"), 1u);
  EXPECT_EQ(number("large"), 4294967295u);
  EXPECT_EQ(number("quoted"), 7u);
}

TEST_F(IniFile, NegativeDefaultComesBack) { EXPECT_EQ(number("key", -1), static_cast<UINT>(-1)); }

TEST_F(IniFile, WritingMakesTheFile) {
  EXPECT_TRUE(set("S", "key", "5"));
  EXPECT_EQ(lines(), "[S]\nkey=5\n");
  EXPECT_EQ(number("key"), 5u);
}

TEST_F(IniFile, WritingReplacesTheValueInItsPlace) {
  write("[S]\r\nfirst=1\r\nkey=2\r\nlast=3\r\n");
  EXPECT_TRUE(set("s", "KEY", "22"));
  EXPECT_EQ(number("first"), 1u);
  EXPECT_EQ(number("key"), 22u);
  EXPECT_EQ(number("last"), 3u);
  const std::string text = lines();
  EXPECT_LT(text.find("first=1"), text.find("=22"));
  EXPECT_LT(text.find("=22"), text.find("last=3"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '='), 3);
}

TEST_F(IniFile, NewKeyGoesToTheEndOfItsSection) {
  write("[S]\r\nfirst=1\r\n\r\n[T]\r\nother=2\r\n");
  EXPECT_TRUE(set("S", "key", "5"));
  EXPECT_EQ(lines(), "[S]\nfirst=1\nkey=5\n[T]\nother=2\n");
}

TEST_F(IniFile, NewSectionGoesToTheEnd) {
  write("[S]\r\nfirst=1");
  EXPECT_TRUE(set("T", "key", "5"));
  EXPECT_EQ(lines(), "[S]\nfirst=1\n[T]\nkey=5\n");
}

TEST_F(IniFile, OtherLinesAndCommentsStay) {
  write("; about this file\r\n[S]\r\n; about the key\r\nkey=1\r\nno equals sign\r\n");
  EXPECT_TRUE(set("S", "key", "2"));
  EXPECT_EQ(lines(), "; about this file\n[S]\n; about the key\nkey=2\nno equals sign\n");
}

TEST_F(IniFile, MissingFolderIsAFailure) {
  const std::string path = folder_.file("nowhere/settings.ini");
  EXPECT_FALSE(WritePrivateProfileStringA("S", "key", "1", path.c_str()));
  EXPECT_EQ(lastError(), 3u);
}

TEST_F(IniFile, ThreadsDoNotLoseEachOthersKeys) {
  const auto writeKeys = [this](char prefix) {
    for (int i = 0; i < 10; ++i) {
      const std::string key = numbered(prefix, i);
      EXPECT_TRUE(set("S", key.c_str(), "9"));
    }
  };
  std::thread first(writeKeys, 'a');
  std::thread second(writeKeys, 'b');
  first.join();
  second.join();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(number(numbered('a', i).c_str()), 9u);
    EXPECT_EQ(number(numbered('b', i).c_str()), 9u);
  }
}

}  // namespace

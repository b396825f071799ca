#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#include "platform/system.h"

namespace {

struct Parts {
  char drive[_MAX_DRIVE];
  char directory[_MAX_DIR];
  char name[_MAX_FNAME];
  char extension[_MAX_EXT];
};

Parts split(const std::string& path) {
  Parts parts = {};
  _splitpath(path.c_str(), parts.drive, parts.directory, parts.name, parts.extension);
  return parts;
}

struct SplitCase {
  const char* path;
  const char* drive;
  const char* directory;
  const char* name;
  const char* extension;
};

class SplitPath : public ::testing::TestWithParam<SplitCase> {};

TEST_P(SplitPath, GivesTheFourParts) {
  const Parts parts = split(GetParam().path);
  EXPECT_STREQ(parts.drive, GetParam().drive);
  EXPECT_STREQ(parts.directory, GetParam().directory);
  EXPECT_STREQ(parts.name, GetParam().name);
  EXPECT_STREQ(parts.extension, GetParam().extension);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, SplitPath,
    ::testing::Values(
        SplitCase{"C:\\folder\\inner\\name.ext", "C:", "\\folder\\inner\\", "name", ".ext"},
        SplitCase{"/folder/inner/name.ext", "", "/folder/inner/", "name", ".ext"},
        SplitCase{"folder/inner\\name.ext", "", "folder/inner\\", "name", ".ext"},
        SplitCase{"name.ext", "", "", "name", ".ext"}, SplitCase{"C:name", "C:", "", "name", ""},
        SplitCase{"two.dots.mpo", "", "", "two.dots", ".mpo"},
        SplitCase{"dotted.folder/name", "", "dotted.folder/", "name", ""},
        SplitCase{".hidden", "", "", "", ".hidden"}, SplitCase{"end.", "", "", "end", "."},
        SplitCase{"folder/", "", "folder/", "", ""}, SplitCase{"", "", "", "", ""}));

// Versions of the run-time library differ in what they give, but none goes past its counts.
TEST(SplitPathLimits, PartsThatAreTooLongStayInTheirBuffers) {
  const std::string longName(400, 'n');
  EXPECT_LT(std::strlen(split(longName + ".e").name), std::size_t{_MAX_FNAME});
  EXPECT_LT(std::strlen(split("n." + longName).extension), std::size_t{_MAX_EXT});
  EXPECT_LT(std::strlen(split(longName + "/n").directory), std::size_t{_MAX_DIR});
}

TEST(SplitPathLimits, PartsThatAreNotWantedAreLeftOut) {
  char extension[_MAX_EXT] = {};
  _splitpath("folder/name.mpo", nullptr, nullptr, nullptr, extension);
  EXPECT_STREQ(extension, ".mpo");
}

TEST(SplitPathWide, GivesTheFourParts) {
  wchar_t drive[_MAX_DRIVE], directory[_MAX_DIR], name[_MAX_FNAME], extension[_MAX_EXT];
  _wsplitpath(L"D:\\f\u00E4\\n\u00FC.mpo", drive, directory, name, extension);
  EXPECT_EQ(std::wcscmp(drive, L"D:"), 0);
  EXPECT_EQ(std::wcscmp(directory, L"\\f\u00E4\\"), 0);
  EXPECT_EQ(std::wcscmp(name, L"n\u00FC"), 0);
  EXPECT_EQ(std::wcscmp(extension, L".mpo"), 0);
}

TEST(CompareWithoutCase, LettersOfBothCasesAreEqual) {
  EXPECT_EQ(_stricmp(".MPO", ".mpo"), 0);
  EXPECT_EQ(_wcsicmp(L".mPo", L".MpO"), 0);
  EXPECT_EQ(_strnicmp("EXIFxx", "exifYY", 4), 0);
  EXPECT_NE(_strnicmp("EXIFxx", "exifYY", 5), 0);
  EXPECT_EQ(_strnicmp("a", "b", 0), 0);
}

TEST(CompareWithoutCase, OrderIsThatOfTheSmallLetters) {
  EXPECT_LT(_stricmp("a", "B"), 0);
  EXPECT_GT(_stricmp("C", "b"), 0);
  EXPECT_LT(_stricmp("ab", "abc"), 0);
  EXPECT_GT(_wcsicmp(L"abc", L"AB"), 0);
  EXPECT_LT(_stricmp("_", "A"), 0);  // between the capitals and the small letters
}

}  // namespace

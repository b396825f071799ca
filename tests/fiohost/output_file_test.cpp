#include "fiohost/output_file.h"

#include <gmock/gmock.h>

#include "fiohost/failure.h"
#include "fiohost/temporary_name.h"
#include "tests/fiohost/support/files.h"

namespace fiohost {
namespace {

using fiohostTest::namesIn;
using fiohostTest::readText;
using fiohostTest::writeBytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OutputFileTest : public testing::Test {
 protected:
  [[nodiscard]] std::string name(const std::string& file) const {
    return platform::displayPath(folder_.path() / file);
  }
  fiohostTest::TemporaryFolder folder_;
};

TEST_F(OutputFileTest, AppearsWhenItIsCommitted) {
  OutputFile file(name("a.txt"));
  file.write("abc", 3);
  EXPECT_FALSE(std::filesystem::exists(folder_.path() / "a.txt"));
  file.commit();
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("a.txt"));
  EXPECT_EQ(readText(folder_.path() / "a.txt"), "abc");
}

TEST_F(OutputFileTest, LeavesNothingWhenItIsNotCommitted) {
  { OutputFile(name("a.txt")).write("abc", 3); }
  EXPECT_THAT(namesIn(folder_.path()), IsEmpty());
}

TEST_F(OutputFileTest, ReplacesAnOldFileOnlyWhenItIsCommitted) {
  writeBytes(folder_.path() / "a.txt", {'o', 'l', 'd'});
  { OutputFile(name("a.txt")).write("new", 3); }
  EXPECT_EQ(readText(folder_.path() / "a.txt"), "old");
  OutputFile file(name("a.txt"));
  file.write("new", 3);
  file.commit();
  EXPECT_EQ(readText(folder_.path() / "a.txt"), "new");
  EXPECT_THAT(namesIn(folder_.path()), ElementsAre("a.txt"));
}

TEST_F(OutputFileTest, RestartForgetsWhatWasWritten) {
  OutputFile file(name("a.txt"));
  file.write("a longer first attempt", 22);
  file.restart();
  file.write("second", 6);
  file.commit();
  EXPECT_EQ(readText(folder_.path() / "a.txt"), "second");
}

TEST_F(OutputFileTest, DoesNotTouchSomebodyElsesTemporaryFile) {
  // The name that comes after the one that is given here.
  const std::string last = temporaryStem();
  const std::size_t dash = last.rfind('-') + 1;
  const int next = std::stoi(last.substr(dash)) + 1;
  const std::string other = "." + last.substr(0, dash) + std::to_string(next) + ".tmp";
  writeBytes(folder_.path() / other, {'x'});
  OutputFile file(name("a.txt"));
  file.write("abc", 3);
  file.commit();
  EXPECT_EQ(readText(folder_.path() / other), "x");
  EXPECT_EQ(readText(folder_.path() / "a.txt"), "abc");
}

TEST_F(OutputFileTest, RefusesAFolderAsTarget) {
  std::filesystem::create_directory(folder_.path() / "a.png");
  EXPECT_THROW(OutputFile(name("a.png")), Failure);
  EXPECT_TRUE(std::filesystem::is_directory(folder_.path() / "a.png"));
}

TEST_F(OutputFileTest, NamesTheTargetWhoseFolderIsMissing) {
  try {
    OutputFile file(name("missing/a.png"));
    FAIL() << "a file was opened in a folder that is not there";
  } catch (const Failure& failure) {
    EXPECT_THAT(failure.line(), HasSubstr("missing/a.png cannot be written"));
  }
}

}  // namespace
}  // namespace fiohost

#include "fiohost/view/file_sequence.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "fiohost/view/implied_command.h"
#include "fiohost/view/natural_order.h"
#include "platform/console/console.h"
#include "tests/fiohost/support/files.h"

namespace fiohost::view {
namespace {

using testing::ElementsAre;

TEST(NaturalOrder, NumbersCountByTheirValue) {
  EXPECT_TRUE(naturalLess("img9.jpg", "img10.jpg"));
  EXPECT_FALSE(naturalLess("img10.jpg", "img9.jpg"));
  EXPECT_TRUE(naturalLess("img009.jpg", "img10.jpg"));
  EXPECT_TRUE(naturalLess("a99999999999999999999998", "a99999999999999999999999"));
}

TEST(NaturalOrder, CaseDoesNotCountUnlessNothingElseDiffers) {
  EXPECT_TRUE(naturalLess("a.jpg", "B.jpg"));
  EXPECT_TRUE(naturalLess("A.jpg", "b.jpg"));
  EXPECT_TRUE(naturalLess("A", "a"));
  EXPECT_FALSE(naturalLess("a", "A"));
  EXPECT_FALSE(naturalLess("a", "a"));
  EXPECT_NE(naturalLess("a1", "a01"), naturalLess("a01", "a1"));
}

TEST(NaturalOrder, ABeginningComesFirst) {
  EXPECT_TRUE(naturalLess("img", "img1"));
  EXPECT_TRUE(naturalLess("", "a"));
  EXPECT_FALSE(naturalLess("a", ""));
}

class FileSequenceTest : public testing::Test {
 protected:
  std::string add(const std::string& name) {
    const std::string path = platform::displayPath(folder_.path()) + "/" + name;
    fiohostTest::writeBytes(platform::systemPath(path), {1});
    return path;
  }
  static std::string nameOf(const FileSequence& files) {
    return platform::displayPath(platform::systemPath(files.current()).filename());
  }
  static std::vector<std::string> namesOf(FileSequence files) {
    files.toFirst();
    std::vector<std::string> names;
    do {
      names.push_back(nameOf(files));
    } while (files.step(1));
    return names;
  }

  fiohostTest::TemporaryFolder folder_;
};

TEST_F(FileSequenceTest, AFileStandsAmongThePicturesOfItsFolder) {
  add("b10.JPG");
  const std::string named = add("b9.jpg");
  add("a.mpo");
  add("notes.txt");
  add("b9.jpg.txt");
  std::filesystem::create_directory(folder_.path() / "folder.jpg");
  FileSequence files({named});
  EXPECT_EQ(nameOf(files), "b9.jpg");
  EXPECT_EQ(files.position(), 1U);
  EXPECT_THAT(namesOf(files), ElementsAre("a.mpo", "b9.jpg", "b10.JPG"));
  EXPECT_TRUE(files.step(1));
  EXPECT_FALSE(files.step(1)) << "it does not begin anew";
  EXPECT_EQ(nameOf(files), "b10.JPG");
  EXPECT_TRUE(files.toFirst());
  EXPECT_FALSE(files.toFirst());
  EXPECT_FALSE(files.step(-1));
  EXPECT_TRUE(files.toLast());
  EXPECT_EQ(nameOf(files), "b10.JPG");
}

TEST_F(FileSequenceTest, AFileOfAnotherNameOrGoneHasItsPlaceToo) {
  add("a.jpg");
  add("c.jpg");
  EXPECT_THAT(namesOf(FileSequence({add("b.dat")})), ElementsAre("a.jpg", "b.dat", "c.jpg"));
  const std::string gone = platform::displayPath(folder_.path()) + "/z.jpg";
  EXPECT_EQ(nameOf(FileSequence({gone})), "z.jpg");
}

TEST_F(FileSequenceTest, SeveralFilesStandForThemselves) {
  const std::string z = add("z.jpg");
  add("b.jpg");
  const std::string a = add("a.jpg");
  EXPECT_THAT(namesOf(FileSequence({z, a})), ElementsAre("z.jpg", "a.jpg"));
}

TEST_F(FileSequenceTest, AFolderBeginsWithItsFirstPicture) {
  EXPECT_TRUE(FileSequence({platform::displayPath(folder_.path())}).empty());
  add("2.jpg");
  add("1.jpg");
  EXPECT_EQ(nameOf(FileSequence({platform::displayPath(folder_.path())})), "1.jpg");
}

TEST_F(FileSequenceTest, UnicodeNamesComeBackAsTheyWere) {
  const std::string named = add("\xC3\xBC\xE6\x97\xA5.jpg");
  EXPECT_EQ(nameOf(FileSequence({named})), "\xC3\xBC\xE6\x97\xA5.jpg");
}

TEST_F(FileSequenceTest, ExistingFilesAloneMeanTheWindow) {
  const std::string a = add("a.jpg");
  const std::string b = add("b.jpg");
  const Start windows = {true, false};
  EXPECT_THAT(withImpliedCommand({a, b}, windows), ElementsAre("view", a, b));
  EXPECT_THAT(withImpliedCommand({a, a + "x"}, windows), ElementsAre(a, a + "x"));
  EXPECT_THAT(withImpliedCommand({"--help"}, windows), ElementsAre("--help"));
  EXPECT_THAT(withImpliedCommand({"info", a}, windows), ElementsAre("info", a));
  EXPECT_THAT(withImpliedCommand({a}, {false, false}), ElementsAre(a));
}

TEST(ImpliedCommand, NoArgumentsMeanTheWindowWhereNoShellWaits) {
  EXPECT_THAT(withImpliedCommand({}, {true, true}), ElementsAre("view"));
  EXPECT_THAT(withImpliedCommand({}, {true, false}), ElementsAre());
  EXPECT_THAT(withImpliedCommand({}, {false, true}), ElementsAre());
}

}  // namespace
}  // namespace fiohost::view

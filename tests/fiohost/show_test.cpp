#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ShowTest : public ProgramTest {};

TEST_F(ShowTest, DescribesAndDecodesIntoTheCurrentFolder) {
  std::filesystem::create_directory(file("album"));
  addJpeg("album/one.jpg", {});
  const ProcessResult result = run({"show", "album/one.jpg"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("64 x 48 pixels"));
  EXPECT_THAT(result.out, HasSubstr("one.png"));
  EXPECT_EQ(png("one.png"), decodeJpeg(readBytes(file("album/one.jpg"))));
}

TEST_F(ShowTest, LeavesAnExistingFileAlone) {
  addJpeg("one.jpg", {});
  writeBytes(file("one.png"), {'m', 'i', 'n', 'e'});
  const nlohmann::json result = runForJson({"show", "--json", "one.jpg"});
  EXPECT_EQ(result[0]["output"], "one-2.png");
  EXPECT_EQ(result[0]["width"], 64);
  EXPECT_EQ(readText(file("one.png")), "mine");
  EXPECT_THAT(namesIn(folder()), ElementsAre("one-2.png", "one.jpg", "one.png"));
}

TEST_F(ShowTest, OverwritesWhenItIsForced) {
  addJpeg("one.jpg", {});
  writeBytes(file("one.png"), {'m', 'i', 'n', 'e'});
  EXPECT_EQ(run({"show", "--force", "one.jpg"}).exitCode, 0);
  EXPECT_EQ(png("one.png").width, 64U);
  EXPECT_THAT(namesIn(folder()), ElementsAre("one.jpg", "one.png"));
}

TEST_F(ShowTest, ServesTheOthersWhenOneFileIsBad) {
  writeBytes(file("bad.jpg"), {'t', 'e', 'x', 't'});
  addJpeg("good.jpg", {});
  const ProcessResult result = run({"show", "bad.jpg", "good.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("bad.jpg: "));
  EXPECT_THAT(namesIn(folder()), ElementsAre("bad.jpg", "good.jpg", "good.png"));
}

}  // namespace
}  // namespace fiohostTest

// Names that older interfaces cannot carry.
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

class PathTest : public ProgramTest {
 protected:
  void expectServed(const std::string& input, const std::string& output) {
    addJpeg(input, {});
    const nlohmann::json info = runForJson({"info", "--json", input});
    EXPECT_EQ(info[0]["file"], input);
    EXPECT_EQ(info[0]["width"], 64);
    const ProcessResult result = run({"read", input, "-o", output});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(png(output), decodeJpeg(readBytes(file(input))));
  }
};

TEST_F(PathTest, Spaces) { expectServed("my own picture.jpg", "my own copy.png"); }

TEST_F(PathTest, Umlauts) { expectServed("Gr\u00FC\u00DFe aus K\u00F6ln.jpg", "\u00C4pfel.png"); }

TEST_F(PathTest, Japanese) {
  expectServed("\u5199\u771F\u306E\u8A18\u9332.jpg", "\u7D50\u679C.png");
}

TEST_F(PathTest, ANameThatBeginsWithASlashIsAFileAndNoOption) {
  const ProcessResult result = run({"info", "/no such folder/a.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, testing::HasSubstr("/no such folder/a.jpg"));
}

TEST_F(PathTest, CharactersBeyondTheBasicPlane) {
  expectServed("\U0001F4F7.jpg", "\U0001F5BC.png");
}

TEST_F(PathTest, MoreThan260Characters) {
  {
    DeepFolders deep(folder());
    expectServed(deep.file("picture.jpg"), deep.file("copy.png"));
  }
  EXPECT_TRUE(namesIn(folder()).empty());
}

}  // namespace
}  // namespace fiohostTest

// What a save would lose, told, asked about and kept.
#include "fiohost/save_loss.h"

#include "tests/fiohost/support/mpo_fixture.h"
#include "tests/support/jpeg_builder.h"
#include "tests/support/mpf_builder.h"

namespace fiohostTest {
namespace {

using support::bytesOf;
using support::joined;
using support::JpegBuilder;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class SaveLossTest : public MpoProgramTest {
 protected:
  [[nodiscard]] std::string losses(const Bytes& bytes, const fiohost::SavePlan& plan = {}) const {
    return fiohost::lossesInWords(fiohost::lossesOfSave(bytes, plan));
  }
  // A pair under a name that does not tell that it is one.
  void addPair() const {
    static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
    std::filesystem::rename(file("out.mpo"), file("pair.jpg"));
  }
};

TEST_F(SaveLossTest, EachKindIsTold) {
  const Bytes plain = makeJpeg({});
  EXPECT_EQ(losses(plain), "");
  EXPECT_EQ(losses(bytesOf("text")), "");
  EXPECT_EQ(losses(joined(plain, {1, 2, 3})), "3 bytes of data behind the picture");
  EXPECT_EQ(losses(joined(plain, {0, 0, 0})), "");  // filling
  EXPECT_EQ(losses(JpegBuilder().comment(bytesOf("a")).comment(bytesOf("b")).build()),
            "2 comments");
  static_cast<void>(build(addPictures(3), {"--kind", "stereo"}));
  const Bytes three = joined(readBytes(file("out.mpo")), {7});
  EXPECT_EQ(losses(three), "2 other images and 1 byte of data behind the picture");
  EXPECT_EQ(losses(three, {.behindPicture = true}), "");
}

TEST_F(SaveLossTest, SegmentsThatASaveCannotKeep) {
  const Bytes file = JpegBuilder()
                         .extendedXmp(std::string(32, 'A'), 4, 0, bytesOf("<a/>"))
                         .app(7, Bytes(200, 1))
                         .comment(bytesOf("c"))
                         .build();
  EXPECT_EQ(losses(file), "1 comment");
  EXPECT_EQ(losses(file, {.extendedXmp = false}), "extended XMP and 1 comment");
  EXPECT_EQ(losses(file, {.largestSegment = 199}), "APP7 of 200 bytes and 1 comment");
  EXPECT_EQ(losses(file, {.metadata = false, .extendedXmp = false}), "");
}

TEST_F(SaveLossTest, AGainMapIsCalledSo) {
  const Bytes map = JpegBuilder().size(16, 16).layout(support::Layout::grey).build();
  const Bytes picture =
      JpegBuilder().xmp(bytesOf("<x hdrgm:Version='1.0' Item:Semantic=\"GainMap\"/>")).build();
  EXPECT_EQ(losses(joined(picture, map)), "a gain map");
  EXPECT_EQ(losses(joined(makeJpeg({}), map)),
            std::to_string(map.size()) + " bytes of data behind the picture");
  // The same as an image of the index, of no class that the standard has.
  writeBytes(file("map.jpg"), map);
  static_cast<void>(addPictures(2));
  writeBytes(file("in1.jpg"), picture);
  static_cast<void>(build({"in1.jpg", "in2.jpg"}, {"--kind", "large-thumbnail"}));
  EXPECT_EQ(run({"mpo", "insert", "out.mpo", "map.jpg", "-o", "map.mpo"}).exitCode, 0);
  EXPECT_EQ(losses(readBytes(file("map.mpo"))), "1 other image and a gain map");
}

TEST_F(SaveLossTest, ASaveThatLosesImagesSaysSoAndGoesOn) {
  addPair();
  const ProcessResult result = run({"convert", "pair.jpg", "-o", "new.jpg"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err,
            "fiohost: pair.jpg: saving loses 1 other image; --keep-images keeps what lies behind "
            "the picture\n");
  EXPECT_EQ(run({"convert", "in1.jpg", "-o", "quiet.jpg"}).err, "");
  EXPECT_THAT(run({"set", "pair.jpg", "Artist=A", "-o", "set.jpg"}).err,
              HasSubstr("saving loses 1 other image"));
}

TEST_F(SaveLossTest, NoLossWritesNothing) {
  addPair();
  const ProcessResult result = run({"convert", "pair.jpg", "-o", "new.jpg", "--no-loss"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "fiohost: pair.jpg: saving would lose 1 other image; --keep-images keeps what lies "
            "behind the picture\n");
  EXPECT_FALSE(std::filesystem::exists(file("new.jpg")));
  EXPECT_EQ(run({"convert", "in1.jpg", "-o", "new.jpg", "--no-loss"}).exitCode, 0);
  writeBytes(file("said.jpg"), JpegBuilder().comment(bytesOf("a")).build());
  EXPECT_THAT(run({"convert", "said.jpg", "-o", "x.jpg", "--no-loss"}).err,
              HasSubstr("would lose 1 comment; leave --no-loss out"));
}

TEST_F(SaveLossTest, KeptImagesAreTheSameBytes) {
  addPair();
  std::filesystem::copy_file(file("pair.jpg"), file("pair.mpo"));
  const Bytes second = rangeOf("pair.mpo", info("pair.mpo")["images"][1]);
  const nlohmann::json attributes = info("pair.mpo")["images"][0]["attributes"];
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{}, {"--drop-metadata"}, {"--progressive"}, {"--no-jfif"}}) {
    for (const char* source : {"pair.jpg", "pair.mpo"}) {
      std::vector<std::string> words = {"convert",       source,      "-o",
                                        "new.mpo",       "--force",   "--json",
                                        "--keep-images", "--quality", "40"};
      words.insert(words.end(), options.begin(), options.end());
      const ProcessResult result = run(words);
      ASSERT_EQ(result.exitCode, 0) << result.err;
      EXPECT_EQ(result.err, "");
      const nlohmann::json list = info("new.mpo");
      ASSERT_EQ(list["images"].size(), 2U);
      EXPECT_EQ(list["images"][0]["attributes"], attributes);
      EXPECT_EQ(rangeOf("new.mpo", list["images"][1]), second);
      EXPECT_EQ(run({"mpo", "verify", "new.mpo"}).exitCode, 0);
      EXPECT_EQ(nlohmann::json::parse(result.out)[0]["bytes"], readBytes(file("new.mpo")).size());
    }
  }
  EXPECT_LT(readBytes(file("new.mpo")).size(), readBytes(file("pair.mpo")).size());
}

TEST_F(SaveLossTest, KeptDataIsReportedAsKept) {
  writeBytes(file("in.jpg"), joined(makeJpeg({}), bytesOf("behind")));
  const ProcessResult result = run({"convert", "in.jpg", "-o", "new.jpg", "--keep-images"});
  EXPECT_THAT(result.out, HasSubstr("kept          data behind the picture, 6 bytes"));
  const Bytes saved = readBytes(file("new.jpg"));
  EXPECT_EQ(std::string(saved.end() - 6, saved.end()), "behind");
  addPair();
  const ProcessResult images = run({"convert", "pair.jpg", "-o", "pair2.jpg", "--keep-images"});
  EXPECT_THAT(images.out, HasSubstr("(the images lie elsewhere now)"));
}

TEST_F(SaveLossTest, AnMpoIsRefusedUntilSomethingIsSaid) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  const ProcessResult refused = run({"convert", "out.mpo", "-o", "new.jpg"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, AllOf(HasSubstr("holds several pictures"), HasSubstr("--keep-images"),
                                 Not(HasSubstr("saving loses"))));
  const ProcessResult first = run({"convert", "out.mpo", "-o", "new.jpg", "--first-only"});
  EXPECT_EQ(first.exitCode, 0) << first.err;
  EXPECT_EQ(first.err, "");
  EXPECT_EQ(decodeJpeg(readBytes(file("new.jpg"))).width, 64U);
  EXPECT_EQ(run({"convert", "out.mpo", "-o", "x.jpg", "--first-only", "--no-loss"}).exitCode, 1);
  EXPECT_EQ(run({"convert", "out.mpo", "-o", "x.jpg", "--first-only", "--keep-images"}).exitCode,
            2);
}

TEST_F(SaveLossTest, EditedValuesAndKeptImagesGoTogether) {
  addPair();
  EXPECT_EQ(run({"set", "pair.jpg", "Artist=A. Nother", "-o", "set.mpo", "--keep-images"}).exitCode,
            0);
  EXPECT_EQ(info("set.mpo")["images"].size(), 2U);
  EXPECT_THAT(run({"properties", "set.mpo"}).out, HasSubstr("A. Nother"));
}

#ifdef KF_PYTHON
// Runs a command with a terminal for its standard input and error and types an answer.
constexpr const char* atTerminal =
    "import os, pty, sys\n"
    "answer, words = sys.argv[1], sys.argv[2:]\n"
    "child, terminal = pty.fork()\n"
    "if child == 0:\n"
    "    os.execv(words[0], words)\n"
    "seen = b''\n"
    "while True:\n"
    "    try: part = os.read(terminal, 1000)\n"
    "    except OSError: break\n"
    "    if not part: break\n"
    "    seen += part\n"
    "    if b'[c]ancel? ' in seen and answer:\n"
    "        os.write(terminal, (answer + '\\n').encode()); answer = ''\n"
    "sys.stdout.write(seen.decode())\n"
    "sys.exit(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))\n";

TEST_F(SaveLossTest, AtATerminalTheUserIsAsked) {
  addPair();
  const auto convert = [this](const char* answer, const char* output) {
    return runProcess(
        KF_PYTHON,
        {"-c", atTerminal, answer, platform::displayPath(distributionFolder() / programName),
         "convert", "pair.jpg", "-o", output},
        folder(), folder());
  };
  const ProcessResult kept = convert("k", "kept.mpo");
  EXPECT_EQ(kept.exitCode, 0) << kept.out;
  EXPECT_THAT(kept.out, HasSubstr("pair.jpg: saving loses 1 other image. [k]eep"));
  EXPECT_EQ(info("kept.mpo")["images"].size(), 2U);
  EXPECT_EQ(convert("s", "alone.jpg").exitCode, 0);
  EXPECT_LT(readBytes(file("alone.jpg")).size(), readBytes(file("kept.mpo")).size());
  EXPECT_EQ(convert("c", "none.jpg").exitCode, 1);
  EXPECT_FALSE(std::filesystem::exists(file("none.jpg")));
}
#endif

}  // namespace
}  // namespace fiohostTest

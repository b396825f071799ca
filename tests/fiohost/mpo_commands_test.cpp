// Multi-picture files looked into, taken apart and built, as a user does it.
#include <iterator>
#include <sstream>

#include "tests/fiohost/support/mpo_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;

class MpoCommandsTest : public MpoProgramTest {};

TEST_F(MpoCommandsTest, ABuiltFileHoldsEveryImageInItsPlace) {
  for (const unsigned count : {2U, 3U, 7U}) {
    SCOPED_TRACE(count);
    const std::vector<std::string> pictures = addPictures(count);
    const nlohmann::json built = build(pictures, {"--kind", "multi-angle"});
    const nlohmann::json list = info("out.mpo");
    EXPECT_EQ(built["images"], count);
    EXPECT_EQ(built["bytes"], readBytes(file("out.mpo")).size());
    EXPECT_EQ(list["kind"], "multi-angle");
    EXPECT_EQ(list["frames"], count);
    ASSERT_EQ(list["images"].size(), count);
    std::size_t end = 0;
    for (unsigned i = 0; i < count; ++i) {
      const nlohmann::json& image = list["images"][i];
      EXPECT_EQ(image["number"], i + 1);
      EXPECT_EQ(image["individualNumber"], i + 1);
      EXPECT_EQ(image["width"], 64 + 4 * i);
      EXPECT_EQ(image["height"], 42 + 2 * i);
      EXPECT_EQ(image["representative"], i == 0);
      EXPECT_EQ(image["offset"], end);
      end += image["bytes"].get<std::size_t>();
    }
    EXPECT_EQ(end, readBytes(file("out.mpo")).size());
  }
}

TEST_F(MpoCommandsTest, ExtractedImagesAreThoseOfTheFile) {
  static_cast<void>(build(addPictures(3), {"--kind", "stereo"}));
  expectExtractionAgrees("out.mpo", "out");
}

TEST_F(MpoCommandsTest, PixelsSurviveAtHighQuality) {
  const std::vector<std::string> pictures = addPictures(2);
  static_cast<void>(build(pictures, {"--kind", "stereo", "--quality", "95"}));
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", "."}).exitCode, 0);
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const Pixels before = decodeJpeg(readBytes(file(pictures[i])));
    const Pixels after = png("out-" + std::to_string(i + 1) + ".png");
    ASSERT_EQ(before.bytes.size(), after.bytes.size());
    double difference = 0;
    for (std::size_t at = 0; at < before.bytes.size(); ++at) {
      difference += std::abs(int{before.bytes[at]} - int{after.bytes[at]});
    }
    EXPECT_LT(difference / static_cast<double>(before.bytes.size()), 3.0);
  }
}

TEST_F(MpoCommandsTest, GreyCmykAndProgressivePicturesCanBeBuiltIn) {
  addJpeg("grey.jpg", {.components = 1});
  addJpeg("cmyk.jpg", {.components = 4});
  addJpeg("passes.jpg", {.progressive = true});
  static_cast<void>(build({"grey.jpg", "cmyk.jpg", "passes.jpg"}, {"--kind", "panorama"}));
  EXPECT_EQ(info("out.mpo")["kind"], "panorama");
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", "."}).exitCode, 0);
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", ".", "--jpeg"}).exitCode, 0);
  EXPECT_EQ(png("out-1.png"), decodeJpeg(readBytes(file("out-1.jpg"))));
  EXPECT_EQ(decodeJpeg(readBytes(file("out-2.jpg"))).channels, 4U);
  EXPECT_EQ(png("out-2.png").channels, 3U);
  EXPECT_EQ(png("out-3.png"), decodeJpeg(readBytes(file("out-3.jpg"))));
}

TEST_F(MpoCommandsTest, ViewpointsAreToldAsFractions) {
  static_cast<void>(build(addPictures(3),
                          {"--kind", "stereo", "--baseline", "77/1000", "--convergence", "-3/2"}));
  const nlohmann::json images = info("out.mpo")["images"];
  EXPECT_EQ(images[0]["attributes"]["convergenceAngle"]["numerator"], 0);
  const nlohmann::json third = images[2]["attributes"];
  EXPECT_EQ(third["baseViewpoint"], 1);
  EXPECT_EQ(third["baselineLength"],
            nlohmann::json({{"numerator", 154}, {"denominator", 1000}, {"value", 0.154}}));
  EXPECT_EQ(third["convergenceAngle"],
            nlohmann::json({{"numerator", -6}, {"denominator", 2}, {"value", -3.0}}));
  EXPECT_THAT(run({"mpo", "info", "out.mpo"}).out, HasSubstr("77/1000 (0.077)"));
}

TEST_F(MpoCommandsTest, ViewpointsThatNobodyGaveAreUnknown) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  const nlohmann::json attributes = info("out.mpo")["images"][1]["attributes"];
  EXPECT_EQ(attributes["baselineLength"]["value"], nullptr);
  EXPECT_EQ(attributes["baselineLength"]["numerator"], 0xFFFFFFFFU);
  EXPECT_EQ(attributes["convergenceAngle"]["value"], nullptr);
}

TEST_F(MpoCommandsTest, LargeThumbnailsDependOnThePrimaryImage) {
  addJpeg("primary.jpg", {.width = 800, .height = 600});
  addJpeg("vga.jpg", {.width = 640, .height = 480});
  addJpeg("hd.jpg", {.width = 720, .height = 540});
  static_cast<void>(build({"primary.jpg", "vga.jpg", "hd.jpg"}, {"--kind", "large-thumbnail"}));
  const nlohmann::json list = info("out.mpo");
  const nlohmann::json& images = list["images"];
  EXPECT_EQ(list["kind"], "baseline primary image");
  EXPECT_EQ(list["frames"], 1);
  EXPECT_EQ(images[0]["parent"], true);
  EXPECT_EQ(images[0]["dependents"], nlohmann::json({2, 3}));
  EXPECT_EQ(images[1]["class"], "large thumbnail (VGA)");
  EXPECT_EQ(images[1]["child"], true);
  EXPECT_EQ(images[2]["class"], "large thumbnail (full HD)");
  expectExtractionAgrees("out.mpo", "out");
}

TEST_F(MpoCommandsTest, MetadataOfEachPictureGoesWithIt) {
  const std::string marks[] = {"mark of the first", "mark of the second"};
  const std::vector<std::string> pictures = addPictures(2);
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    Bytes bytes = readBytes(file(pictures[i]));
    Bytes segment = {0xFF, 0xE7, 0, static_cast<std::uint8_t>(marks[i].size() + 2)};
    segment.insert(segment.end(), marks[i].begin(), marks[i].end());
    bytes.insert(bytes.begin() + 2, segment.begin(), segment.end());
    writeBytes(file(pictures[i]), bytes);
  }
  static_cast<void>(build(pictures, {"--kind", "stereo"}));
  const nlohmann::json images = info("out.mpo")["images"];
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    const Bytes stream = rangeOf("out.mpo", images[i]);
    const std::string text(stream.begin(), stream.end());
    EXPECT_THAT(text, HasSubstr(marks[i]));
    EXPECT_THAT(text, testing::Not(HasSubstr(marks[1 - i])));
  }
}

TEST_F(MpoCommandsTest, ChosenImagesAloneAreExtracted) {
  static_cast<void>(build(addPictures(3), {"--kind", "stereo"}));
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", "taken", "--images", "3,1"}).exitCode, 0);
  EXPECT_EQ(namesIn(file("taken")), (std::vector<std::string>{"out-1.png", "out-3.png"}));
  const ProcessResult result = run({"mpo", "extract", "out.mpo", "-o", "taken", "--images", "4"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("there is no image 4; the file has 3"));
}

TEST_F(MpoCommandsTest, ExistingFilesAreReplacedOnlyWhenForced) {
  const std::vector<std::string> pictures = addPictures(2);
  writeBytes(file("out.mpo"), {1, 2, 3});
  const std::vector<std::string> again = {"mpo",    "build",  "-o",      "out.mpo",
                                          "--kind", "stereo", "in1.jpg", "in2.jpg"};
  const ProcessResult refused = run(again);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("--force"));
  EXPECT_EQ(readBytes(file("out.mpo")), (Bytes{1, 2, 3}));
  static_cast<void>(build(pictures, {"--kind", "stereo"}));
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", "."}).exitCode, 0);
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", "."}).exitCode, 1);
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", ".", "--force"}).exitCode, 0);
}

TEST_F(MpoCommandsTest, ABuildThatFailsLeavesNothing) {
  const std::vector<std::string> pictures = addPictures(2);
  Bytes broken = readBytes(file("in2.jpg"));
  broken.resize(40);
  writeBytes(file("in2.jpg"), broken);
  const ProcessResult result =
      run({"mpo", "build", "-o", "out.mpo", "--kind", "stereo", "in1.jpg", "in2.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("in2.jpg: "));
  EXPECT_EQ(namesIn(folder()), pictures);
}

TEST_F(MpoCommandsTest, WrongFilesAreNamed) {
  addJpeg("plain.jpg", {});
  writeBytes(file("bad.mpo"), {'t', 'e', 'x', 't'});
  for (const char* part : {"info", "extract"}) {
    SCOPED_TRACE(part);
    std::vector<std::string> arguments = {"mpo", part, "missing.mpo"};
    if (std::string(part) == "extract") arguments.insert(arguments.end(), {"-o", "taken"});
    EXPECT_THAT(run(arguments).err, HasSubstr("missing.mpo: there is no such file"));
    arguments[2] = "plain.jpg";
    EXPECT_THAT(run(arguments).err, HasSubstr("plain.jpg: this is no multi-picture file"));
    arguments[2] = "bad.mpo";
    const ProcessResult bad = run(arguments);
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_THAT(bad.err, HasSubstr("bad.mpo: the header cannot be read (error 4019)"));
  }
}

TEST_F(MpoCommandsTest, ACutFileGivesWhatItStillHolds) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  Bytes bytes = readBytes(file("out.mpo"));
  bytes.resize(bytes.size() - 50);
  writeBytes(file("cut.mpo"), bytes);
  EXPECT_EQ(info("cut.mpo")["images"][1]["insideFile"], false);
  const ProcessResult result = run({"mpo", "extract", "cut.mpo", "-o", "taken", "--jpeg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("image 2: its bytes do not lie inside the file"));
  EXPECT_EQ(namesIn(file("taken")), std::vector<std::string>{"cut-1.jpg"});
}

TEST_F(MpoCommandsTest, WrongOptionsAreUsageErrors) {
  static_cast<void>(addPictures(2));
  EXPECT_EQ(run({"mpo"}).exitCode, 2);
  EXPECT_EQ(run({"mpo", "extract", "out.mpo", "-o", ".", "--images", "1,,2"}).exitCode, 2);
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--kind", "cube"},
                                                {"--kind", "stereo", "--baseline", "-1/2"},
                                                {"--kind", "stereo", "--convergence", "1"},
                                                {"--kind", "stereo", "--quality", "101"}}) {
    std::vector<std::string> arguments = {"mpo", "build", "-o", "out.mpo", "in1.jpg", "in2.jpg"};
    arguments.insert(arguments.end(), wrong.begin(), wrong.end());
    EXPECT_EQ(run(arguments).exitCode, 2);
  }
  const ProcessResult alone = run({"mpo", "build", "-o", "out.mpo", "in1.jpg", "--kind", "stereo"});
  EXPECT_EQ(alone.exitCode, 1);
  EXPECT_THAT(alone.err, HasSubstr("takes 2 to 127 pictures, not 1"));
}

#ifdef KF_SAMPLES
TEST_F(MpoCommandsTest, ARealFileIsListedAsExiftoolListsIt) {
  const std::filesystem::path sample = std::filesystem::path(KF_SAMPLES) / "mpo/frozenpond.mpo";
  if (!std::filesystem::exists(sample)) GTEST_SKIP() << "there is no " << sample;
  std::filesystem::copy_file(sample, file("pond.mpo"));
  std::filesystem::permissions(file("pond.mpo"), std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::add);
  expectExtractionAgrees("pond.mpo", "pond");
  EXPECT_EQ(info("pond.mpo")["images"][1]["attributes"]["baselineLength"]["value"], nullptr);
  const ProcessResult theirs =
      runProcess("/usr/bin/exiftool", {"-a", "-s3", "-MPImageStart", "-MPImageLength", "pond.mpo"},
                 folder(), folder());
  std::istringstream numbers(theirs.out);
  std::vector<std::size_t> expected(std::istream_iterator<std::size_t>(numbers), {});
  std::vector<std::size_t> starts;
  std::vector<std::size_t> lengths;
  const nlohmann::json list = info("pond.mpo");
  for (const nlohmann::json& image : list["images"]) {
    starts.push_back(image["offset"]);
    lengths.push_back(image["bytes"]);
  }
  starts.insert(starts.end(), lengths.begin(), lengths.end());
  EXPECT_EQ(starts, expected);
}
#endif

#ifdef KF_PYTHON
constexpr const char* tellFrames =
    "from PIL import Image\n"
    "picture = Image.open('out.mpo')\n"
    "print(picture.format, picture.n_frames)\n"
    "for frame in range(picture.n_frames):\n"
    "    picture.seek(frame)\n"
    "    picture.convert('RGB').save('frame-%d.png' % (frame + 1))\n";

TEST_F(MpoCommandsTest, PillowReadsABuiltFile) {
  const std::filesystem::path python = KF_PYTHON;
  // Pillow takes every frame to have the first one's size, as those of a stereo pair have.
  addJpeg("left.jpg", {.width = 80, .height = 56});
  addJpeg("right.jpg", {.width = 80, .height = 56, .progressive = true});
  static_cast<void>(build({"left.jpg", "right.jpg"}, {"--kind", "stereo"}));
  const ProcessResult theirs = runProcess(python, {"-c", tellFrames}, folder(), folder());
  ASSERT_EQ(theirs.exitCode, 0) << theirs.err;
  EXPECT_EQ(theirs.out, "MPO 2\n");
  const nlohmann::json images = info("out.mpo")["images"];
  EXPECT_TRUE(png("frame-1.png") == decodeJpeg(rangeOf("out.mpo", images[0])));
  EXPECT_TRUE(png("frame-2.png") == decodeJpeg(rangeOf("out.mpo", images[1])));
}
#endif

}  // namespace
}  // namespace fiohostTest

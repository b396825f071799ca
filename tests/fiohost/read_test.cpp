#include <cstdlib>

#include "examples/exif_block.h"
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ReadTest : public ProgramTest {
 protected:
  void mustRun(const std::vector<std::string>& arguments) {
    const ProcessResult result = run(arguments);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
  }
  [[nodiscard]] Pixels decoded(const std::string& name) const {
    return decodeJpeg(readBytes(file(name)));
  }
};

struct PixelCase {
  const char* name;
  JpegSpec spec;
};

class PixelTest : public ReadTest, public testing::WithParamInterface<PixelCase> {};

TEST_P(PixelTest, ThePngHoldsTheDecodedPixels) {
  addJpeg("in.jpg", GetParam().spec);
  mustRun({"read", "in.jpg", "-o", "out.png"});
  EXPECT_EQ(png("out.png"), decoded("in.jpg"));
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, PixelTest,
    testing::Values(PixelCase{"colour", {}}, PixelCase{"grey", {.components = 1}},
                    PixelCase{"progressive", {.width = 200, .height = 150, .progressive = true}},
                    PixelCase{"oddSize", {.width = 37, .height = 53}},
                    PixelCase{"onePixel", {.width = 1, .height = 1}},
                    PixelCase{"fullChroma", {.horizontalSampling = 1, .verticalSampling = 1}}),
    [](const auto& each) { return each.param.name; });

TEST_F(ReadTest, CmykBecomesRedGreenBlue) {
  addJpeg("in.jpg", {.components = 4});
  mustRun({"read", "in.jpg", "-o", "out.png"});
  const Pixels inks = decoded("in.jpg");  // stored inverted: 255 = no ink
  const Pixels written = png("out.png");
  ASSERT_EQ(written.channels, 3U);
  ASSERT_EQ(written.width, inks.width);
  for (unsigned y = 0; y < inks.height; ++y) {
    for (unsigned i = 0; i < inks.width * 3; ++i) {
      const double light = inks.at(i / 3, y, i % 3) * inks.at(i / 3, y, 3) / 255.0;
      ASSERT_NEAR(written.at(i / 3, y, i % 3), light, 0.51) << i << ", " << y;
    }
  }
}

TEST_F(ReadTest, WritesPpm) {
  addJpeg("in.jpg", {.width = 5, .height = 4});
  mustRun({"read", "in.jpg", "-o", "out.PPM"});
  const Bytes pixels = decoded("in.jpg").bytes;
  std::string expected = "P6\n5 4\n255\n";
  expected.append(pixels.begin(), pixels.end());
  const Bytes written = readBytes(file("out.PPM"));
  EXPECT_EQ(std::string(written.begin(), written.end()), expected);
}

TEST_F(ReadTest, WritesColourBmpFromTheTop) {
  addJpeg("in.jpg", {.width = 5, .height = 4});
  mustRun({"read", "in.jpg", "-o", "out.bmp"});
  const Bytes bmp = readBytes(file("out.bmp"));
  const Pixels pixels = decoded("in.jpg");
  ASSERT_EQ(bmp.size(), 54U + 16 * 4);
  EXPECT_THAT(Bytes(bmp.begin() + 18, bmp.begin() + 30),
              ElementsAre(5, 0, 0, 0, 0xFC, 0xFF, 0xFF, 0xFF, 1, 0, 24, 0));
  EXPECT_EQ(bmp[54 + 16 * 2 + 3 * 4], pixels.at(4, 2, 2));
  EXPECT_EQ(bmp[54 + 16 * 2 + 3 * 4 + 2], pixels.at(4, 2, 0));
}

TEST_F(ReadTest, WritesGreyBmpWithAPalette) {
  addJpeg("in.jpg", {.width = 5, .height = 4, .components = 1});
  mustRun({"read", "in.jpg", "-o", "out.bmp"});
  const Bytes bmp = readBytes(file("out.bmp"));
  ASSERT_EQ(bmp.size(), 54U + 1024 + 8 * 4);
  EXPECT_EQ(bmp[28], 8);
  EXPECT_THAT(Bytes(bmp.begin() + 54 + 4 * 200, bmp.begin() + 54 + 4 * 201),
              ElementsAre(200, 200, 200, 0));
  EXPECT_EQ(bmp[54 + 1024 + 8 + 3], decoded("in.jpg").at(3, 1, 0));
}

TEST_F(ReadTest, FitReducesToExactlyTheBox) {
  addJpeg("in.jpg", {.width = 640, .height = 480});
  const nlohmann::json result =
      runForJson({"read", "in.jpg", "-o", "out.png", "--fit", "100x100", "--json"});
  ASSERT_EQ(result.size(), 1U);
  EXPECT_EQ(result[0]["file"], "in.jpg");
  EXPECT_EQ(result[0]["output"], "out.png");
  EXPECT_EQ(result[0]["width"], 100);
  EXPECT_EQ(result[0]["height"], 75);
  EXPECT_EQ(result[0]["colour"], "colour");
  const Pixels reduced = png("out.png");
  EXPECT_EQ(reduced.width, 100U);
  EXPECT_EQ(reduced.height, 75U);
  const Pixels whole = decoded("in.jpg");
  for (unsigned y = 0; y < 75; ++y) {
    for (unsigned x = 0; x < 100; ++x) {
      ASSERT_NEAR(reduced.at(x, y, 1), whole.at(x * 64 / 10 + 3, y * 64 / 10 + 3, 1), 6);
    }
  }
}

TEST_F(ReadTest, FitToAnExactScaleOfTheCodec) {
  addJpeg("in.jpg", {.width = 640, .height = 480});
  mustRun({"read", "in.jpg", "-o", "out.png", "--fit", "320x240"});
  EXPECT_EQ(png("out.png").width, 320U);
  EXPECT_EQ(png("out.png").height, 240U);
}

TEST_F(ReadTest, FitAveragesWhatTheCodecCannotScale) {
  addJpeg("in.jpg", {.width = 64, .height = 48, .components = 1});
  mustRun({"read", "in.jpg", "-o", "out.png", "--fit", "1x1"});
  EXPECT_EQ(png("out.png").bytes.size(), 1U);
}

TEST_F(ReadTest, FitNeverEnlarges) {
  addJpeg("in.jpg", {.width = 64, .height = 48});
  mustRun({"read", "in.jpg", "-o", "out.png", "--fit", "1000x1000"});
  EXPECT_EQ(png("out.png"), decoded("in.jpg"));
}

TEST_F(ReadTest, FitOfAProgressivePicture) {
  addJpeg("in.jpg", {.width = 640, .height = 480, .progressive = true});
  mustRun({"read", "in.jpg", "-o", "out.png", "--fit", "90x90"});
  EXPECT_EQ(png("out.png").width, 90U);
  EXPECT_EQ(png("out.png").height, 68U);
}

TEST_F(ReadTest, WritesTheThumbnail) {
  const Bytes thumbnail = makeJpeg({.width = 32, .height = 24});
  addJpeg("in.jpg", {.exif = examples::exifBlock(64, 48, thumbnail)});
  mustRun({"read", "in.jpg", "-o", "out.png", "--thumbnail"});
  EXPECT_EQ(png("out.png"), decodeJpeg(thumbnail));
}

TEST_F(ReadTest, AGreyThumbnailStaysGrey) {
  const Bytes thumbnail = makeJpeg({.width = 32, .height = 24, .components = 1});
  addJpeg("in.jpg", {.exif = examples::exifBlock(64, 48, thumbnail)});
  mustRun({"read", "in.jpg", "-o", "out.png", "--thumbnail"});
  EXPECT_EQ(png("out.png"), decodeJpeg(thumbnail));
}

TEST_F(ReadTest, AFileWithoutThumbnailSaysSo) {
  addJpeg("in.jpg", {});
  const ProcessResult result = run({"read", "in.jpg", "-o", "out.png", "--thumbnail"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("in.jpg: the file has no EXIF thumbnail"));
  EXPECT_THAT(namesIn(folder()), ElementsAre("in.jpg"));
}

TEST_F(ReadTest, AFailedDecodingKeepsTheOldFileAndLeavesNothing) {
  writeBytes(file("in.jpg"), withoutSegments(makeJpeg({}), 0xDB));
  writeBytes(file("out.png"), {'o', 'l', 'd'});
  const ProcessResult result = run({"read", "in.jpg", "-o", "out.png"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("in.jpg: the picture cannot be decoded (error 4020); "));
  EXPECT_EQ(readText(file("out.png")), "old");
  EXPECT_THAT(namesIn(folder()), ElementsAre("in.jpg", "out.png"));
}

TEST_F(ReadTest, ReplacesAnOldFile) {
  addJpeg("in.jpg", {});
  writeBytes(file("out.png"), {'o', 'l', 'd'});
  mustRun({"read", "in.jpg", "-o", "out.png"});
  EXPECT_EQ(png("out.png"), decoded("in.jpg"));
  EXPECT_THAT(namesIn(folder()), ElementsAre("in.jpg", "out.png"));
}

TEST_F(ReadTest, AnOutputFolderThatIsMissingIsNamed) {
  addJpeg("in.jpg", {});
  const ProcessResult result = run({"read", "in.jpg", "-o", "nowhere/out.png"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("nowhere/out.png cannot be written"));
}

TEST_F(ReadTest, ATruncatedPictureIsDeliveredAsFarAsItGoes) {
  Bytes stream = makeJpeg({.width = 256, .height = 256});
  stream.resize(stream.size() * 3 / 4);
  writeBytes(file("in.jpg"), stream);
  mustRun({"read", "in.jpg", "-o", "out.png"});
  EXPECT_EQ(png("out.png").height, 256U);
}

}  // namespace
}  // namespace fiohostTest

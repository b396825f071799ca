#include "examples/exif_block.h"
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;

class InfoTest : public ProgramTest {
 protected:
  nlohmann::json infoOf(const JpegSpec& spec) {
    addJpeg("picture.jpg", spec);
    const nlohmann::json all = runForJson({"info", "--json", "picture.jpg"});
    EXPECT_EQ(all.size(), 1U);
    return all[0];
  }
};

TEST_F(InfoTest, TellsAColourPicture) {
  JpegSpec spec;
  spec.width = 640;
  spec.height = 480;
  spec.density = 300;
  const nlohmann::json info = infoOf(spec);
  EXPECT_EQ(info["file"], "picture.jpg");
  EXPECT_EQ(info["format"], "JPEG");
  EXPECT_EQ(info["width"], 640);
  EXPECT_EQ(info["height"], 480);
  EXPECT_DOUBLE_EQ(info["megapixels"], 0.3072);
  EXPECT_EQ(info["bitsPerPixel"], 24);
  EXPECT_EQ(info["components"], 3);
  EXPECT_EQ(info["colour"], "colour");
  EXPECT_EQ(info["resolution"]["horizontal"], 300);
  EXPECT_EQ(info["resolution"]["vertical"], 300);
  EXPECT_EQ(info["resolution"]["unit"], "inch");
  EXPECT_EQ(info["encoding"], "baseline");
  EXPECT_EQ(info["sampling"], "4:2:0");
  EXPECT_EQ(info["jfif"], true);
  EXPECT_EQ(info["adobe"], false);
  EXPECT_EQ(info["thumbnail"], nullptr);
  EXPECT_EQ(info["note"], nullptr);
  EXPECT_EQ(info["fileSize"], std::filesystem::file_size(file("picture.jpg")));
}

TEST_F(InfoTest, TellsProgressiveEncodingAndCentimetres) {
  JpegSpec spec;
  spec.progressive = true;
  spec.densityUnit = 2;
  const nlohmann::json info = infoOf(spec);
  EXPECT_EQ(info["encoding"], "progressive");
  EXPECT_EQ(info["resolution"]["unit"], "centimetre");
}

struct SamplingCase {
  unsigned horizontal;
  unsigned vertical;
  const char* name;
};

class SamplingTest : public InfoTest, public testing::WithParamInterface<SamplingCase> {};

TEST_P(SamplingTest, TellsTheChromaSampling) {
  JpegSpec spec;
  spec.horizontalSampling = GetParam().horizontal;
  spec.verticalSampling = GetParam().vertical;
  EXPECT_EQ(infoOf(spec)["sampling"], GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Layouts, SamplingTest,
                         testing::Values(SamplingCase{1, 1, "4:4:4"}, SamplingCase{2, 1, "4:2:2"},
                                         SamplingCase{2, 2, "4:2:0"}, SamplingCase{4, 1, "4:1:1"}));

TEST_F(InfoTest, TellsAGreyPicture) {
  JpegSpec spec;
  spec.components = 1;
  const nlohmann::json info = infoOf(spec);
  EXPECT_EQ(info["colour"], "grey");
  EXPECT_EQ(info["bitsPerPixel"], 8);
  EXPECT_EQ(info["sampling"], nullptr);
}

TEST_F(InfoTest, TellsACmykPictureWithItsAdobeMarker) {
  JpegSpec spec;
  spec.components = 4;
  const nlohmann::json info = infoOf(spec);
  EXPECT_EQ(info["colour"], "CMYK");
  EXPECT_EQ(info["bitsPerPixel"], 32);
  EXPECT_EQ(info["adobe"], true);
  EXPECT_EQ(info["jfif"], false);
}

TEST_F(InfoTest, TellsTheThumbnail) {
  JpegSpec small;
  small.width = 32;
  small.height = 24;
  const Bytes thumbnail = makeJpeg(small);
  JpegSpec spec;
  spec.exif = examples::exifBlock(64, 48, thumbnail);
  const nlohmann::json info = infoOf(spec);
  EXPECT_EQ(info["thumbnail"]["width"], 32);
  EXPECT_EQ(info["thumbnail"]["height"], 24);
  EXPECT_EQ(info["thumbnail"]["components"], 3);
  EXPECT_EQ(info["thumbnail"]["bytes"], thumbnail.size());
}

TEST_F(InfoTest, SaysItInWordsWithUnits) {
  JpegSpec spec;
  spec.width = 640;
  spec.height = 480;
  addJpeg("picture.jpg", spec);
  const ProcessResult result = run({"info", "picture.jpg"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("picture.jpg\n"));
  EXPECT_THAT(result.out, HasSubstr("640 x 480 pixels (0.31 megapixels)"));
  EXPECT_THAT(result.out, HasSubstr("24 per pixel, 8 per component"));
  EXPECT_THAT(result.out, HasSubstr("72 x 72 pixels per inch"));
  EXPECT_THAT(result.out, HasSubstr("baseline"));
  EXPECT_THAT(result.out, HasSubstr("4:2:0"));
}

TEST_F(InfoTest, ServesTheOthersWhenOneFileIsBad) {
  addJpeg("a.jpg", {});
  writeBytes(file("bad.jpg"), {'t', 'e', 'x', 't'});
  addJpeg("c.jpg", {});
  const ProcessResult result = run({"info", "a.jpg", "bad.jpg", "missing.jpg", "c.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.out, HasSubstr("a.jpg\n"));
  EXPECT_THAT(result.out, HasSubstr("c.jpg\n"));
  EXPECT_THAT(result.err, HasSubstr("bad.jpg: the header cannot be read (error 4019); "));
  EXPECT_THAT(result.err, HasSubstr("missing.jpg: there is no such file; check the name"));
}

TEST_F(InfoTest, JsonHasOneElementAFileInOrder) {
  addJpeg("a.jpg", {});
  writeBytes(file("bad.jpg"), {'t', 'e', 'x', 't'});
  const ProcessResult result = run({"info", "--json", "bad.jpg", "a.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  const nlohmann::json all = nlohmann::json::parse(result.out);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0]["file"], "bad.jpg");
  EXPECT_EQ(all[0]["error"]["code"], 4019);
  EXPECT_NE(all[0]["error"]["message"], "");
  EXPECT_NE(all[0]["error"]["advice"], "");
  EXPECT_EQ(all[1]["file"], "a.jpg");
  EXPECT_FALSE(all[1].contains("error"));
}

TEST_F(InfoTest, AFolderIsNoPicture) {
  std::filesystem::create_directory(file("folder.jpg"));
  const ProcessResult result = run({"info", "folder.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("folder.jpg: this is a folder"));
}

TEST_F(InfoTest, TwoComponentsAreNotServed) {
  addJpeg("two.jpg", {.components = 2});
  const ProcessResult result = run({"info", "two.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("two.jpg: the colour layout is not supported (error 4005)"));
}

}  // namespace
}  // namespace fiohostTest

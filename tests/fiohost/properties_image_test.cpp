// The metadata of one image of a multi-picture file.
#include "tests/fiohost/support/mpo_fixture.h"
#include "tests/support/scoped_variable.h"
#include "tests/support/tiff_builder.h"

namespace fiohostTest {
namespace {

using support::JpegBuilder;
using support::TiffBuilder;
using testing::HasSubstr;
using testing::StartsWith;

class PropertiesImageTest : public MpoProgramTest {
 protected:
  void SetUp() override {
    MpoProgramTest::SetUp();
    for (const char* name : {"left", "right"}) {
      TiffBuilder tiff;
      tiff.ifd0().text(0x010F, std::string("maker of the ") + name);
      writeBytes(file(std::string(name) + ".jpg"),
                 JpegBuilder().exif(tiff.build()).xmp(support::bytesOf(name)).build());
    }
    static_cast<void>(build({"left.jpg", "right.jpg"}, {"--kind", "stereo"}));
  }
  std::string makerOf(const nlohmann::json& picture) const {
    for (const auto& property : picture["properties"]) {
      if (property["name"] == "Camera make") return property["value"];
    }
    return "";
  }
  nlohmann::json properties(const std::string& number) const {
    return runForJson({"properties", "out.mpo", "--image", number, "--json"}).at(0);
  }
};

TEST_F(PropertiesImageTest, EachImageHasItsOwnFields) {
  EXPECT_EQ(makerOf(runForJson({"properties", "out.mpo", "--json"}).at(0)), "maker of the left");
  EXPECT_EQ(makerOf(properties("1")), "maker of the left");
  const nlohmann::json second = properties("2");
  EXPECT_EQ(makerOf(second), "maker of the right");
  EXPECT_EQ(second["file"], "out.mpo");
  EXPECT_EQ(second["image"], 2);
  const std::string words = run({"properties", "out.mpo", "--image", "2"}).out;
  EXPECT_THAT(words, StartsWith("out.mpo, image 2\n"));
  EXPECT_THAT(words, HasSubstr("maker of the right"));
}

TEST_F(PropertiesImageTest, BlocksOfAnImageAreExtracted) {
  const ProcessResult result =
      run({"properties", "out.mpo", "--image", "2", "--extract", "xmp", "-o", "block.xmp"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(readText(file("block.xmp")), "right");
  EXPECT_THAT(result.out, StartsWith("out.mpo, image 2 -> block.xmp"));
}

TEST_F(PropertiesImageTest, NoImageIsLeftInTheTemporaryFolder) {
  const std::filesystem::path temporary = file("temporary");
  std::filesystem::create_directory(temporary);
  const std::string place = platform::displayPath(temporary);
  {
    const test::ScopedVariable posix("TMPDIR", place.c_str());
    const test::ScopedVariable first("TMP", place.c_str());
    const test::ScopedVariable second("TEMP", place.c_str());
    EXPECT_EQ(makerOf(properties("2")), "maker of the right");
  }
  EXPECT_THAT(namesIn(temporary), testing::IsEmpty());
}

TEST_F(PropertiesImageTest, ImagesThatAreNotThereAreToldSo) {
  const ProcessResult third = run({"properties", "out.mpo", "--image", "3"});
  EXPECT_EQ(third.exitCode, 1);
  EXPECT_THAT(third.err, HasSubstr("there is no image 3; the file has 2"));
  const ProcessResult plain = run({"properties", "left.jpg", "--image", "1"});
  EXPECT_EQ(plain.exitCode, 1);
  EXPECT_THAT(plain.err, HasSubstr("this is no multi-picture file"));
  EXPECT_EQ(run({"properties", "out.mpo", "--image", "0"}).exitCode, 2);
  EXPECT_EQ(run({"properties", "out.mpo", "--image", "128"}).exitCode, 2);
  Bytes bytes = readBytes(file("out.mpo"));
  bytes.resize(bytes.size() - 50);
  writeBytes(file("cut.mpo"), bytes);
  EXPECT_THAT(run({"properties", "cut.mpo", "--image", "2"}).err,
              HasSubstr("its bytes do not lie inside the file"));
}

}  // namespace
}  // namespace fiohostTest

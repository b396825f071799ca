// The properties command: fields with group, name, value and origin; blocks taken out whole.
#include "tests/fiohost/support/program_fixture.h"
#include "tests/support/tiff_builder.h"

namespace fiohostTest {
namespace {

using support::JpegBuilder;
using support::TiffBuilder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using TiffOrder = support::ByteOrder;

support::Bytes tiffOf(TiffOrder order) {
  TiffBuilder tiff(order);
  tiff.ifd0().text(0x010F, "Maker").shorts(0x0112, {6});
  tiff.exif()
      .rationals(0x829A, {{1, 250}})
      .signedRationals(0x9204, {{0xFFFFFFFF, 3}})
      .shorts(0x8827, {100, 200})
      .undefined(0x9101, {1, 2, 3, 0})
      .undefined(0x9286, support::Bytes(100, 7));
  tiff.gps().text(1, "N").rationals(2, {{48, 1}, {30, 1}, {0, 1}});
  return tiff.build();
}

support::Bytes iptcOf(std::string_view title) {
  support::Bytes data = {0x1C, 2, 5, 0, static_cast<std::uint8_t>(title.size())};
  data = support::joined(data, support::bytesOf(title));
  if (data.size() % 2 != 0) data.push_back(0);
  const auto size = static_cast<std::uint8_t>(data.size());
  return support::joined({'8', 'B', 'I', 'M', 4, 4, 0, 0, 0, 0, 0, size}, data);
}

class PropertiesTest : public ProgramTest {
 protected:
  void add(const JpegBuilder& builder, const std::string& name = "picture.jpg") const {
    writeBytes(file(name), builder.build());
  }
  // The only field of a name.
  static nlohmann::json field(const nlohmann::json& picture, const std::string& name) {
    nlohmann::json found;
    for (const auto& property : picture["properties"]) {
      if (property["name"] != name) continue;
      EXPECT_TRUE(found.is_null()) << name << " twice";
      found = property;
    }
    return found;
  }
  nlohmann::json properties(std::vector<std::string> flags = {}) const {
    std::vector<std::string> arguments = {"properties", "--json", "picture.jpg"};
    arguments.insert(arguments.end(), flags.begin(), flags.end());
    return runForJson(arguments).at(0);
  }
  // What --extract writes.
  std::string extract(const std::string& name) const {
    const ProcessResult result =
        run({"properties", "picture.jpg", "--extract", name, "-o", "block.bin"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const auto bytes = readBytes(file("block.bin"));
    return {bytes.begin(), bytes.end()};
  }
};

TEST_F(PropertiesTest, ListsExifGpsAndIptcInBothByteOrders) {
  for (const TiffOrder order : {TiffOrder::little, TiffOrder::big}) {
    add(JpegBuilder().exif(tiffOf(order)).photoshop(iptcOf("A title")));
    const nlohmann::json picture = properties();
    EXPECT_EQ(picture["file"], "picture.jpg");
    EXPECT_EQ(picture["format"], "JPEG");
    const nlohmann::json maker = field(picture, "Camera make");
    EXPECT_EQ(maker["group"], "Image");
    EXPECT_EQ(maker["tag"], 0x010F);
    EXPECT_EQ(maker["type"], "ASCII");
    EXPECT_EQ(maker["value"], "Maker");
    EXPECT_EQ(maker["from"], "EXIF tag 0x010F, ASCII");
    EXPECT_EQ(field(picture, "Exposure time")["value"], "1/250 sec");
    EXPECT_EQ(field(picture, "Exposure bias")["value"], "-0.3 EV");
    EXPECT_EQ(field(picture, "Photographic sensitivity (ISO)")["value"], "100 200");
    EXPECT_EQ(field(picture, "User comment")["value"], "100 bytes");
    const nlohmann::json title = field(picture, "Object name");
    EXPECT_EQ(title["group"], "IPTC");
    EXPECT_EQ(title["value"], "A title");
    EXPECT_EQ(title["from"], "IPTC dataset 2:5");
    std::vector<std::string> gps;
    for (const auto& property : picture["properties"]) {
      if (property["group"] == "GPS") gps.push_back(property["value"]);
    }
    EXPECT_THAT(gps, ElementsAre("N", "48 30 0"));
  }
}

TEST_F(PropertiesTest, RawTellsFractionsAndEveryByte) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::big)));
  const nlohmann::json picture = properties({"--raw"});
  EXPECT_EQ(field(picture, "Exposure time")["value"], "1/250");
  EXPECT_EQ(field(picture, "Exposure time")["bytes"], "01000000fa000000");
  EXPECT_EQ(field(picture, "Exposure bias")["value"], "-1/3");
  EXPECT_EQ(field(picture, "Orientation")["bytes"], "0600");
  EXPECT_EQ(field(picture, "Orientation")["kind"], "number");
  EXPECT_EQ(field(picture, "User comment")["value"].get<std::string>().size(), 200U);
}

// Every kind of rule once; what no rule formats keeps the program's own words.
TEST_F(PropertiesTest, FormatsWellKnownValuesAsTheRulesSay) {
  TiffBuilder tiff;
  tiff.exif()
      .rationals(0x829D, {{28, 10}})
      .shorts(0x8822, {3})
      .undefined(0x9000, support::bytesOf("0220"))
      .text(0x9003, "2008:12:31 23:59:58")
      .undefined(0x9101, {1, 2, 3, 0})
      .shorts(0x9209, {16})
      .undefined(0x9286, support::bytesOf("Hello"))
      .shorts(0xA001, {2})
      .rationals(0xA215, {{5, 2}});
  tiff.gps().bytes(0, {2, 2, 0, 0}).rationals(2, {{48, 1}, {30, 1}, {0, 1}});
  add(JpegBuilder().exif(tiff.build()));
  const nlohmann::json picture = properties();
  const auto value = [&](const char* name) {
    return field(picture, name)["value"].get<std::string>();
  };
  EXPECT_EQ(value("F-number"), "F/2.8");
  EXPECT_EQ(value("Exposure program"), "Aperture priority");
  EXPECT_EQ(value("Exif version"), "2.2 ");
  EXPECT_THAT(value("Date and time taken"), HasSubstr(" 23:59:58"));
  EXPECT_THAT(value("Date and time taken"), Not(HasSubstr("2008:12:31")));
  EXPECT_EQ(value("Meaning of each component"), "Y Cb Cr  ");
  EXPECT_EQ(value("Flash"), "Flash did not fire");
  EXPECT_EQ(value("User comment"), "Hello");
  EXPECT_EQ(value("Colour space"), "2");
  EXPECT_EQ(value("Exposure index"), "2.5");
  EXPECT_EQ(value("GPS tag version"), "2,2,0,0");
  EXPECT_EQ(value("Latitude"), "48 30 0");
}

TEST_F(PropertiesTest, TheRecordVersionOfIptcIsANumber) {
  const support::Bytes version = {'8', 'B', 'I',  'M', 4, 4, 0, 0, 0, 0,
                                  0,   8,   0x1C, 2,   0, 0, 2, 0, 4, 0};
  add(JpegBuilder().photoshop(version));
  EXPECT_EQ(field(properties(), "Record version")["value"], "4.0");
}

TEST_F(PropertiesTest, TellsWordsWithoutJson) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)));
  const ProcessResult result = run({"properties", "picture.jpg"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("picture.jpg\n"));
  EXPECT_THAT(result.out, HasSubstr("Camera make"));
  EXPECT_THAT(result.out, HasSubstr("1/250 sec   [EXIF tag 0x829A, RATIONAL]\n"));
}

TEST_F(PropertiesTest, SaysThatAPictureHasNoMetadata) {
  add(JpegBuilder());
  EXPECT_TRUE(properties()["properties"].empty());
  EXPECT_THAT(run({"properties", "picture.jpg"}).out, HasSubstr("no metadata"));
}

TEST_F(PropertiesTest, XmpAndIccAreSummarised) {
  add(JpegBuilder().xmp(support::bytesOf("<packet/>")).icc(1, 1, support::bytesOf("profile")));
  const nlohmann::json picture = properties({"--raw"});
  unsigned summaries = 0;
  for (const auto& property : picture["properties"]) {
    EXPECT_FALSE(property.contains("bytes"));
    if (property["group"] != "XMP" && property["group"] != "ICC") continue;
    EXPECT_EQ(property["value"], property["group"] == "XMP" ? "9 bytes" : "7 bytes");
    ++summaries;
  }
  EXPECT_EQ(summaries, 2U);
}

TEST_F(PropertiesTest, ExtractsBlocksWhole) {
  const support::Bytes tiff = tiffOf(TiffOrder::big);
  const support::Bytes heap = {'I', 'I', 26, 0, 0, 0, 'H', 'E', 'A', 'P', 'J', 'P', 'G', 'M', 2, 0,
                               1,   0,   0,  0, 0, 0, 0,   0,   0,   0,   0,   0,   26,  0,   0, 0};
  add(JpegBuilder()
          .exif(tiff)
          .cameraHeap(heap)
          .xmp(support::bytesOf("<packet/>"))
          .icc(2, 2, support::bytesOf("second"))
          .icc(1, 2, support::bytesOf("first ")));
  EXPECT_EQ(extract("xmp"), "<packet/>");
  EXPECT_EQ(extract("icc"), "first second") << "by chunk number";
  EXPECT_EQ(extract("exif"), std::string(tiff.begin(), tiff.end()));
  EXPECT_EQ(extract("heap"), std::string(heap.begin(), heap.end()));
}

TEST_F(PropertiesTest, ExtractsTheThumbnail) {
  const support::Bytes thumbnail = JpegBuilder().size(16, 12).withoutJfif().build();
  TiffBuilder tiff;
  tiff.ifd0().text(0x010F, "Maker");
  tiff.thumbnail(thumbnail);
  add(JpegBuilder().exif(tiff.build()));
  EXPECT_EQ(extract("thumbnail"), std::string(thumbnail.begin(), thumbnail.end()));
}

TEST_F(PropertiesTest, ABlockThatIsNotThereIsAFailureAndLeavesNoFile) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)));
  for (const char* name : {"xmp", "icc", "thumbnail", "heap"}) {
    const ProcessResult result =
        run({"properties", "picture.jpg", "--extract", name, "-o", "block.bin"});
    EXPECT_EQ(result.exitCode, 1) << name;
    EXPECT_THAT(result.err, HasSubstr("has no " + std::string(name)));
    EXPECT_FALSE(std::filesystem::exists(file("block.bin")));
  }
}

TEST_F(PropertiesTest, ExtractingNeedsOneFileAKnownBlockAndAnOutput) {
  add(JpegBuilder());
  EXPECT_EQ(run({"properties", "picture.jpg", "--extract", "xmp"}).exitCode, 2);
  EXPECT_EQ(run({"properties", "picture.jpg", "-o", "x"}).exitCode, 2);
  EXPECT_EQ(run({"properties", "picture.jpg", "--extract", "all", "-o", "x"}).exitCode, 2);
  EXPECT_NE(
      run({"properties", "picture.jpg", "picture.jpg", "--extract", "xmp", "-o", "x"}).exitCode, 0);
}

}  // namespace
#ifndef _WIN32
TEST_F(PropertiesTest, TheNativeBuildSaysThatItHasNoWindows) {
  addJpeg("a.jpg", {});
  const ProcessResult result = run({"properties", "a.jpg", "--window"});
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, testing::HasSubstr("--window: this build of the plug-in has no windows; "
                                             "use the Windows build"));
  EXPECT_EQ(result.out, "");
}
#endif

}  // namespace fiohostTest

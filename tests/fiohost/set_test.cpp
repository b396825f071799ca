// The set command: EXIF, GPS and IPTC values by name.
#include <map>

#include "tests/fiohost/support/program_fixture.h"
#include "tests/support/tiff_builder.h"

namespace fiohostTest {
namespace {

using support::JpegBuilder;
using support::TiffBuilder;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using TiffOrder = support::ByteOrder;

support::Bytes tiffOf(TiffOrder order) {
  TiffBuilder tiff(order);
  tiff.ifd0().text(0x010F, "Maker").shorts(0x0112, {6});
  tiff.exif()
      .rationals(0x829A, {{1, 250}})
      .shorts(0x8827, {100, 200})
      .undefined(0x9000, support::bytesOf("0232"))
      .shorts(0xA002, {64})
      .longs(0xA003, {48});
  tiff.gps().bytes(0, {2, 2, 0, 0});
  return tiff.build();
}

support::Bytes datasetOf(std::uint8_t record, std::uint8_t number, std::string_view value) {
  return support::joined({0x1C, record, number, 0, static_cast<std::uint8_t>(value.size())},
                         support::bytesOf(value));
}

support::Bytes resourceOf(std::uint16_t id, support::Bytes data) {
  const auto size = static_cast<std::uint8_t>(data.size());
  if (data.size() % 2 != 0) data.push_back(0);
  return support::joined({'8', 'B', 'I', 'M', static_cast<std::uint8_t>(id >> 8),
                          static_cast<std::uint8_t>(id), 0, 0, 0, 0, 0, size},
                         data);
}

class SetTest : public ProgramTest {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
  }
  void add(const JpegBuilder& builder) const { writeBytes(file("in.jpg"), builder.build()); }
  [[nodiscard]] ProcessResult runSet(std::vector<std::string> changes) const {
    std::vector<std::string> arguments = {"set", "in.jpg", "-o", "out.jpg", "--force"};
    arguments.insert(arguments.end(), changes.begin(), changes.end());
    return run(arguments);
  }
  void set(const std::vector<std::string>& changes) const {
    const ProcessResult result = runSet(changes);
    EXPECT_EQ(result.exitCode, 0) << result.err;
  }
  // The values of a name, as they are stored.
  [[nodiscard]] std::vector<std::string> values(const std::string& name) const {
    std::vector<std::string> found;
    const nlohmann::json all = runForJson({"properties", "out.jpg", "--json", "--raw"});
    for (const auto& property : all.at(0)["properties"]) {
      if (property["name"] == name) found.push_back(property["value"]);
    }
    return found;
  }
  [[nodiscard]] std::string bytesOfField(const std::string& name) const {
    const nlohmann::json all = runForJson({"properties", "out.jpg", "--json", "--raw"});
    for (const auto& property : all.at(0)["properties"]) {
      if (property["name"] == name) return property["bytes"];
    }
    return "none";
  }
  void expectRefused(const std::string& change, const std::string& taken) const {
    const auto before = namesIn(folder());
    const ProcessResult result = run({"set", "in.jpg", change, "-o", "refused.jpg"});
    EXPECT_EQ(result.exitCode, 1) << change;
    EXPECT_THAT(result.err, AllOf(HasSubstr("in.jpg: "), HasSubstr(taken))) << change;
    EXPECT_EQ(namesIn(folder()), before) << change;
  }
};

TEST_F(SetTest, ValuesOfEveryFormAreSetFromBothByteOrders) {
  for (const TiffOrder order : {TiffOrder::little, TiffOrder::big}) {
    add(JpegBuilder().exif(tiffOf(order)));
    set({"Exposure time=1/500", "F-number=2.8", "Exposure bias=-0.5",
         "Photographic sensitivity (ISO)=400; 800 1600", "Exif version=0230",
         "Camera make=Another maker", "User comment=Said so", "Exposure program=3",
         "Valid image width=65", "Valid image height=70000",
         "Meaning of each component=01 02 03 00", "Latitude=48 30/1 0.25",
         "GPS tag version=2,3,0,0", "Altitude reference=1"});
    EXPECT_THAT(values("Exposure time"), ElementsAre("1/500"));
    EXPECT_THAT(values("F-number"), ElementsAre("14/5"));
    EXPECT_THAT(values("Exposure bias"), ElementsAre("-1/2"));
    EXPECT_THAT(values("Photographic sensitivity (ISO)"), ElementsAre("400 800 1600"));
    EXPECT_THAT(values("Exif version"), ElementsAre("0230"));
    EXPECT_THAT(values("Camera make"), ElementsAre("Another maker"));
    EXPECT_EQ(bytesOfField("User comment"), "41534349490000005361696420736f");
    EXPECT_THAT(values("Exposure program"), ElementsAre("3"));
    EXPECT_THAT(values("Valid image width"), ElementsAre("65"));
    EXPECT_THAT(values("Valid image height"), ElementsAre("70000"));
    EXPECT_THAT(values("Meaning of each component"), ElementsAre("01020300"));
    EXPECT_THAT(values("Latitude"), ElementsAre("48/1 30/1 1/4"));
    EXPECT_THAT(values("GPS tag version"), ElementsAre("2 3 0 0"));
    EXPECT_THAT(values("Altitude reference"), ElementsAre("1"));
  }
}

TEST_F(SetTest, OtherValuesStayAsTheyWere) {
  for (const TiffOrder order : {TiffOrder::little, TiffOrder::big}) {
    add(JpegBuilder().exif(tiffOf(order)));
    set({"Camera model=A model"});
    EXPECT_THAT(values("Camera make"), ElementsAre("Maker"));
    EXPECT_THAT(values("Orientation"), ElementsAre("6"));
    EXPECT_THAT(values("Exposure time"), ElementsAre("1/250"));
    EXPECT_THAT(values("Photographic sensitivity (ISO)"), ElementsAre("100 200"));
    EXPECT_THAT(values("Exif version"), ElementsAre("0232"));
    EXPECT_THAT(values("GPS tag version"), ElementsAre("2 2 0 0"));
  }
}

TEST_F(SetTest, TagsHaveLabelsStandardNamesAndNumbersInAnyCase) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)));
  for (const char* name : {"f-NUMBER", "FNumber", "fnumber", "0x829D", "0x829d", "EXIF:0x829D"}) {
    set({std::string(name) + "=8"});
    EXPECT_THAT(values("F-number"), ElementsAre("8/1")) << name;
  }
  for (const char* name : {"GPS:0x1", "GPSLatitudeRef", "North or south latitude"}) {
    set({std::string(name) + "=S"});
    EXPECT_THAT(values("North or south latitude"), ElementsAre("S")) << name;
  }
  for (const char* name : {"2:5", "IPTC:2:5", "ObjectName", "object name"}) {
    set({std::string(name) + "=A title"});
    EXPECT_THAT(values("Object name"), ElementsAre("A title")) << name;
  }
}

TEST_F(SetTest, AnUnknownNameIsToldWithNearOnes) {
  add(JpegBuilder());
  expectRefused("F-nubmer=8", "did you mean \"F-number\"");
  expectRefused("0x8769=8", "there is no tag \"0x8769\"");
  expectRefused("XMP packet=8", "there is no tag");
  expectRefused("Country=AUT", "say one of \"CountryCode\", \"CountryName\"");
}

TEST_F(SetTest, AValueOfTheWrongFormIsRefusedWithTheRightOne) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)));
  const std::string fraction = "such as 1/250 or 0.004";
  for (const char* text :
       {"", "x", "1/", "/2", "1/2/3", "-1/2", "4294967296/1", "1 2", "1.", "1e3", "1.0000000001"}) {
    expectRefused(std::string("Exposure time=") + text, fraction);
  }
  for (const char* text : {"65536", "-1", "1 2", "1.5", "0x1", ""}) {
    expectRefused(std::string("Exposure program=") + text, "a whole number from 0 to 65535");
  }
  expectRefused("Latitude=48 30", "3 numbers");
  expectRefused("Exposure bias=2147483648", "perhaps with a minus sign");
  expectRefused("Altitude reference=256", "from 0 to 255");
  expectRefused("North or south latitude=X", "N (north) or S (south)");
  expectRefused("North or south latitude=NS", "N (north) or S (south)");
  expectRefused("Date and time taken=2010-12-31 23:59:59", "2010:12:31 23:59:59");
  expectRefused("GPS date=2010:12", "2010:12:31");
  expectRefused("Exif version=2.2", "four digits");
  expectRefused("Unique image ID=xyz", "32 hexadecimal digits");
  expectRefused("Meaning of each component=01 02 03", "4 bytes");
  expectRefused("Meaning of each component=0102030", "4 bytes");
  expectRefused("Related audio file=thirteen char", "at most 12 characters");
  expectRefused("Date created=2010", "20101231");
  expectRefused("Object name=", "1 to 32767 bytes");
}

TEST_F(SetTest, OneWrongValueLeavesEverythingUnwritten) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)));
  const ProcessResult result = run({"set", "in.jpg", "FNumber=8", "ExposureTime=x", "-o", "o.jpg"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("\"Exposure time\" cannot be set to \"x\""));
  EXPECT_FALSE(std::filesystem::exists(file("o.jpg")));
}

TEST_F(SetTest, APictureWithoutMetadataGetsThem) {
  add(JpegBuilder());
  set({"Artist=A. Nother", "FNumber=8", "GPSLatitudeRef=N", "Keywords=one"});
  EXPECT_THAT(values("Artist"), ElementsAre("A. Nother"));
  EXPECT_THAT(values("F-number"), ElementsAre("8/1"));
  EXPECT_THAT(values("North or south latitude"), ElementsAre("N"));
  EXPECT_THAT(values("Keywords"), ElementsAre("one"));
}

TEST_F(SetTest, EntriesRiseByTheirTags) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::big)));
  set({"Copyright=c", "Image description=d", "FNumber=8", "GPSDateStamp=2010:12:31",
       "GPSLatitudeRef=N"});
  std::map<std::string, std::vector<unsigned>> tags;
  const nlohmann::json all = runForJson({"properties", "out.jpg", "--json"});
  for (const auto& property : all.at(0)["properties"]) {
    if (property["tag"].is_number()) tags[property["group"]].push_back(property["tag"]);
  }
  EXPECT_THAT(tags["Image"], ElementsAre(0x010E, 0x010F, 0x0112, 0x8298));
  EXPECT_THAT(tags["EXIF"], ElementsAre(0x829A, 0x829D, 0x8827, 0x9000, 0xA002, 0xA003));
  EXPECT_THAT(tags["GPS"], ElementsAre(0, 1, 0x1D));
}

TEST_F(SetTest, OtherSegmentsAreKeptOnce) {
  const support::Bytes title = resourceOf(1028, datasetOf(2, 5, "A title"));
  add(JpegBuilder()
          .exif(tiffOf(TiffOrder::little))
          .xmp(support::bytesOf("<x/>"))
          .icc(1, 1, support::bytesOf("profile"))
          .photoshop(title)
          .app(5, support::bytesOf("five")));
  set({"FNumber=8"});
  std::vector<AppSegment> expected = appSegments(readBytes(file("in.jpg")));
  std::vector<AppSegment> saved = appSegments(readBytes(file("out.jpg")));
  const auto isExif = [](const AppSegment& segment) { return segment.second.starts_with("Exif"); };
  EXPECT_EQ(std::erase_if(saved, isExif), 1U);
  std::erase_if(expected, isExif);
  EXPECT_EQ(saved, expected);
  EXPECT_EQ(saved.size(), 4U);
  EXPECT_THAT(values("Object name"), ElementsAre("A title")) << "not in the EXIF segment too";
}

TEST_F(SetTest, DatasetsAreSetInThePhotoshopSegmentThatHasThem) {
  const support::Bytes before = resourceOf(1036, support::bytesOf("odd"));
  const support::Bytes behind = resourceOf(1060, support::bytesOf("behind"));
  const support::Bytes charset = datasetOf(1, 90, "\x1B%G");
  const auto photoshop = [&](const support::Bytes& datasets) {
    return support::joined(support::joined(before, resourceOf(1028, datasets)), behind);
  };
  const support::Bytes exif = tiffOf(TiffOrder::little);
  const auto join = [](std::vector<support::Bytes> parts) {
    support::Bytes all;
    for (const support::Bytes& part : parts) all = support::joined(all, part);
    return all;
  };
  add(JpegBuilder().exif(exif).photoshop(photoshop(
      join({charset, datasetOf(2, 5, "old"), datasetOf(2, 25, "k1"), datasetOf(2, 25, "k2"),
            datasetOf(2, 200, "unknown"), datasetOf(3, 1, "r3")}))));
  set({"Object name=A new title", "Keywords=a", "Keywords=b", "Keywords=c", "City=Wien"});
  const support::Bytes expected =
      JpegBuilder()
          .exif(exif)
          .photoshop(photoshop(
              join({charset, datasetOf(2, 5, "A new title"), datasetOf(2, 25, "a"),
                    datasetOf(2, 25, "b"), datasetOf(2, 25, "c"), datasetOf(2, 90, "Wien"),
                    datasetOf(2, 200, "unknown"), datasetOf(3, 1, "r3")})))
          .build();
  EXPECT_EQ(appSegments(readBytes(file("out.jpg"))), appSegments(expected))
      << "the EXIF segment has no need to change";
  EXPECT_THAT(values("Keywords"), ElementsAre("a", "b", "c"));
}

TEST_F(SetTest, OnlyDatasetsThatMayRepeatAreSetTwice) {
  add(JpegBuilder());
  set({"Keywords=a", "Keywords=b", "By-line=x", "By-line=y"});
  EXPECT_THAT(values("Keywords"), ElementsAre("a", "b"));
  EXPECT_THAT(values("By-line"), ElementsAre("x", "y"));
  for (const char* name : {"Object name", "FNumber"}) {
    const ProcessResult result = runSet({std::string(name) + "=1", std::string(name) + "=2"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("is set twice"));
  }
}

TEST_F(SetTest, TheThumbnailIsMadeFromThePicture) {
  JpegSpec spec;
  spec.width = 640;
  spec.height = 320;
  for (const unsigned components : {1U, 3U, 4U}) {
    spec.components = components;
    addJpeg("in.jpg", spec);
    set({"FNumber=8"});
    EXPECT_EQ(run({"read", "out.jpg", "--thumbnail", "-o", "thumbnail.png"}).exitCode, 0);
    EXPECT_EQ(run({"read", "in.jpg", "--fit", "160x160", "-o", "picture.png"}).exitCode, 0);
    const Pixels thumbnail = png("thumbnail.png");
    const Pixels picture = png("picture.png");
    EXPECT_EQ(thumbnail.width, 160U);
    EXPECT_EQ(thumbnail.height, 80U);
    ASSERT_EQ(thumbnail.bytes.size(), picture.bytes.size());
    double difference = 0;
    for (std::size_t i = 0; i < picture.bytes.size(); ++i) {
      difference += std::abs(int{thumbnail.bytes[i]} - int{picture.bytes[i]});
    }
    EXPECT_LT(difference / static_cast<double>(picture.bytes.size()), 8.0) << components;
  }
}

TEST_F(SetTest, WhatOneSegmentCannotHoldIsRefused) {
  const support::Bytes note(60000, 7);
  TiffBuilder tiff;
  tiff.exif().undefined(0x927C, note);
  add(JpegBuilder().exif(tiff.build()));
  const std::string text(20000, 'x');
  expectRefused("Image description=" + text, "did not take the new value of \"Image description\"");
}

TEST_F(SetTest, AnOutputIsReplacedOnlyByForceAndMayBeTheInput) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)));
  const auto before = readBytes(file("in.jpg"));
  const std::vector<std::string> arguments = {"set", "in.jpg", "FNumber=8", "-o", "in.jpg"};
  EXPECT_EQ(run(arguments).exitCode, 1);
  EXPECT_EQ(readBytes(file("in.jpg")), before);
  std::vector<std::string> forced = arguments;
  forced.emplace_back("--force");
  EXPECT_EQ(run(forced).exitCode, 0);
  EXPECT_THAT(run({"properties", "in.jpg"}).out, HasSubstr("F/8.0"));
}

TEST_F(SetTest, TellsWhatBecameOfEverySegment) {
  add(JpegBuilder().exif(tiffOf(TiffOrder::little)).app(5, support::bytesOf("five")));
  const nlohmann::json result =
      runForJson({"set", "in.jpg", "FNumber=8", "-o", "out.jpg", "--json"}).at(0);
  EXPECT_EQ(result["output"], "out.jpg");
  std::map<std::string, std::string> results;
  for (const auto& segment : result["segments"]) results[segment["segment"]] = segment["result"];
  EXPECT_EQ(results["EXIF"], "changed");
  EXPECT_EQ(results["APP5"], "kept");
}

TEST_F(SetTest, WrongOptionsAreUsageErrors) {
  add(JpegBuilder());
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"FNumber=8"},
                                                {"-o", "out.jpg"},
                                                {"FNumber", "-o", "out.jpg"},
                                                {"=8", "-o", "out.jpg"}}) {
    std::vector<std::string> arguments = {"set", "in.jpg"};
    arguments.insert(arguments.end(), wrong.begin(), wrong.end());
    EXPECT_EQ(run(arguments).exitCode, 2);
  }
}

}  // namespace
}  // namespace fiohostTest

// Saving pictures anew: what is kept, with which options, and that nothing is lost on the way.
#include "platform/system.h"
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;

class ConvertTest : public ProgramTest {
 protected:
  void SetUp() override {
    // Settings of the test's own, so that the user's play no part.
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
  }

  nlohmann::json convert(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "convert");
    arguments.emplace_back("--json");
    return runForJson(arguments).at(0);
  }
  [[nodiscard]] nlohmann::json info(const std::string& name) const {
    return runForJson({"info", "--json", name}).at(0);
  }
  [[nodiscard]] std::vector<AppSegment> segments(const std::string& name) const {
    return appSegments(readBytes(file(name)));
  }
  // The file with segments put right behind its start.
  void addSegments(const std::string& name, const std::vector<AppSegment>& added) const {
    Bytes bytes = readBytes(file(name));
    Bytes heads;
    for (const auto& [marker, payload] : added) {
      const std::size_t length = payload.size() + 2;
      heads.insert(heads.end(),
                   {0xFF, static_cast<std::uint8_t>(marker), static_cast<std::uint8_t>(length >> 8),
                    static_cast<std::uint8_t>(length)});
      heads.insert(heads.end(), payload.begin(), payload.end());
    }
    bytes.insert(bytes.begin() + 2, heads.begin(), heads.end());
    writeBytes(file(name), bytes);
  }
};

TEST_F(ConvertTest, EverySegmentIsKeptByteForByteAndInOrder) {
  addJpeg("in.jpg", {});
  std::vector<AppSegment> added = {
      {0xE1, std::string("Exif\0\0II*\0\10\0\0\0\0\0\0\0\0\0", 20)},
      {0xE1, std::string("http://ns.adobe.com/xap/1.0/\0<x/>", 33)},
      {0xE2, std::string("ICC_PROFILE\0\1\1profile", 21)},
      {0xE2, std::string("FPXR\0abc", 8)},
      {0xE0, std::string("II\x1A\0\0\0HEAPJPGM\1\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 32)},
      {0xED, std::string("Photoshop 3.0\0", 14)},
      {0xE7, std::string(65533, 'x')},
      {0xEF, "y"}};
  addSegments("in.jpg", added);
  const nlohmann::json result = convert({"in.jpg", "-o", "out.jpg"});
  EXPECT_EQ(segments("out.jpg"), added);
  for (const auto& segment : result["segments"]) {
    if (segment["segment"] == "JFIF") continue;
    EXPECT_EQ(segment["result"], "kept") << segment.dump();
  }
  convert({"out.jpg", "-o", "again.jpg"});
  EXPECT_EQ(segments("again.jpg"), added);
}

TEST_F(ConvertTest, MetadataIsDroppedWhenAskedAndSaid) {
  addJpeg("in.jpg", {});
  addSegments("in.jpg", {{0xE5, "five"}});
  const nlohmann::json result = convert({"in.jpg", "-o", "out.jpg", "--drop-metadata"});
  EXPECT_TRUE(segments("out.jpg").empty());
  bool said = false;
  for (const auto& segment : result["segments"]) {
    said = said || (segment["segment"] == "APP5" && segment["result"] == "dropped");
  }
  EXPECT_TRUE(said) << result.dump();
}

TEST_F(ConvertTest, OptionsReachTheFile) {
  addJpeg("in.jpg", {});
  const std::pair<const char*, const char*> samplings[] = {
      {"444", "4:4:4"}, {"422", "4:2:2"}, {"420", "4:2:0"}, {"411", "4:1:1"}};
  for (const auto& [option, name] : samplings) {
    convert({"in.jpg", "-o", "out.jpg", "--force", "--sampling", option});
    EXPECT_EQ(info("out.jpg")["sampling"], name);
  }
  convert({"in.jpg", "-o", "out.jpg", "--force", "--progressive", "--no-jfif"});
  EXPECT_EQ(info("out.jpg")["encoding"], "progressive");
  EXPECT_EQ(info("out.jpg")["jfif"], false);
}

TEST_F(ConvertTest, AHigherQualityMakesALargerFile) {
  addJpeg("in.jpg", {});
  const auto size = [&](const char* quality) {
    return convert({"in.jpg", "-o", "out.jpg", "--force", "--quality", quality})["bytes"]
        .get<int>();
  };
  EXPECT_LT(size("10"), size("60"));
  EXPECT_LT(size("60"), size("95"));
}

TEST_F(ConvertTest, SettingsAreTheDefaultAndTheSourcesOwnOnRequest) {
  addJpeg("in.jpg", {.progressive = true, .horizontalSampling = 1, .verticalSampling = 1});
  EXPECT_EQ(run({"settings", "Sample=411", "Mode=baseline"}).exitCode, 0);
  convert({"in.jpg", "-o", "set.jpg"});
  EXPECT_EQ(info("set.jpg")["sampling"], "4:1:1");
  EXPECT_EQ(info("set.jpg")["encoding"], "baseline");
  convert({"in.jpg", "-o", "own.jpg", "--keep-settings"});
  EXPECT_EQ(info("own.jpg")["sampling"], "4:4:4");
  EXPECT_EQ(info("own.jpg")["encoding"], "progressive");
}

TEST_F(ConvertTest, PixelsSurviveAtHighQuality) {
  addJpeg("in.jpg", {.horizontalSampling = 1, .verticalSampling = 1});
  convert({"in.jpg", "-o", "out.jpg", "--quality", "95", "--sampling", "444"});
  const Pixels before = decodeJpeg(readBytes(file("in.jpg")));
  const Pixels after = decodeJpeg(readBytes(file("out.jpg")));
  ASSERT_EQ(before.bytes.size(), after.bytes.size());
  double difference = 0;
  for (std::size_t at = 0; at < before.bytes.size(); ++at) {
    difference += std::abs(int{before.bytes[at]} - int{after.bytes[at]});
  }
  EXPECT_LT(difference / static_cast<double>(before.bytes.size()), 2.0);
}

TEST_F(ConvertTest, GreyCmykAndProgressivePicturesStayWhatTheyAre) {
  addJpeg("grey.jpg", {.components = 1});
  addJpeg("cmyk.jpg", {.components = 4});
  addJpeg("passes.jpg", {.progressive = true});
  for (const char* name : {"grey.jpg", "cmyk.jpg", "passes.jpg"}) {
    convert({name, "-o", "out.jpg", "--force", "--quality", "95"});
    EXPECT_EQ(info("out.jpg")["components"], info(name)["components"]) << name;
    EXPECT_EQ(info("out.jpg")["width"], info(name)["width"]) << name;
  }
}

TEST_F(ConvertTest, AnExistingOutputIsReplacedOnlyWhenForced) {
  addJpeg("in.jpg", {});
  writeBytes(file("out.jpg"), {1, 2, 3});
  const ProcessResult refused = run({"convert", "in.jpg", "-o", "out.jpg"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("--force"));
  EXPECT_EQ(readBytes(file("out.jpg")), (Bytes{1, 2, 3}));
  convert({"in.jpg", "-o", "out.jpg", "--force"});
  EXPECT_GT(readBytes(file("out.jpg")).size(), 3U);
}

TEST_F(ConvertTest, AFileMayReplaceItself) {
  addJpeg("in.jpg", {});
  addSegments("in.jpg", {{0xE5, "five"}});
  convert({"in.jpg", "-o", "in.jpg", "--force"});
  EXPECT_EQ(segments("in.jpg"), (std::vector<AppSegment>{{0xE5, "five"}}));
  EXPECT_EQ(namesIn(folder()), (std::vector<std::string>{"in.jpg"}));
}

TEST_F(ConvertTest, AFailureLeavesTheOldFileAndNothingElse) {
  addJpeg("in.jpg", {});
  Bytes broken = readBytes(file("in.jpg"));
  broken.resize(40);
  writeBytes(file("broken.jpg"), broken);
  writeBytes(file("out.jpg"), {1, 2, 3});
  const ProcessResult result = run({"convert", "broken.jpg", "-o", "out.jpg", "--force"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("broken.jpg"));
  EXPECT_EQ(readBytes(file("out.jpg")), (Bytes{1, 2, 3}));
  EXPECT_EQ(namesIn(folder()), (std::vector<std::string>{"broken.jpg", "in.jpg", "out.jpg"}));
}

TEST_F(ConvertTest, SeveralFilesGoToAFolderAndABadOneDoesNotStopTheOthers) {
  addJpeg("a.jpg", {});
  addJpeg("b.jpg", {});
  std::filesystem::create_directory(file("out"));
  const ProcessResult result = run({"convert", "a.jpg", "missing.jpg", "b.jpg", "-o", "out"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("missing.jpg"));
  EXPECT_EQ(namesIn(file("out")), (std::vector<std::string>{"a.jpg", "b.jpg"}));
  EXPECT_EQ(run({"convert", "a.jpg", "b.jpg", "-o", "c.jpg"}).exitCode, 1);
}

TEST_F(ConvertTest, WrongOptionsAreUsageErrors) {
  addJpeg("in.jpg", {});
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{"--quality", "0"}, {"--quality", "101"}, {"--sampling", "410"}}) {
    std::vector<std::string> arguments = {"convert", "in.jpg", "-o", "out.jpg"};
    arguments.insert(arguments.end(), wrong.begin(), wrong.end());
    EXPECT_EQ(run(arguments).exitCode, 2);
  }
  EXPECT_EQ(run({"convert", "in.jpg"}).exitCode, 2);
}

TEST_F(ConvertTest, SettingsAreShownAndChanged) {
  const nlohmann::json before = runForJson({"settings", "--json"});
  EXPECT_EQ(before["Mode"], 0);
  EXPECT_EQ(before["Sample"], 1);
  EXPECT_EQ(before["Quality"], 85);
  EXPECT_EQ(before["JFIF"], 1);
  EXPECT_EQ(run({"settings", "quality=70", "JFIF=no", "Mode=progressive"}).exitCode, 0);
  const nlohmann::json after = runForJson({"settings", "--json"});
  EXPECT_EQ(after["Mode"], 1);
  EXPECT_EQ(after["Quality"], 70);
  EXPECT_EQ(after["JFIF"], 0);
  for (const char* wrong : {"Quality=101", "Colour=1", "Mode", "Sample=410"}) {
    EXPECT_EQ(run({"settings", wrong}).exitCode, 2) << wrong;
  }
}

}  // namespace
}  // namespace fiohostTest

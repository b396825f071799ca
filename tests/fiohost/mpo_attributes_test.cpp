// The attributes of built multi-picture files (CIPA DC-007, 5.2.4), as options set them.
#include <algorithm>
#include <iostream>
#include <sstream>

#include "tests/fiohost/support/mpo_fixture.h"

namespace fiohostTest {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class MpoAttributesTest : public MpoProgramTest {
 protected:
  void SetUp() override {
    MpoProgramTest::SetUp();
    static_cast<void>(addPictures(3));
  }
  json images(const std::vector<std::string>& options, unsigned count = 2) const {
    static_cast<void>(build(addPictures(count), options));
    return info("out.mpo")["images"];
  }
  static json fraction(int numerator, int denominator, double value) {
    return {{"numerator", numerator}, {"denominator", denominator}, {"value", value}};
  }
  // The line on the standard error of a build that must be refused; no file is made.
  std::string refusal(const std::vector<std::string>& options, int exitCode) const {
    std::vector<std::string> arguments = {"mpo",         "build",   "-o",
                                          "refused.mpo", "in1.jpg", "in2.jpg"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProcessResult result = run(arguments);
    EXPECT_EQ(result.exitCode, exitCode) << testing::PrintToString(options);
    EXPECT_FALSE(std::filesystem::exists(file("refused.mpo")));
    return result.err;
  }
};

const std::vector<std::string> everyViewpointAttribute = {
    "--kind",     "multi-angle",   "--base-viewpoint",
    "2",          "--convergence", "-3/2,5/4",
    "--baseline", "0/1,77/1000",   "--vertical-divergence",
    "-1/8,1/8",   "--axis-x",      "-1/2,3/2",
    "--axis-y",   "7/4",           "--axis-z",
    "0/1,-9/2",   "--yaw",         "1/10,2/10",
    "--pitch",    "-11/2,11/2"};

TEST_F(MpoAttributesTest, EachImageGetsItsOwnValues) {
  const json list = images(everyViewpointAttribute);
  EXPECT_EQ(list[0]["attributes"], json({{"baseViewpoint", 2},
                                         {"convergenceAngle", fraction(-3, 2, -1.5)},
                                         {"baselineLength", fraction(0, 1, 0)},
                                         {"verticalDivergence", fraction(-1, 8, -0.125)},
                                         {"axisDistanceX", fraction(-1, 2, -0.5)},
                                         {"axisDistanceY", fraction(7, 4, 1.75)},
                                         {"axisDistanceZ", fraction(0, 1, 0)},
                                         {"yawAngle", fraction(1, 10, 0.1)},
                                         {"pitchAngle", fraction(-11, 2, -5.5)}}));
  EXPECT_EQ(list[1]["attributes"], json({{"baseViewpoint", 2},
                                         {"convergenceAngle", fraction(5, 4, 1.25)},
                                         {"baselineLength", fraction(77, 1000, 0.077)},
                                         {"verticalDivergence", fraction(1, 8, 0.125)},
                                         {"axisDistanceX", fraction(3, 2, 1.5)},
                                         {"axisDistanceY", fraction(7, 4, 1.75)},
                                         {"axisDistanceZ", fraction(-9, 2, -4.5)},
                                         {"yawAngle", fraction(2, 10, 0.2)},
                                         {"pitchAngle", fraction(11, 2, 5.5)}}));
  const std::string words = run({"mpo", "info", "out.mpo"}).out;
  EXPECT_THAT(words, HasSubstr("Axis distance Z       -9/2 (-4.5)\n"));
  EXPECT_THAT(words, HasSubstr("Base viewpoint        2\n"));
}

TEST_F(MpoAttributesTest, PanoramasHaveAnOrientationAndOverlaps) {
  const json list =
      images({"--kind", "panorama", "--pan-orientation", "0x01030201", "--horizontal-overlap",
              "0/1,25/2", "--vertical-overlap", "100/1,3/1", "--axis-x", "1/2"},
             2);
  EXPECT_EQ(list[1]["attributes"], json({{"panOrientation", 0x01030201},
                                         {"panOverlapHorizontal", fraction(25, 2, 12.5)},
                                         {"panOverlapVertical", fraction(3, 1, 3)},
                                         {"axisDistanceX", fraction(1, 2, 0.5)}}));
  EXPECT_EQ(list[0]["attributes"]["panOverlapVertical"], fraction(100, 1, 100));
}

// Kept by the plug-in: the roll angle goes out under the pitch angle's tag.
TEST_F(MpoAttributesTest, ARollAngleComesBackAsAPitchAngle) {
  const json attributes =
      images({"--kind", "multi-angle", "--roll", "-45/2,45/2"})[1]["attributes"];
  EXPECT_EQ(attributes["pitchAngle"], fraction(45, 2, 22.5));
  EXPECT_FALSE(attributes.contains("rollAngle"));
  EXPECT_THAT(refusal({"--kind", "stereo", "--roll", "1/2", "--pitch", "1/2"}, 1),
              HasSubstr("--roll and --pitch exclude each other"));
}

TEST_F(MpoAttributesTest, OneValueOfAViewpointIsTheStepToTheNext) {
  const json list =
      images({"--kind", "stereo", "--baseline", "77/1000", "--convergence", "-90/1"}, 3);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(list[i]["attributes"]["baselineLength"]["numerator"], 77 * i);
    EXPECT_EQ(list[i]["attributes"]["convergenceAngle"]["numerator"], -90 * static_cast<int>(i));
    EXPECT_EQ(list[i]["attributes"]["baseViewpoint"], 1);
  }
  const ProcessResult tooMuch = run({"mpo", "build", "-o", "refused.mpo", "in1.jpg", "in2.jpg",
                                     "in3.jpg", "--kind", "stereo", "--convergence", "91/1"});
  EXPECT_EQ(tooMuch.exitCode, 1);
  EXPECT_THAT(tooMuch.err, HasSubstr("--convergence is too much for image 3"));
}

TEST_F(MpoAttributesTest, ValuesThatNobodyKnowsAreRecordedAsSuch) {
  const json list = images({"--kind", "stereo", "--yaw", "unknown,1/2", "--base-viewpoint",
                            "unknown", "--baseline", "unknown"});
  const json unknown = {{"numerator", -1}, {"denominator", -1}, {"value", nullptr}};
  EXPECT_EQ(list[0]["attributes"]["yawAngle"], unknown);
  EXPECT_EQ(list[1]["attributes"]["yawAngle"], fraction(1, 2, 0.5));
  EXPECT_EQ(list[1]["attributes"]["baseViewpoint"], 0xFFFFFFFFU);
  EXPECT_EQ(list[1]["attributes"]["baselineLength"]["value"], nullptr);
}

TEST_F(MpoAttributesTest, UniqueIdsNameEveryImage) {
  const std::string first = "0123456789abcdef0123456789ABCDEF";
  const std::string second = "fedcba9876543210fedcba9876543210";
  for (const char* kind : {"panorama", "large-thumbnail"}) {
    const json list = images({"--kind", kind, "--unique-ids", first + "," + second});
    EXPECT_EQ(list[0]["uniqueId"], first);
    EXPECT_EQ(list[1]["uniqueId"], second);
  }
  EXPECT_THAT(run({"mpo", "info", "out.mpo"}).out, HasSubstr("Unique ID             " + second));
  EXPECT_EQ(images({"--kind", "panorama"})[0]["uniqueId"], nullptr);
  static_cast<void>(refusal({"--kind", "panorama", "--unique-ids", first + "," + first + "0"}, 2));
  EXPECT_THAT(refusal({"--kind", "panorama", "--unique-ids", first}, 1),
              HasSubstr("2 pictures and 1 unique IDs"));
}

TEST_F(MpoAttributesTest, ValuesOutOfRangeAreUsageErrors) {
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--yaw", "361/2"},
                                                {"--yaw", "-361/2"},
                                                {"--pitch", "1/0"},
                                                {"--roll", "1/-1"},
                                                {"--axis-x", "1"},
                                                {"--axis-y", "2147483648/1"},
                                                {"--axis-z", "1/2,"},
                                                {"--base-viewpoint", "0"},
                                                {"--base-viewpoint", "4294967296"},
                                                {"--baseline", "-1/2"},
                                                {"--vertical-divergence", "181/1"}}) {
    std::vector<std::string> options = {"--kind", "multi-angle"};
    options.insert(options.end(), wrong.begin(), wrong.end());
    EXPECT_THAT(refusal(options, 2), HasSubstr(wrong.front()));
  }
  for (const char* overlap : {"201/2", "-1/2"}) {
    static_cast<void>(refusal({"--kind", "panorama", "--horizontal-overlap", overlap}, 2));
  }
  EXPECT_THAT(refusal({"--kind", "panorama", "--yaw", "1/2,1/3,1/4"}, 1),
              HasSubstr("--yaw has 3 values for 2 pictures"));
}

TEST_F(MpoAttributesTest, AttributesOfAnotherKindAreRefused) {
  const auto foreign = [this](const char* kind, const char* option, const char* value) {
    EXPECT_THAT(refusal({"--kind", kind, option, value}, 1),
                HasSubstr(std::string("pictures of this kind have no ") + option));
  };
  foreign("stereo", "--pan-orientation", "1");
  foreign("multi-angle", "--vertical-overlap", "1/2");
  foreign("panorama", "--baseline", "1/2");
  foreign("panorama", "--convergence", "1/2");
  foreign("large-thumbnail", "--yaw", "1/2");
}

// The values of one tag of every image, first to last, as exiftool prints them.
class MpoExiftoolTest : public MpoAttributesTest {
 protected:
  std::vector<std::string> theirs(const std::string& tag) const {
    const ProcessResult result =
        runProcess("/usr/bin/exiftool", {"-a", "-ee", "-n", "-s3", "-MPF:" + tag, "out.mpo"},
                   folder(), folder());
    EXPECT_EQ(result.err, "") << tag;
    std::istringstream lines(result.out);
    std::vector<std::string> values;
    for (std::string line; std::getline(lines, line);) values.push_back(line);
    return values;
  }
  void expectNoWarning() const {
    const ProcessResult result =
        runProcess("/usr/bin/exiftool", {"-a", "-ee", "-s3", "-Warning", "-Error", "out.mpo"},
                   folder(), folder());
    EXPECT_EQ(result.out, "");
  }
};

#ifndef _WIN32
TEST_F(MpoExiftoolTest, ExiftoolReadsTheAttributesOfEveryImage) {
  static_cast<void>(images(everyViewpointAttribute));
  using Values = std::vector<std::string>;
  EXPECT_EQ(theirs("BaseViewpointNum"), (Values{"2", "2"}));
  EXPECT_EQ(theirs("ConvergenceAngle"), (Values{"-1.5", "1.25"}));
  EXPECT_EQ(theirs("BaselineLength"), (Values{"0", "0.077"}));
  EXPECT_EQ(theirs("VerticalDivergence"), (Values{"-0.125", "0.125"}));
  EXPECT_EQ(theirs("AxisDistanceX"), (Values{"-0.5", "1.5"}));
  EXPECT_EQ(theirs("AxisDistanceY"), (Values{"1.75", "1.75"}));
  EXPECT_EQ(theirs("AxisDistanceZ"), (Values{"0", "-4.5"}));
  EXPECT_EQ(theirs("YawAngle"), (Values{"0.1", "0.2"}));
  EXPECT_EQ(theirs("PitchAngle"), (Values{"-5.5", "5.5"}));
  EXPECT_EQ(theirs("MPIndividualNum"), (Values{"1", "2"}));
  expectNoWarning();
}

TEST_F(MpoExiftoolTest, ExiftoolReadsAPanorama) {
  static_cast<void>(
      images({"--kind", "panorama", "--pan-orientation", "0x01030201", "--horizontal-overlap",
              "0/1,25/2", "--vertical-overlap", "1/4", "--unique-ids",
              "0123456789abcdef0123456789ABCDEF,fedcba9876543210fedcba9876543210"}));
  using Values = std::vector<std::string>;
  EXPECT_EQ(theirs("PanOrientation"), (Values{"1 3 2 1", "1 3 2 1"}));
  EXPECT_EQ(theirs("PanOverlapH"), (Values{"0", "12.5"}));
  EXPECT_EQ(theirs("PanOverlapV"), (Values{"0.25", "0.25"}));
  ASSERT_EQ(theirs("ImageUIDList").size(), 1U);
  expectNoWarning();
}
#endif

}  // namespace
}  // namespace fiohostTest

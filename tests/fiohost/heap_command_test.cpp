// The heap command: the values of a camera-data heap, listed and set.

#include "tests/fiohost/support/program_fixture.h"
#include "tests/heap/heap_model.h"

namespace fiohostTest {
namespace {

using support::JpegBuilder;
using test::ModelHeap;
using test::ModelRecord;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t noon20001027 = 972648000;  // 2000-10-27 12:00:00

ModelHeap smallHeap(std::uint32_t zone = 0, std::uint32_t zoneCounts = 0) {
  Bytes size = test::numbers32({640, 480});
  for (const std::uint8_t byte : test::reals({1.5F})) size.push_back(byte);
  for (const std::uint8_t byte : test::numbers32({0, 8, 24, 1})) size.push_back(byte);
  ModelHeap heap;
  heap.records = {
      {0x1810, size},
      {0x500A, test::numbers16({7, 0, 0, 0})},
      {0x180E, test::numbers32({noon20001027, zone, zoneCounts})},
      {0x2807,
       {},
       {{0x0810, test::texts({"The Owner"})}, {0x080A, test::texts({"Maker", "Model X"})}}},
      {0x0FFF, test::texts({"of nobody"})}};
  return heap;
}

class HeapCommandTest : public ProgramTest {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
  }
  void addHeap(const ModelHeap& heap) const {
    writeBytes(file("in.jpg"), JpegBuilder()
                                   .cameraHeap(heap.build())
                                   .app(5, support::bytesOf("five"))
                                   .xmp(support::bytesOf("<x/>"))
                                   .build());
  }
  // The values of a record and of those inside it, in the order of the list.
  static void collect(const nlohmann::json& record, nlohmann::json& values) {
    for (const auto& value : record["values"]) values.push_back(value);
    if (!record.contains("records")) return;
    for (const auto& inside : record["records"]) collect(inside, values);
  }
  [[nodiscard]] nlohmann::json heapOf(const std::string& picture) const {
    return runForJson({"heap", picture, "--json"}).at(0)["heap"];
  }
  [[nodiscard]] nlohmann::json allValues(const std::string& picture) const {
    nlohmann::json values;
    collect(heapOf(picture), values);
    return values;
  }
  [[nodiscard]] nlohmann::json item(const std::string& picture, const std::string& name) const {
    for (const auto& value : allValues(picture)) {
      if (value["name"] == name) return value;
    }
    ADD_FAILURE() << name << " is not listed";
    return {};
  }
  nlohmann::json set(const std::string& change) const {
    return runForJson({"heap", "in.jpg", "--set", change, "-o", "out.jpg", "--force", "--json"})
        .at(0);
  }
  // The line on the standard error of a change that must be refused; nothing is written.
  std::string refusal(const std::string& change) const {
    const auto before = namesIn(folder());
    const ProcessResult result = run({"heap", "in.jpg", "--set", change, "-o", "refused.jpg"});
    EXPECT_EQ(result.exitCode, 1) << change;
    EXPECT_EQ(namesIn(folder()), before) << change;
    return result.err;
  }
  [[nodiscard]] support::Bytes heapBytes(const std::string& picture) const {
    for (const auto& segment : support::segmentsOf(readBytes(file(picture)))) {
      if (segment.marker == 0xE0 && segment.payload.size() > 10 && segment.payload[6] == 'H') {
        return segment.payload;
      }
    }
    return {};
  }
  [[nodiscard]] std::vector<support::Bytes> otherSegments(const std::string& picture) const {
    std::vector<support::Bytes> found;
    for (const auto& segment : support::segmentsOf(readBytes(file(picture)))) {
      if (segment.marker > 0xE0 && segment.marker <= 0xEF) found.push_back(segment.payload);
    }
    return found;
  }
};

TEST_F(HeapCommandTest, ListsEveryKindOfValueInBothByteOrders) {
  for (const bool bigEndian : {false, true}) {
    ModelHeap heap = smallHeap();
    heap.bigEndian = bigEndian;
    addHeap(heap);
    EXPECT_EQ(item("in.jpg", "Image width")["value"], 640);
    EXPECT_EQ(item("in.jpg", "Pixel aspect ratio")["value"], 0x3FC00000);
    EXPECT_EQ(item("in.jpg", "Pixel aspect ratio")["readable"], "1.5");
    EXPECT_EQ(item("in.jpg", "Owner name")["value"], "The Owner");
    EXPECT_EQ(item("in.jpg", "Model")["value"], "Model X");
    EXPECT_EQ(item("in.jpg", "Date and time")["readable"], "2000-10-27 12:00:00");
  }
  EXPECT_THAT(run({"heap", "in.jpg"}).out, HasSubstr("0x3FC00000   (1.5)"));
}

TEST_F(HeapCommandTest, ListsTheTreeWithNamesRawValuesAndLabels) {
  ModelHeap heap = smallHeap();
  heap.records.push_back({0x3002, {}, {{0x5011, test::numbers16({1, 0, 0, 0})}}});
  heap.records.push_back({0x0816, {}});
  addHeap(heap);
  EXPECT_EQ(run({"heap", "in.jpg"}).out,
            "in.jpg\n"
            "  Camera data\n"
            "    Byte order                        II (little-endian)\n"
            "    Header length                     26\n"
            "    Type                              HEAP (heap)\n"
            "    Subtype                           JPGM (JPEG with camera data)\n"
            "    Version                           65537\n"
            "    Image specification\n"
            "      Image width                     640\n"
            "      Image height                    480\n"
            "      Pixel aspect ratio              0x3FC00000   (1.5)\n"
            "      Rotation angle                  0\n"
            "      Component bit depth             8\n"
            "      Colour bit depth                24\n"
            "      Colour or monochrome            1 colour (high byte 0)\n"
            "    Target image type                 7\n"
            "    Captured time\n"
            "      Date and time                   0x6000295B   (2000-10-27 12:00:00)\n"
            "      Time zone code                  0\n"
            "      Time zone information           0\n"
            "    Camera\n"
            "      Owner name                      The Owner\n"
            "      Model name\n"
            "        Manufacturer                  Maker\n"
            "        Model                         Model X\n"
            "    Unknown record 0x0FFF\n"
            "      1                               of nobody\n"
            "    Shooting record\n"
            "      Release timing                  1 (priority on the focus)\n"
            "    Image file name\n");
}

TEST_F(HeapCommandTest, JsonNestsRecordsAsTheHeapDoes) {
  ModelHeap heap = smallHeap();
  heap.records.push_back({0x3002, {}, {{0x5011, test::numbers16({1, 0, 0, 0})}}});
  for (const bool bigEndian : {false, true}) {
    heap.bigEndian = bigEndian;
    addHeap(heap);
    const nlohmann::json tree = heapOf("in.jpg");
    EXPECT_EQ(tree["name"], "Camera data");
    EXPECT_EQ(tree["tag"], nullptr);
    EXPECT_EQ(tree["values"][0]["value"], bigEndian ? "MM" : "II");
    EXPECT_EQ(tree["values"][0]["label"], bigEndian ? "(big-endian)" : "(little-endian)");
    ASSERT_EQ(tree["records"].size(), 6U);
    const nlohmann::json& unknown = tree["records"][4];
    EXPECT_EQ(unknown["tag"], "0x0FFF");
    EXPECT_EQ(unknown["values"][0]["value"], "of nobody");
    EXPECT_EQ(unknown["bytes"], 10);
    const nlohmann::json& shooting = tree["records"][5];
    EXPECT_EQ(shooting["name"], "Shooting record");
    EXPECT_TRUE(shooting["values"].empty());
    ASSERT_EQ(shooting["records"].size(), 1U);
    const nlohmann::json& timing = shooting["records"][0]["values"][0];
    EXPECT_EQ(timing["value"], 1);
    EXPECT_EQ(timing["label"], "(priority on the focus)");
    EXPECT_EQ(tree["records"][1]["values"][0]["label"], nullptr);
    EXPECT_FALSE(tree["records"][1].contains("records"));
  }
}

TEST_F(HeapCommandTest, AHeapOfUnknownRecordsIsListedAndADamagedOneIsToldSo) {
  ModelHeap heap;
  heap.records = {{0x0FFF, test::texts({"of nobody"})}};
  addHeap(heap);
  EXPECT_EQ(heapOf("in.jpg")["records"][0]["values"][0]["value"], "of nobody");
  support::Bytes bytes = heap.build();
  bytes.back() = 0xFF;
  writeBytes(file("in.jpg"), JpegBuilder().cameraHeap(bytes).build());
  const ProcessResult damaged = run({"heap", "in.jpg"});
  EXPECT_EQ(damaged.exitCode, 1);
  EXPECT_THAT(damaged.err, HasSubstr("the camera data is damaged"));
}

TEST_F(HeapCommandTest, SetValuesAreWhatTheHeapHoldsThen) {
  addHeap(smallHeap());
  for (const char* text : {"A much longer owner's name", "x", ""}) {
    set(std::string("OWNER name=") + text);
    ModelHeap expected = smallHeap();
    expected.records[3].children[0].value = test::texts({text});
    expected.records = test::padded(expected.records);
    EXPECT_EQ(heapBytes("out.jpg"), expected.build()) << text;
    EXPECT_EQ(item("out.jpg", "Owner name")["value"], text);
  }
  for (const char* width : {"1024", "0x400"}) {
    set(std::string("Image width=") + width);
    EXPECT_EQ(item("out.jpg", "Image width")["value"], 1024);
  }
  set("Rotation angle=-90");
  EXPECT_EQ(item("out.jpg", "Rotation angle")["readable"], "-90");
  set("Pixel aspect ratio=0.75");
  EXPECT_EQ(item("out.jpg", "Pixel aspect ratio")["readable"], "0.75");
  set("Target image type=65535");
  EXPECT_EQ(item("out.jpg", "Target image type")["value"], 65535);
}

TEST_F(HeapCommandTest, OnlyTheCameraDataChanges) {
  addHeap(smallHeap());
  const nlohmann::json result = set("Model=Another model");
  EXPECT_EQ(otherSegments("out.jpg"), otherSegments("in.jpg"));
  EXPECT_EQ(otherSegments("out.jpg").size(), 2U);
  for (const auto& segment : result["segments"]) {
    if (segment["segment"] == "JFIF") continue;
    EXPECT_EQ(segment["result"], segment["segment"] == "camera data" ? "changed" : "kept")
        << segment.dump();
  }
  EXPECT_EQ(item("out.jpg", "Date and time"), item("in.jpg", "Date and time"));
  EXPECT_EQ(item("out.jpg", "Manufacturer")["value"], "Maker");
}

TEST_F(HeapCommandTest, DatesOfEveryMonthAreSetWithAndWithoutAZone) {
  for (const std::uint32_t zoneCounts : {0U, 1U}) {
    addHeap(smallHeap(3600, zoneCounts));
    for (const char* month : {"01", "02", "06", "07", "12"}) {
      const std::string date = std::string("2001-") + month + "-28 23:58:30";
      set("Date and time=" + date);
      EXPECT_EQ(item("out.jpg", "Date and time")["readable"], date);
      EXPECT_EQ(item("out.jpg", "Time zone code")["value"], 3600);
    }
  }
}

TEST_F(HeapCommandTest, SeveralValuesAreSetAtOnceAndAFileMayReplaceItself) {
  addHeap(smallHeap());
  const std::vector<std::string> arguments = {"heap",           "in.jpg", "--set", "Image width=1",
                                              "Image height=2", "-o",     "in.jpg"};
  EXPECT_EQ(run(arguments).exitCode, 1);
  EXPECT_EQ(item("in.jpg", "Image width")["value"], 640);
  std::vector<std::string> forced = arguments;
  forced.emplace_back("--force");
  EXPECT_EQ(run(forced).exitCode, 0);
  EXPECT_EQ(item("in.jpg", "Image width")["value"], 1);
  EXPECT_EQ(item("in.jpg", "Image height")["value"], 2);
}

TEST_F(HeapCommandTest, WhatCannotBeSetIsRefusedByName) {
  addHeap(smallHeap());
  for (const char* change :
       {"Image width=4294967296", "Image width=-2147483649", "Image width=", "Image width=12x",
        "Image width=0x", "Target image type=65536", "Target image type=-1",
        "Pixel aspect ratio=wide", "Pixel aspect ratio=inf", "Date and time=2001-02-29 00:00:00",
        "Date and time=2001-02-28", "Date and time=1979-12-31 00:00:00",
        "Date and time=2001-02-28 24:00:00"}) {
    const std::string name = std::string(change).substr(0, std::string(change).find('='));
    EXPECT_THAT(refusal(change), HasSubstr("\"" + name + "\" cannot be set"));
  }
}

// Each text fits a command line; the third no longer fits the segment.
TEST_F(HeapCommandTest, WhatOneSegmentCannotHoldIsRefused) {
  addHeap(smallHeap());
  const std::string text(25000, 'x');
  const auto grow = [&](const std::string& name, const char* from, const char* to) {
    return run({"heap", from, "--set", name + "=" + text, "-o", to});
  };
  EXPECT_EQ(grow("Owner name", "in.jpg", "once.jpg").exitCode, 0);
  EXPECT_EQ(grow("Manufacturer", "once.jpg", "twice.jpg").exitCode, 0);
  const ProcessResult refused = grow("Model", "twice.jpg", "never.jpg");
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("did not take the new value of \"Model\""));
  EXPECT_FALSE(std::filesystem::exists(file("never.jpg")));
}

TEST_F(HeapCommandTest, UnknownNamesAreToldWithNearOnes) {
  addHeap(smallHeap());
  EXPECT_THAT(refusal("Image widht=1"),
              testing::AllOf(HasSubstr("\"Image width\""), Not(HasSubstr("\"Model\""))));
  EXPECT_THAT(refusal("Qqqq=1"),
              testing::AllOf(HasSubstr("\"Image width\""), HasSubstr("\"Model\"")));
}

TEST_F(HeapCommandTest, TwoRecordsOfOneNameAreToldApartByNobody) {
  ModelHeap heap = smallHeap();
  heap.records.push_back(heap.records[1]);
  heap.records.back().value = test::numbers16({9, 0, 0, 0});
  addHeap(heap);
  EXPECT_THAT(refusal("Target image type=1"), HasSubstr("several values"));
  set("Model=Y");
  ModelHeap expected = heap;
  expected.records[3].children[1].value = test::texts({"Maker", "Y"});
  expected.records = test::padded(expected.records);
  EXPECT_EQ(heapBytes("out.jpg"), expected.build());
}

TEST_F(HeapCommandTest, AFileWithoutCameraDataIsToldSo) {
  addJpeg("in.jpg", {});
  EXPECT_THAT(refusal("Model=Y"), HasSubstr("no camera data"));
  const ProcessResult listed = run({"heap", "in.jpg"});
  EXPECT_EQ(listed.exitCode, 1);
  EXPECT_THAT(listed.err, HasSubstr("no camera data"));
}

TEST_F(HeapCommandTest, WrongOptionsAreUsageErrors) {
  addHeap(smallHeap());
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--set", "Model=Y"},
                                                {"-o", "out.jpg"},
                                                {"--set", "Model", "-o", "out.jpg"},
                                                {"--set", "=Y", "-o", "out.jpg"},
                                                {"--force"}}) {
    std::vector<std::string> arguments = {"heap", "in.jpg"};
    arguments.insert(arguments.end(), wrong.begin(), wrong.end());
    EXPECT_EQ(run(arguments).exitCode, 2);
  }
}

#ifdef KF_SAMPLES
TEST_F(HeapCommandTest, ARealFileTakesANewOwner) {
  const std::filesystem::path real = std::filesystem::path(KF_SAMPLES) / "ciff/powershot_a5.jpg";
  if (!std::filesystem::exists(real)) GTEST_SKIP() << "there is no " << real;
  writeBytes(file("in.jpg"), readBytes(real));
  nlohmann::json expected = allValues("in.jpg");
  set("Owner name=A longer name than before");
  for (auto& value : expected) {
    if (value["name"] == "Owner name") value["value"] = "A longer name than before";
  }
  EXPECT_EQ(allValues("out.jpg"), expected);
  EXPECT_EQ(item("out.jpg", "Owner name")["value"], "A longer name than before");
}
#endif

}  // namespace
}  // namespace fiohostTest

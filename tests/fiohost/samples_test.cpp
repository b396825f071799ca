// Every real file of the sample folder, described and compared with libjpeg and identify.
#include <cstdio>
#include <iostream>
#include <sstream>

#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

const std::filesystem::path samples = KF_SAMPLES;

std::vector<std::filesystem::path> sampleFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(samples)) {
    const std::string extension = entry.path().extension().string();
    if (extension == ".jpg" || extension == ".mpo") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

struct Figures {
  unsigned width;
  unsigned height;
  unsigned components;
  friend bool operator==(const Figures&, const Figures&) = default;
};

std::ostream& operator<<(std::ostream& out, const Figures& figures) {
  return out << figures.width << " x " << figures.height << " x " << figures.components;
}

// A grey sample is all three colours.
Bytes ppmOf(const Pixels& pixels) {
  const std::string head =
      "P6\n" + std::to_string(pixels.width) + " " + std::to_string(pixels.height) + "\n255\n";
  Bytes file(head.begin(), head.end());
  if (pixels.channels == 3) {
    file.insert(file.end(), pixels.bytes.begin(), pixels.bytes.end());
  } else {
    for (const std::uint8_t sample : pixels.bytes) file.insert(file.end(), 3, sample);
  }
  return file;
}

class SamplesTest : public ProgramTest {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(samples)) GTEST_SKIP() << "there is no folder " << samples;
  }
  // What identify says about a file's first image; nothing when it cannot open it.
  [[nodiscard]] std::optional<Figures> identify(const std::filesystem::path& path) const {
    const ProcessResult result =
        runProcess("/usr/bin/identify",
                   {"-ping", "-format", "%w %h %[colorspace]\n", "jpeg:" + path.string() + "[0]"},
                   folder(), folder());
    std::istringstream text(result.out);
    Figures figures = {};
    std::string colour;
    if (result.exitCode != 0 || !(text >> figures.width >> figures.height >> colour)) return {};
    figures.components = colour == "Gray" ? 1 : colour == "CMYK" ? 4 : 3;
    return figures;
  }
};

// The program ended by itself: every line it complained with is its own.
void expectOrderlyEnd(const ProcessResult& result) {
  ASSERT_THAT(result.exitCode, testing::AnyOf(0, 1)) << result.err;
  std::istringstream lines(result.err);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(line.starts_with("fiohost: ")) << line;
  }
  EXPECT_EQ(result.err.empty(), result.exitCode == 0);
}

TEST_F(SamplesTest, AgreeWithOtherReaders) {
  std::vector<std::string> arguments = {"info", "--json"};
  for (const auto& path : sampleFiles()) arguments.push_back(path.string());
  ASSERT_GT(arguments.size(), 2U);
  const ProcessResult result = run(arguments);
  expectOrderlyEnd(result);
  const nlohmann::json all = nlohmann::json::parse(result.out);
  ASSERT_EQ(all.size(), arguments.size() - 2);
  unsigned compared = 0;
  for (const nlohmann::json& info : all) {
    const std::optional<Figures> expected = identify(info["file"].get<std::string>());
    if (!expected) continue;
    ASSERT_FALSE(info.contains("error")) << info;
    const Figures told = {info["width"], info["height"], info["components"]};
    EXPECT_EQ(told, *expected) << info["file"];
    ++compared;
  }
  std::cout << compared << " of " << all.size() << " files compared\n";
  EXPECT_GT(compared, 0U);
}

TEST_F(SamplesTest, AreDecodedOrRefusedInOrder) {
  for (const auto& path : sampleFiles()) {
    SCOPED_TRACE(path);
    expectOrderlyEnd(run({"read", path.string(), "-o", "small.ppm", "--fit", "64x64"}));
    expectOrderlyEnd(run({"read", path.string(), "-o", "thumbnail.ppm", "--thumbnail"}));
  }
}

TEST_F(SamplesTest, PhotographsAreDecodedAsLibjpegDoes) {
  for (const auto& entry : std::filesystem::directory_iterator(samples / "jpeg")) {
    if (entry.path().extension() != ".jpg") continue;
    SCOPED_TRACE(entry.path());
    const Pixels expected = decodeJpeg(readBytes(entry.path()));
    // A form that is not compressed, which is what takes longest.
    ASSERT_EQ(run({"read", entry.path().string(), "-o", "out.ppm"}).exitCode, 0);
    if (expected.channels < 4) {
      EXPECT_TRUE(readBytes(file("out.ppm")) == ppmOf(expected));
    }
  }
}

}  // namespace
}  // namespace fiohostTest

// Multi-picture files that the built program makes and tells of.
#pragma once

#include "platform/system.h"
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {

class MpoProgramTest : public ProgramTest {
 protected:
  void SetUp() override {
    // Settings of the test's own, so that the user's play no part.
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
  }

  // in1.jpg, in2.jpg ... of sizes that all differ.
  [[nodiscard]] std::vector<std::string> addPictures(unsigned count) const {
    std::vector<std::string> names;
    for (unsigned i = 1; i <= count; ++i) {
      names.push_back("in" + std::to_string(i) + ".jpg");
      addJpeg(names.back(), {.width = 60 + 4 * i, .height = 40 + 2 * i});
    }
    return names;
  }
  [[nodiscard]] nlohmann::json build(const std::vector<std::string>& pictures,
                                     const std::vector<std::string>& options) const {
    std::vector<std::string> arguments = {"mpo", "build", "-o", "out.mpo", "--json", "--force"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(), pictures.begin(), pictures.end());
    return runForJson(arguments).at(0);
  }
  [[nodiscard]] nlohmann::json info(const std::string& name) const {
    return runForJson({"mpo", "info", "--json", name}).at(0);
  }
  // The bytes of an image as info places them.
  [[nodiscard]] Bytes rangeOf(const std::string& name, const nlohmann::json& image) const {
    const Bytes whole = readBytes(file(name));
    const auto start = image["offset"].get<std::ptrdiff_t>();
    const auto size = image["bytes"].get<std::ptrdiff_t>();
    EXPECT_LE(start + size, static_cast<std::ptrdiff_t>(whole.size()));
    return Bytes(whole.begin() + start, whole.begin() + start + size);
  }
  // Takes every image out both ways and compares each with its place in the file.
  void expectExtractionAgrees(const std::string& name, const std::string& stem) const {
    EXPECT_EQ(run({"mpo", "extract", name, "-o", "taken", "--jpeg", "--force"}).exitCode, 0);
    EXPECT_EQ(run({"mpo", "extract", name, "-o", "taken", "--force"}).exitCode, 0);
    const nlohmann::json images = info(name)["images"];
    ASSERT_FALSE(images.empty());
    for (const nlohmann::json& image : images) {
      const std::string output = "taken/" + stem + "-" + std::to_string(image["number"].get<int>());
      const Bytes stream = readBytes(file(output + ".jpg"));
      EXPECT_EQ(stream, rangeOf(name, image)) << output;
      EXPECT_TRUE(png(output + ".png") == decodeJpeg(stream)) << output;
    }
    EXPECT_EQ(namesIn(file("taken")).size(), 2 * images.size());
  }
};

}  // namespace fiohostTest

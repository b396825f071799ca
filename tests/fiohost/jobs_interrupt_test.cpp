// Ctrl+C while several files are served at a time.
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

class JobsInterruptTest : public ProgramTest {
 protected:
  // Shows the files and interrupts the program when the first picture is there.
  [[nodiscard]] ProcessResult showAndInterrupt(const std::string& options) const {
    const std::string command = (distributionFolder() / programName).string() + " show " + options +
                                " --jobs 2 in*.jpg & "
                                "until ls *.png >/dev/null 2>&1; do sleep 0.01; done; "
                                "kill -INT $!; wait $!";
    return runProcess("/bin/sh", {"-c", command}, folder(), folder() / "captures");
  }
  void SetUp() override {
    std::filesystem::create_directory(folder() / "captures");
    const Bytes picture = makeJpeg({.width = 1800, .height = 1200});
    for (int i = 10; i < 50; ++i) writeBytes(file("in" + std::to_string(i) + ".jpg"), picture);
  }
  [[nodiscard]] std::size_t pictureCount() const {
    std::size_t count = 0;
    for (const std::string& name : namesIn(folder())) {
      EXPECT_NE(name[0], '.') << name << " was left behind";
      if (name.ends_with(".png")) ++count;
    }
    return count;
  }
};

TEST_F(JobsInterruptTest, WhatIsThereIsToldAndNothingIsLeftHalfDone) {
  const ProcessResult result = showAndInterrupt("");
  EXPECT_EQ(result.exitCode, 1);
  const std::size_t pictures = pictureCount();
  EXPECT_LT(pictures, 40U);
  std::size_t told = 0;
  for (std::size_t at = result.out.find("Written"); at != std::string::npos;
       at = result.out.find("Written", at + 1)) {
    ++told;
  }
  EXPECT_EQ(told, pictures);
}

TEST_F(JobsInterruptTest, ThereIsNoArrayThatSeemsToBeWhole) {
  const ProcessResult result = showAndInterrupt("--json");
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_LT(pictureCount(), 40U);
  EXPECT_EQ(result.out, "");
}

}  // namespace
}  // namespace fiohostTest

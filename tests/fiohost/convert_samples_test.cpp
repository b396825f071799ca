// Real pictures saved anew: every application segment stays, and the picture stays the picture.
#include <cstdio>

#include "platform/system.h"
#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

class ConvertSamplesTest : public ProgramTest {
 protected:
  void SetUp() override {
    SetEnvironmentVariableA("KFIO_INI", platform::displayPath(file("settings.ini")).c_str());
  }

  static std::vector<std::filesystem::path> samples() {
    std::vector<std::filesystem::path> found;
    for (const char* folder : {"jpeg", "ciff"}) {
      const std::filesystem::path all = std::filesystem::path(KF_SAMPLES) / folder;
      if (!std::filesystem::exists(all)) continue;
      for (const auto& entry : std::filesystem::directory_iterator(all)) {
        found.push_back(entry.path());
      }
    }
    return found;
  }
};

TEST_F(ConvertSamplesTest, EverySegmentAndThePictureSurviveTwoConversions) {
  const std::vector<std::filesystem::path> real = samples();
  if (real.empty()) GTEST_SKIP() << "there are no real files in " << KF_SAMPLES;
  for (const std::filesystem::path& sample : real) {
    SCOPED_TRACE(sample.filename().string());
    const std::string name = platform::displayPath(sample);
    const ProcessResult first =
        run({"convert", name, "-o", "once.jpg", "--force", "--quality", "95", "--sampling", "444"});
    ASSERT_EQ(first.exitCode, 0) << first.err;
    ASSERT_EQ(run({"convert", "once.jpg", "-o", "twice.jpg", "--force"}).exitCode, 0);
    const Bytes source = readBytes(sample);
    const Bytes once = readBytes(file("once.jpg"));
    EXPECT_EQ(appSegments(once), appSegments(source));
    EXPECT_EQ(appSegments(readBytes(file("twice.jpg"))), appSegments(source));
    const Pixels before = decodeJpeg(source);
    const Pixels after = decodeJpeg(once);
    ASSERT_EQ(after.bytes.size(), before.bytes.size());
    EXPECT_LT(meanDifference(before, after), 2.0);
  }
}

}  // namespace
}  // namespace fiohostTest

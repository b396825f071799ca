// Real files: pixels as by libjpeg called directly, segments as the marker walker sees them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"
#include "tests/support/file_bytes.h"

namespace klibjpg_test {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> samples() {
  std::vector<fs::path> files;
  if (!fs::is_directory(KF_SAMPLES)) return files;
  for (const auto& entry : fs::recursive_directory_iterator(KF_SAMPLES)) {
    if (entry.is_regular_file() && entry.path().extension() != ".md") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<SeenSegment> applicationSegments(const Bytes& jpeg) {
  std::vector<SeenSegment> found;
  for (const auto& segment : support::segmentsOf(jpeg)) {
    if (segment.marker < 0xE0 || segment.marker > 0xEF) continue;
    found.push_back({segment.marker - 0xE0U, segment.payloadOffset, segment.payload});
  }
  return found;
}

TEST(Samples, AreDecodedAsByLibjpeg) {
  const std::vector<fs::path> files = samples();
  if (files.empty()) GTEST_SKIP() << "the real files are not here: " << KF_SAMPLES;
  std::size_t decoded = 0;
  for (const fs::path& path : files) {
    SCOPED_TRACE(path.string());
    const Bytes jpeg = support::readFile(path);
    const Picture expected = referenceDecode(jpeg);
    const Reading reading = readFile(path.string());
    if (expected.pixels.empty()) continue;  // not a JPEG file, or one that libjpeg refuses
    ++decoded;
    EXPECT_EQ(reading.result, 1);
    EXPECT_TRUE(reading.pixels == expected.pixels);
    EXPECT_TRUE(reading.segments == applicationSegments(jpeg));
  }
  EXPECT_GT(decoded, 0U);
}

}  // namespace
}  // namespace klibjpg_test

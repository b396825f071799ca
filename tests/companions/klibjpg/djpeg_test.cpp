// The decoder program of another package as the witness: same pixels.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "tests/companions/klibjpg/codec_calls.h"

namespace klibjpg_test {
namespace {

namespace fs = std::filesystem;
using support::JpegBuilder;
using support::Layout;

// What the program prints for a file; empty when it cannot decode it.
Bytes outputOf(const std::string& path) {
  const std::string command = std::string(KF_DJPEG) + " -pnm '" + path + "' 2>/dev/null";
  Bytes output;
  std::FILE* const pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return output;
  host::u8 buffer[4096];
  for (std::size_t count; (count = std::fread(buffer, 1, sizeof(buffer), pipe)) != 0;) {
    output.insert(output.end(), buffer, buffer + count);
  }
  pclose(pipe);
  return output;
}

// A reading as a PNM file, whose pixels are red-green-blue.
Bytes asPnm(const Reading& reading) {
  const host::ImageHeader& header = reading.headers.at(0).header;
  const bool colour = header.components == 3;
  Bytes pnm =
      support::bytesOf(std::string(colour ? "P6" : "P5") + "\n" + std::to_string(header.width) +
                       " " + std::to_string(header.height) + "\n255\n");
  Bytes pixels = reading.pixels;
  if (colour) {
    for (std::size_t i = 0; i + 2 < pixels.size(); i += 3) std::swap(pixels[i], pixels[i + 2]);
  }
  return support::joined(pnm, pixels);
}

TEST(Djpeg, DecodesMadeFilesAlike) {
  for (const JpegBuilder& builder :
       {JpegBuilder().size(101, 77), JpegBuilder().size(101, 77).progressive(),
        JpegBuilder().size(101, 77).layout(Layout::grey), JpegBuilder().size(9, 9).sampling(4, 1),
        JpegBuilder().size(64, 64).arithmetic(), JpegBuilder().size(64, 64).separateScans()}) {
    const TemporaryFile file(builder.build());
    const Bytes expected = outputOf(file.path());
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(asPnm(readFile(file.path())), expected);
  }
}

TEST(Djpeg, DecodesRealFilesAlike) {
  if (!fs::is_directory(KF_SAMPLES)) GTEST_SKIP() << "the real files are not here: " << KF_SAMPLES;
  std::size_t compared = 0;
  for (const auto& entry : fs::recursive_directory_iterator(KF_SAMPLES)) {
    if (!entry.is_regular_file()) continue;
    const Reading reading = readFile(entry.path().string());
    // The program writes grey and colour only.
    if (reading.result != 1 || reading.headers.at(0).header.components == 4) continue;
    ++compared;
    EXPECT_TRUE(asPnm(reading) == outputOf(entry.path().string())) << entry.path();
  }
  EXPECT_GT(compared, 0U);
}

}  // namespace
}  // namespace klibjpg_test

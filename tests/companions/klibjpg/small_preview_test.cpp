// An eighth of a progressive picture: scans that add nothing to it are stepped over, and nobody can
// tell.
#include <gtest/gtest.h>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::Layout;

struct Kind {
  const char* name;
  JpegBuilder builder;
};

JpegBuilder progressive() { return JpegBuilder().size(203, 150).progressive(); }

std::vector<Kind> kinds() {
  return {{"Sampling444", progressive().sampling(1, 1)},
          {"Sampling422", progressive().sampling(2, 1)},
          {"Sampling420", progressive().sampling(2, 2)},
          {"Sampling411", progressive().sampling(4, 1)},
          {"Sampling440", progressive().sampling(1, 2)},
          {"Grey", progressive().layout(Layout::grey)},
          {"Cmyk", progressive().layout(Layout::cmyk)},
          {"Ycck", progressive().layout(Layout::ycck)},
          {"Restarts", progressive().restartEvery(3)},
          {"Arithmetic", progressive().arithmetic()},
          {"ArithmeticRestarts", progressive().arithmetic().restartEvery(5)},
          {"SeparateScans", JpegBuilder().size(203, 150).separateScans()}};
}

class SmallPreview : public testing::TestWithParam<Kind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, SmallPreview, testing::ValuesIn(kinds()),
                         [](const auto& tested) { return tested.param.name; });

Bytes previewOf(const Bytes& jpeg) {
  const TemporaryFile file(jpeg);
  return readFile(file.path(), askForSize(1, 1)).pixels;
}

Bytes cutOff(const Bytes& whole, std::size_t size) {
  return {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)};
}

TEST_P(SmallPreview, IsTheCodecsOwn) {
  const Bytes jpeg = GetParam().builder.build();
  const Bytes expected = referenceDecode(jpeg, 1).pixels;
  ASSERT_FALSE(expected.empty());
  EXPECT_EQ(previewOf(jpeg), expected);
  EXPECT_EQ(readInput(jpeg, askForSize(1, 1)).pixels, expected);
}

TEST_P(SmallPreview, OfAFileThatWasCutOffIsTheCodecsOwn) {
  const Bytes whole = GetParam().builder.build();
  for (std::size_t size = 700; size < whole.size(); size += 97) {
    const Bytes jpeg = cutOff(whole, size);
    const Bytes expected = referenceDecode(jpeg, 1).pixels;
    if (expected.empty()) continue;  // the codec gives up where klibjpg goes on
    EXPECT_TRUE(previewOf(jpeg) == expected) << size;
  }
}

TEST_P(SmallPreview, OfAFileThatWasCutOffAndEndedIsTheCodecsOwn) {
  const Bytes whole = GetParam().builder.build();
  for (std::size_t size = 701; size < whole.size(); size += 97) {
    const Bytes jpeg = support::joined(cutOff(whole, size), {0xFF, 0xD9});
    const Bytes expected = referenceDecode(jpeg, 1).pixels;
    if (expected.empty()) continue;
    EXPECT_TRUE(previewOf(jpeg) == expected) << size;
  }
}

TEST_P(SmallPreview, OfADamagedFileIsTheCodecsOwn) {
  const Bytes whole = GetParam().builder.build();
  for (std::size_t place = 700; place < whole.size(); place += 61) {
    Bytes jpeg = whole;
    jpeg[place] = static_cast<std::uint8_t>(jpeg[place] ^ 0x55);
    const Bytes expected = referenceDecode(jpeg, 1).pixels;
    if (expected.empty()) continue;
    EXPECT_TRUE(previewOf(jpeg) == expected) << place;
  }
}

}  // namespace
}  // namespace klibjpg_test

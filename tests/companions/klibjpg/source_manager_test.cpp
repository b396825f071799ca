// Streams in pieces of any size.
#include "companions/klibjpg/source_manager.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;

TEST(Source, PiecesOfAnySizeGiveTheSamePicture) {
  const Bytes jpeg = JpegBuilder().size(100, 80).exif(Bytes(500, 3)).build();
  const Bytes expected = referenceDecode(jpeg).pixels;
  for (const std::size_t chunk : {std::size_t{1}, std::size_t{2}, std::size_t{5}, std::size_t{333},
                                  jpeg.size() - 1, jpeg.size(), jpeg.size() + 1}) {
    const Reading reading = readInput(jpeg, goOn, chunk);
    EXPECT_EQ(reading.result, 1) << chunk;
    EXPECT_EQ(reading.pixels, expected) << chunk;
  }
}

TEST(Source, FullBufferWithoutBytesEndsTheStream) {
  host::InputDescriptor input = {};
  input.read = [](void*, host::u32* count, host::u8** buffer) {
    *count = 0;
    *buffer = nullptr;
    return host::inputMore;
  };
  int events = 0;
  const host::CodecCallback callback = {
      &events, [](void* context, host::u32, host::u64, void*) -> host::u32 {
        ++*static_cast<int*>(context);
        return host::codecGoOn;
      }};
  EXPECT_EQ(kJpgRead(&input, &callback, nullptr), 0);
  EXPECT_EQ(events, 0);
}

TEST(Source, TakesFromItsBufferWithoutACopy) {
  const Bytes bytes = {1, 2, 3, 4, 5};
  klibjpg::MemorySource source(bytes);
  host::u8 spare[5];
  EXPECT_EQ(source.take(2, spare), spare);  // the first buffer is not there yet
  EXPECT_EQ(spare[1], 2);
  EXPECT_EQ(source.position(), 2U);
  EXPECT_EQ(source.take(3, spare), bytes.data() + 2);
  EXPECT_EQ(source.position(), 5U);
  EXPECT_EQ(source.take(1, spare), nullptr);
}

TEST(Source, TakesNothingThatIsNotWhollyThere) {
  const Bytes bytes = {1, 2, 3};
  klibjpg::MemorySource source(bytes);
  host::u8 spare[8];
  EXPECT_EQ(source.take(4, spare), nullptr);
}

TEST(Source, SkipsPastItsEnd) {
  const Bytes bytes = {1, 2, 3};
  klibjpg::MemorySource source(bytes);
  source.skip(2);
  EXPECT_EQ(source.position(), 2U);
  source.skip(65536);
  host::u8 spare[1];
  EXPECT_EQ(source.take(1, spare), nullptr);
  EXPECT_EQ(source.next_input_byte[0], 0xFF);
  EXPECT_EQ(source.next_input_byte[1], JPEG_EOI);
}

// A stream in pieces of one size.
class PiecedSource final : public klibjpg::InputSource {
 public:
  PiecedSource(Bytes bytes, std::size_t piece) : bytes_(std::move(bytes)), piece_(piece) {}

 private:
  std::span<const host::u8> nextBuffer() override {
    const std::size_t start = given_;
    given_ = std::min(given_ + piece_, bytes_.size());
    return std::span(bytes_).subspan(start, given_ - start);
  }

  Bytes bytes_;
  std::size_t piece_;
  std::size_t given_ = 0;
};

class SkippedScan : public testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Pieces, SkippedScan, testing::Values(1, 2, 3, 4, 5, 7, 100));

// Stuffed zeros, restart markers and fill bytes belong to the scan.
TEST_P(SkippedScan, EndsAtTheNextMarkerThatIsNoRestart) {
  const Bytes scan = {1, 2, 0xFF, 0, 3, 0xFF, 0xD0, 4, 0xFF, 0xD7, 0xFF, 0xFF, 0xFF, 0, 5};
  PiecedSource source(support::joined(scan, {0xFF, 0xC4, 8, 9}), GetParam());
  source.skipScan();
  EXPECT_EQ(source.position(), scan.size());
  host::u8 spare[4];
  const host::u8* const rest = source.take(4, spare);
  ASSERT_NE(rest, nullptr);
  EXPECT_EQ(Bytes(rest, rest + 4), (Bytes{0xFF, 0xC4, 8, 9}));
  EXPECT_EQ(source.position(), scan.size() + 4);
}

TEST_P(SkippedScan, EndsWithTheStream) {
  for (const Bytes& scan : {Bytes{1, 2, 3}, Bytes{1, 2, 0xFF}, Bytes{1, 0xFF, 0}, Bytes{}}) {
    PiecedSource source(scan, GetParam());
    source.skipScan();
    host::u8 spare[1];
    EXPECT_EQ(source.take(1, spare), nullptr);
    EXPECT_EQ(source.next_input_byte[1], JPEG_EOI);
  }
}

void expectRestarts(klibjpg::InputSource& source, const Bytes& bytes) {
  host::u8 spare[4];
  ASSERT_NE(source.take(4, spare), nullptr);
  source.skipScan();  // to the end
  source.restart();
  EXPECT_EQ(source.position(), 0U);
  const host::u8* const again = source.take(4, spare);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(Bytes(again, again + 4), Bytes(bytes.begin(), bytes.begin() + 4));
  EXPECT_EQ(source.position(), 4U);
}

TEST(Source, AFileAndMemoryCanBeReadAgain) {
  const Bytes bytes = {1, 2, 3, 4, 5, 6, 7};
  const TemporaryFile file(bytes);
  klibjpg::FileSource fromFile(file.path().c_str());
  klibjpg::MemorySource fromMemory(bytes);
  EXPECT_TRUE(fromFile.canRestart());
  EXPECT_TRUE(fromMemory.canRestart());
  expectRestarts(fromFile, bytes);
  expectRestarts(fromMemory, bytes);
  EXPECT_FALSE(PiecedSource(bytes, 2).canRestart());
}

TEST(Source, HoldsWhatLiesInItsBuffer) {
  PiecedSource source({1, 2, 3, 4}, 3);
  host::u8 spare[4];
  EXPECT_FALSE(source.holds(1));
  ASSERT_NE(source.take(1, spare), nullptr);
  EXPECT_TRUE(source.holds(2));
  EXPECT_FALSE(source.holds(3));
}

TEST(Source, LargeFileIsReadThroughItsBuffer) {
  const Bytes jpeg =
      JpegBuilder().size(700, 500).sampling(1, 1).quality(100).exif(Bytes(65000, 1)).build();
  ASSERT_GT(jpeg.size(), 3U * 65536);
  const TemporaryFile file(jpeg);
  EXPECT_EQ(readFile(file.path()).pixels, referenceDecode(jpeg).pixels);
}

}  // namespace
}  // namespace klibjpg_test

// Streams in pieces of any size.
#include "companions/klibjpg/source_manager.h"

#include <gtest/gtest.h>

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

TEST(Source, LargeFileIsReadThroughItsBuffer) {
  const Bytes jpeg =
      JpegBuilder().size(700, 500).sampling(1, 1).quality(100).exif(Bytes(65000, 1)).build();
  ASSERT_GT(jpeg.size(), 3U * 65536);
  const TemporaryFile file(jpeg);
  EXPECT_EQ(readFile(file.path()).pixels, referenceDecode(jpeg).pixels);
}

}  // namespace
}  // namespace klibjpg_test

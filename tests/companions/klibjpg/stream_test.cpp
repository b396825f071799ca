// Whole pictures in memory.
#include <gtest/gtest.h>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::Layout;

constexpr host::u8 guard = 0xA5;

// A picture buffer with guard bytes behind it.
struct Buffer {
  host::StreamImage image = {};
  Bytes bytes;

  Buffer(host::u32 width, host::u32 height, host::u32 bytesPerPixel, host::u32 stride,
         host::u32 bufferSize)
      : bytes(bufferSize + 64, guard) {
    image = {48, width, height, 0, 3, 72, 72, bytesPerPixel, stride, bufferSize, bytes.data()};
  }

  int read(Bytes jpeg) {
    const host::StreamDescriptor stream = {static_cast<host::u32>(jpeg.size()), {}, jpeg.data()};
    return kJpgStreamRead(&stream, &image, nullptr);
  }
  // The part of each row that the reference has too agrees with it; every other byte is untouched.
  void expectTopLeftOf(const Picture& picture) const {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const std::size_t y = i / image.stride;
      const std::size_t x = i % image.stride;
      const bool inside = i < image.bufferSize && y < image.height && y < picture.height &&
                          x < std::size_t{image.width} * image.bytesPerPixel &&
                          x < std::size_t{picture.width} * picture.channels;
      const std::size_t at = y * picture.width * picture.channels + x;
      ASSERT_EQ(bytes[i], inside ? picture.pixels[at] : guard) << x << ", " << y;
    }
  }
};

struct Shape {
  const char* name;
  host::u32 width;
  host::u32 height;
  host::u32 stride;
  host::u32 bufferSize;
};

void PrintTo(const Shape& shape, std::ostream* out) { *out << shape.name; }

class StreamReadShape : public testing::TestWithParam<Shape> {};

// The stream has 24 x 16 pixels of 3 bytes.
TEST_P(StreamReadShape, DeliversWhatFits) {
  const Shape& shape = GetParam();
  const Bytes jpeg = JpegBuilder().build();
  Buffer buffer(shape.width, shape.height, 3, shape.stride, shape.bufferSize);
  EXPECT_EQ(buffer.read(jpeg), 1);
  buffer.expectTopLeftOf(referenceDecode(jpeg));
}

INSTANTIATE_TEST_SUITE_P(Stream, StreamReadShape,
                         testing::Values(Shape{"Exact", 24, 16, 72, 72 * 16},
                                         Shape{"PaddedRows", 24, 16, 80, 80 * 16},
                                         Shape{"Wider", 30, 16, 90, 90 * 16},
                                         Shape{"Taller", 24, 20, 72, 72 * 20},
                                         Shape{"Narrower", 20, 16, 60, 60 * 16},
                                         Shape{"NarrowerInPaddedRows", 20, 16, 100, 100 * 16},
                                         Shape{"Lower", 24, 7, 72, 72 * 7},
                                         Shape{"LowerThanItsBuffer", 24, 7, 72, 72 * 16},
                                         Shape{"BufferEndsInARow", 24, 16, 72, 72 * 9 + 31},
                                         Shape{"BufferTooSmallForARow", 24, 16, 72, 5},
                                         Shape{"EmptyBuffer", 24, 16, 72, 0},
                                         Shape{"StrideShorterThanARow", 24, 16, 50, 50 * 16}),
                         [](const auto& tested) { return tested.param.name; });

TEST(StreamRead, HugeFiguresStayInsideTheBuffer) {
  const Bytes jpeg = JpegBuilder().build();
  Buffer buffer(0xFFFFFFFF, 0xFFFFFFFF, 3, 0xFFFFFFFF, 100);
  EXPECT_EQ(buffer.read(jpeg), 1);
  const Bytes pixels = referenceDecode(jpeg).pixels;
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.begin() + 72, buffer.bytes.begin()));
  EXPECT_EQ(Bytes(buffer.bytes.begin() + 72, buffer.bytes.end()),
            Bytes(buffer.bytes.size() - 72, guard));
}

TEST(StreamRead, ColoursAreConvertedWhereLibjpegCan) {
  Buffer grey(24, 16, 1, 24, 24 * 16);
  EXPECT_EQ(grey.read(JpegBuilder().build()), 1);
  EXPECT_NE(grey.bytes[0], guard);
  Buffer colour(24, 16, 3, 72, 72 * 16);
  EXPECT_EQ(colour.read(JpegBuilder().layout(Layout::grey).build()), 1);
  EXPECT_EQ(colour.bytes[30], colour.bytes[31]);
  EXPECT_EQ(colour.bytes[30], colour.bytes[32]);
}

TEST(StreamRead, OtherPixelSizesFail) {
  Buffer ink(24, 16, 4, 96, 96 * 16);
  EXPECT_EQ(ink.read(JpegBuilder().build()), 0);
  Buffer colour(24, 16, 3, 72, 72 * 16);
  EXPECT_EQ(colour.read(JpegBuilder().layout(Layout::cmyk).build()), 0);
  Buffer nothing(24, 16, 0, 0, 0);
  EXPECT_EQ(nothing.read(JpegBuilder().build()), 0);
}

TEST(StreamRead, FourComponentsIntoFourBytes) {
  const Bytes jpeg = JpegBuilder().layout(Layout::ycck).build();
  Buffer buffer(24, 16, 4, 96, 96 * 16);
  EXPECT_EQ(buffer.read(jpeg), 1);
  buffer.expectTopLeftOf(referenceDecode(jpeg));
}

TEST(StreamRead, NoPictureFails) {
  Buffer buffer(24, 16, 3, 72, 72 * 16);
  EXPECT_EQ(buffer.read({1, 2, 3}), 0);
  EXPECT_EQ(buffer.bytes, Bytes(buffer.bytes.size(), guard));
  buffer.image.pixels = nullptr;
  EXPECT_EQ(buffer.read(JpegBuilder().build()), 0);
}

Bytes rows(host::u32 width, host::u32 height, host::u32 bytesPerPixel, host::u32 stride) {
  Bytes bytes(std::size_t{stride} * height, guard);
  for (host::u32 y = 0; y < height; ++y) {
    for (host::u32 i = 0; i < width * bytesPerPixel; ++i) {
      bytes[y * stride + i] = support::pictureSample(i / bytesPerPixel, y, i % bytesPerPixel);
    }
  }
  return bytes;
}

// The thumbnail encoder's options.
host::WriteOptions thumbnailOptions(host::u32 quality = 80) {
  return {0, quality, host::modeBaseline, host::sample422, 0, 0};
}

struct StreamWriting {
  Bytes pixels;
  host::StreamImage image;
  Bytes output;
  host::StreamDescriptor stream;
  host::WriteOptions options = thumbnailOptions();

  StreamWriting(host::u32 width, host::u32 height, host::u32 bytesPerPixel, host::u32 capacity,
                host::u32 padding = 0)
      : output(capacity + 64, guard) {
    const host::u32 stride = width * bytesPerPixel + padding;
    pixels = rows(width, height, bytesPerPixel, stride);
    image = {48,     width,           height,       3, 0, 72, 72, bytesPerPixel,
             stride, stride * height, pixels.data()};
    stream = {capacity, {}, output.data()};
  }

  int run() { return kJpgStreamWrite(&stream, &image, &options); }
  [[nodiscard]] Bytes result() const {
    return Bytes(output.begin(), output.begin() + stream.length);
  }
};

JpegBuilder thumbnail() {
  return JpegBuilder().size(40, 30).sampling(2, 1).quality(80).withoutJfif();
}

TEST(StreamWrite, GivesTheFileThatLibjpegWrites) {
  for (const host::u32 padding : {0U, 3U}) {
    StreamWriting writing(40, 30, 3, 100000, padding);
    ASSERT_EQ(writing.run(), 1);
    EXPECT_EQ(writing.result(), thumbnail().build());
  }
}

TEST(StreamWrite, GreyAndInk) {
  StreamWriting grey(40, 30, 1, 100000);
  ASSERT_EQ(grey.run(), 1);
  EXPECT_EQ(grey.result(), thumbnail().layout(Layout::grey).build());
  StreamWriting ink(40, 30, 4, 100000);
  const Bytes before = ink.pixels;
  ASSERT_EQ(ink.run(), 1);
  EXPECT_EQ(ink.pixels, before);
  for (host::u8& amount : ink.pixels) amount = static_cast<host::u8>(255 - amount);
  StreamWriting turned(40, 30, 4, 100000);
  turned.pixels = ink.pixels;
  turned.image.pixels = turned.pixels.data();
  ASSERT_EQ(turned.run(), 1);
  EXPECT_EQ(turned.result(), thumbnail().layout(Layout::cmyk).build());
}

TEST(StreamWrite, CapacityIsNeverPassed) {
  const host::u32 needed = static_cast<host::u32>(thumbnail().build().size());
  for (host::u32 capacity = 0; capacity <= needed + 2; ++capacity) {
    StreamWriting writing(40, 30, 3, capacity);
    const int result = writing.run();
    if (capacity < needed) {
      ASSERT_EQ(result, host::codecOutputFailed) << capacity;
      ASSERT_LE(writing.stream.length, capacity);
    } else {
      ASSERT_EQ(result, 1) << capacity;
      ASSERT_EQ(writing.stream.length, needed);
    }
    ASSERT_EQ(Bytes(writing.output.begin() + capacity, writing.output.end()), Bytes(64, guard));
  }
}

TEST(StreamWrite, ProgressiveCapacityIsNeverPassed) {
  StreamWriting whole(40, 30, 3, 100000);
  whole.options.mode = host::modeProgressive;
  ASSERT_EQ(whole.run(), 1);
  for (const host::u32 capacity : {1U, 100U, whole.stream.length - 1, whole.stream.length}) {
    StreamWriting writing(40, 30, 3, capacity);
    writing.options.mode = host::modeProgressive;
    EXPECT_EQ(writing.run() == 1, capacity == whole.stream.length) << capacity;
    EXPECT_EQ(Bytes(writing.output.begin() + capacity, writing.output.end()), Bytes(64, guard));
  }
}

// The plug-in's way to a thumbnail below a limit: each retry offers the length of the one before.
TEST(StreamWrite, RetriesWithTheLastLengthAsCapacityStayInsideTheBuffer) {
  const host::u32 rawSize = 64 * 64 * 3;
  StreamWriting writing(64, 64, 3, rawSize);
  for (std::size_t i = 0; i < writing.pixels.size(); ++i) {
    writing.pixels[i] = static_cast<host::u8>(i * i * 2654435761U >> 13);
  }
  writing.options.quality = 100;
  const host::u32 limit = 3000;
  int result = 0;
  host::u32 length = rawSize;
  do {
    result = writing.run();
    ASSERT_LE(writing.stream.length, length);
    length = writing.stream.length;
    --writing.options.quality;
  } while (length >= limit && writing.options.quality > 10);
  EXPECT_EQ(result, 1);
  EXPECT_LT(length, limit);
  EXPECT_EQ(referenceDecode(writing.result()).width, 64U);
  EXPECT_EQ(Bytes(writing.output.begin() + rawSize, writing.output.end()), Bytes(64, guard));
}

TEST(StreamWrite, RowsMustLieInTheBuffer) {
  StreamWriting shortBuffer(40, 30, 3, 100000);
  --shortBuffer.image.bufferSize;
  EXPECT_EQ(shortBuffer.run(), 0);
  EXPECT_EQ(shortBuffer.stream.length, 0U);
  StreamWriting shortStride(40, 30, 3, 100000);
  --shortStride.image.stride;
  EXPECT_EQ(shortStride.run(), 0);
  StreamWriting huge(40, 30, 3, 100000);
  huge.image.stride = huge.image.height = 0x80000001;
  EXPECT_EQ(huge.run(), 0);
  StreamWriting nothing(40, 30, 3, 100000);
  nothing.image.pixels = nullptr;
  EXPECT_EQ(nothing.run(), 0);
  StreamWriting flat(40, 30, 3, 100000);
  flat.image.height = 0;
  EXPECT_EQ(flat.run(), 0);
  StreamWriting twoBytes(40, 30, 2, 100000);
  EXPECT_EQ(twoBytes.run(), 0);
}

TEST(StreamWrite, NoOutputBufferFails) {
  StreamWriting writing(40, 30, 3, 100);
  writing.stream.data = nullptr;
  EXPECT_EQ(writing.run(), host::codecOutputFailed);
  EXPECT_EQ(writing.stream.length, 0U);
}

}  // namespace
}  // namespace klibjpg_test

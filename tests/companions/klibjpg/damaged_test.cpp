// Damaged and hostile streams: what can be decoded is delivered, nothing crashes, nothing spins.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/companions/klibjpg/codec_calls.h"
#include "tests/companions/klibjpg/reference.h"

namespace klibjpg_test {
namespace {

using support::JpegBuilder;
using support::Layout;

constexpr host::u8 startOfScan = 0xDA;

Bytes firstPart(const Bytes& bytes, std::size_t length) {
  return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
}

// Where the first scan's compressed data begins.
std::size_t endOfHeader(const Bytes& jpeg) {
  const auto segments = support::segmentsOf(jpeg);
  EXPECT_EQ(segments.back().marker, startOfScan);
  return segments.back().payloadOffset + segments.back().payload.size();
}

// Places of the markers behind the first scan's data.
std::vector<std::size_t> laterMarkers(const Bytes& jpeg) {
  std::vector<std::size_t> places;
  for (std::size_t i = endOfHeader(jpeg); i + 1 < jpeg.size(); ++i) {
    const host::u8 code = jpeg[i + 1];
    if (jpeg[i] == 0xFF && code >= 0xC0 && !(code >= 0xD0 && code <= 0xD7)) places.push_back(i);
  }
  return places;
}

struct Case {
  const char* name;
  JpegBuilder builder;
};

void PrintTo(const Case& value, std::ostream* out) { *out << value.name; }

const Case cases[] = {
    {"Baseline", JpegBuilder()},
    {"Grey", JpegBuilder().layout(Layout::grey)},
    {"Cmyk", JpegBuilder().layout(Layout::cmyk)},
    {"Progressive", JpegBuilder().progressive()},
    {"SeveralScans", JpegBuilder().separateScans()},
    {"Arithmetic", JpegBuilder().arithmetic()},
    {"ArithmeticProgressive", JpegBuilder().arithmetic().progressive()},
    {"Restarts", JpegBuilder().restartEvery(1)},
    {"Segments", JpegBuilder().exif(Bytes(40, 1)).icc(1, 1, Bytes(20, 2))},
};

class Damaged : public testing::TestWithParam<Case> {};

TEST_P(Damaged, EveryPrefixWithAHeaderGivesAWholePicture) {
  const Bytes jpeg = GetParam().builder.build();
  const std::size_t header = endOfHeader(jpeg);
  const std::size_t scanHeader = support::segmentsOf(jpeg).back().payloadOffset;
  for (std::size_t length = 0; length < jpeg.size(); ++length) {
    const Reading reading = readInput(firstPart(jpeg, length));
    // A cut inside the scan header is filled with end-of-image markers, which may pass for fields.
    if (length <= scanHeader) {
      ASSERT_TRUE(reading.headers.empty()) << length;
      ASSERT_EQ(reading.result, 0) << length;
    } else if (length >= header) {
      ASSERT_EQ(reading.result, 1) << length;
    }
    ASSERT_EQ(reading.rows.size(), reading.result == 1 ? 16U : 0U) << length;
  }
}

TEST_P(Damaged, EveryPrefixIsCompletedAsByLibjpeg) {
  const Bytes jpeg = GetParam().builder.build();
  for (std::size_t length = endOfHeader(jpeg); length < jpeg.size(); ++length) {
    const Bytes prefix = firstPart(jpeg, length);
    const Picture expected = referenceDecode(prefix);
    // Where libjpeg gives up between two scans, the codec keeps those before.
    if (expected.pixels.empty()) continue;
    ASSERT_EQ(readInput(prefix).pixels, expected.pixels) << length;
  }
}

TEST_P(Damaged, EveryByteMayBeWrong) {
  const Bytes jpeg = GetParam().builder.build();
  for (std::size_t at = 0; at < jpeg.size(); ++at) {
    for (const int wrong : {0x00, 0xFF, 0x7F}) {
      Bytes damaged = jpeg;
      damaged[at] = static_cast<host::u8>(wrong);
      // A damaged size may ask for a picture of any size; the figures are enough then.
      const Reading reading = readInput(damaged, [](host::u32 event, void* block) -> host::u32 {
        if (event != host::eventHeader) return host::codecGoOn;
        const auto& header = *static_cast<host::ImageHeader*>(block);
        return header.width > 256 || header.height > 256 ? 2 : 1;
      });
      ASSERT_TRUE(reading.result == 1 || reading.result == 0) << at;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Damaged, Damaged, testing::ValuesIn(cases),
                         [](const auto& tested) { return tested.param.name; });

// libjpeg makes the block in which the data ends from zero bits; upsampling spreads it by one row.
TEST(Damage, RowsThatAreMissingAreGrey) {
  for (const Layout layout : {Layout::grey, Layout::colour}) {
    const Bytes jpeg = JpegBuilder().size(24, 64).layout(layout).build();
    const Reading reading = readInput(firstPart(jpeg, endOfHeader(jpeg)));
    EXPECT_EQ(reading.result, 1);
    ASSERT_EQ(reading.rows.size(), 64U);
    const auto missing = static_cast<std::ptrdiff_t>(reading.rows[0].byteCount * 17);
    EXPECT_EQ(Bytes(reading.pixels.begin() + missing, reading.pixels.end()),
              Bytes(reading.rows[0].byteCount * 47, 128));
  }
}

// Rows behind the end of the data are alike and not decoded one by one.
TEST(Damage, TallPictureThatWasCutOffIsCompletedAsByLibjpeg) {
  for (const Layout layout : {Layout::grey, Layout::colour, Layout::cmyk, Layout::ycck}) {
    for (const int vertical : {1, 2}) {
      const Bytes jpeg =
          JpegBuilder().size(40, 200).layout(layout).sampling(2, vertical).quality(60).build();
      for (std::size_t length = endOfHeader(jpeg); length < jpeg.size(); length += 11) {
        const Bytes prefix = firstPart(jpeg, length);
        ASSERT_TRUE(readInput(prefix).pixels == referenceDecode(prefix).pixels) << length;
      }
    }
  }
}

Bytes withSize(Bytes jpeg, host::u32 width, host::u32 height) {
  for (const auto& segment : support::segmentsOf(jpeg)) {
    if ((segment.marker & 0xFC) != 0xC0 || segment.marker == 0xC4) continue;
    const auto place = jpeg.begin() + static_cast<std::ptrdiff_t>(segment.payloadOffset) + 1;
    const host::u32 sizes[] = {height >> 8, height & 0xFF, width >> 8, width & 0xFF};
    std::copy(std::begin(sizes), std::end(sizes), place);
  }
  return jpeg;
}

TEST(Damage, PictureOfManyMorePixelsThanDataIsStillCompleted) {
  const Bytes jpeg = withSize(JpegBuilder().layout(Layout::grey).build(), 4096, 4096);
  const Reading reading = readInput(jpeg);
  EXPECT_EQ(reading.result, 1);
  EXPECT_EQ(reading.rows.size(), 4096U);
}

// Rows of a picture in one scan are copies, which cost little.
TEST(Damage, LargeCutPictureInOneScanIsDeliveredWhole) {
  const Reading reading =
      readInput(withSize(JpegBuilder().layout(Layout::grey).build(), 6400, 6400));
  EXPECT_EQ(reading.result, 1);
  EXPECT_EQ(reading.rows.size(), 6400U);
}

void expectSoonRefused(const Bytes& jpeg, std::size_t mostRows = 64) {
  const Reading reading = readInput(jpeg, goOn, 512);
  EXPECT_EQ(reading.result, 0);
  EXPECT_EQ(reading.headers.size(), 1U);
  EXPECT_LT(reading.rows.size(), mostRows);
}

TEST(Damage, PictureFarLargerThanItsDataFailsAfterItsHeader) {
  const JpegBuilder grey = JpegBuilder().layout(Layout::grey);
  expectSoonRefused(withSize(grey.build(), 32768, 16384));
  expectSoonRefused(withSize(JpegBuilder(grey).progressive().build(), 6400, 6400));
}

// A marker in the data ends it like the end of the image, since no restarts are defined.
TEST(Damage, RowsBehindAMarkerInTheDataAreCopies) {
  for (const int vertical : {1, 2}) {
    Bytes jpeg = JpegBuilder().size(40, 200).sampling(2, vertical).build();
    const std::size_t data = endOfHeader(jpeg);
    for (const host::u8 marker : {host::u8{0xC0}, host::u8{0xD3}, host::u8{0xE1}, host::u8{0x02}}) {
      Bytes torn = jpeg;
      const std::size_t middle = (data + jpeg.size()) / 2;
      torn[middle] = 0xFF;
      torn[middle + 1] = marker;
      ASSERT_TRUE(readInput(torn).pixels == referenceDecode(torn).pixels) << int{marker};
    }
  }
}

Bytes streamOf(const std::vector<Bytes>& parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

Bytes repeated(const Bytes& part, std::size_t count) {
  return streamOf(std::vector<Bytes>(count, part));
}

const Bytes endOfImage = {0xFF, 0xD9};
const Bytes longestInterval = {0xFF, 0xDD, 0, 4, 0xFF, 0xFF};  // 65,535 MCUs between restarts

// Restart markers with a few bits of data behind each.
Bytes restarts(std::size_t eights) {
  Bytes eight;
  for (host::u8 i = 0; i < 8; ++i) {
    const Bytes restart = {0, 0, 0xFF, static_cast<host::u8>(0xD0 + i)};
    eight.insert(eight.end(), restart.begin(), restart.end());
  }
  return repeated(eight, eights);
}

// The header of a grey picture without its scan, and the scan's.
struct Head {
  Head(const JpegBuilder& builder, host::u32 width, host::u32 height) {
    const Bytes jpeg = withSize(JpegBuilder(builder).layout(Layout::grey).build(), width, height);
    const std::size_t place = endOfHeader(jpeg) - 10;
    EXPECT_EQ(jpeg[place + 1], startOfScan);
    tables = firstPart(jpeg, place);
    scan = Bytes(jpeg.begin() + static_cast<std::ptrdiff_t>(place),
                 jpeg.begin() + static_cast<std::ptrdiff_t>(place) + 10);
  }
  Bytes tables;
  Bytes scan;
};

// What is told of the size of a picture costs no time where hardly any data follows, whatever
// marker stands in its place.
TEST(Damage, HardlyAnyDataForALargePictureFails) {
  const Head head({}, 65500, 65500);
  const Bytes frame = {0xFF, 0xC0, 0, 11, 8, 0, 8, 0, 8, 1, 1, 0x11, 0};
  expectSoonRefused(streamOf({head.tables, head.scan, Bytes(20, 0), frame, endOfImage}));
  expectSoonRefused(
      streamOf({head.tables, head.scan, Bytes(20, 0), {0xFF, 0xE1, 0, 2}, endOfImage}));
  expectSoonRefused(streamOf({head.tables, longestInterval, head.scan, restarts(250), endOfImage}),
                    600);
}

// Nor memory, where much follows that is no data of the scan.
TEST(Damage, HardlyAnyDataForManyCoefficientsFails) {
  const Head head(JpegBuilder().progressive(), 8000, 8000);
  Bytes comment(65537, ' ');
  std::copy_n(Bytes{0xFF, 0xFE, 0xFF, 0xFF}.begin(), 4, comment.begin());
  const Bytes rest = streamOf({repeated(comment, 4), head.scan, Bytes(20, 0), endOfImage});
  expectSoonRefused(streamOf({head.tables, head.scan, Bytes(20, 0), rest}));
  expectSoonRefused(streamOf({head.tables, longestInterval, head.scan, restarts(2), rest}));
}

TEST(Damage, BrokenTableBetweenScansKeepsTheScansBefore) {
  const Bytes jpeg = JpegBuilder().size(40, 40).progressive().build();
  const std::vector<std::size_t> markers = laterMarkers(jpeg);
  ASSERT_GT(markers.size(), 10U);
  for (const std::size_t marker : markers) {
    if (jpeg[marker + 1] != 0xC4) continue;
    Bytes damaged = jpeg;
    std::fill_n(damaged.begin() + static_cast<std::ptrdiff_t>(marker) + 5, 16, host::u8{0xFE});
    ASSERT_TRUE(referenceDecode(damaged).pixels.empty());  // fatal to libjpeg itself
    Bytes before = firstPart(jpeg, marker);
    before.insert(before.end(), {0xFF, 0xD9});
    const Reading reading = readInput(damaged);
    EXPECT_EQ(reading.result, 1) << marker;
    EXPECT_EQ(reading.pixels, referenceDecode(before).pixels) << marker;
  }
}

TEST(Damage, BrokenScanHeaderKeepsTheScansBefore) {
  const Bytes jpeg = JpegBuilder().size(40, 40).progressive().build();
  for (const std::size_t marker : laterMarkers(jpeg)) {
    if (jpeg[marker + 1] != startOfScan) continue;
    Bytes damaged = jpeg;
    damaged[marker + 4] = 77;  // number of components
    const Reading reading = readInput(damaged);
    EXPECT_EQ(reading.result, 1) << marker;
    EXPECT_EQ(reading.pixels.size(), 40U * 40 * 3) << marker;
  }
}

// Found by the fuzzer: the values of the second header were taken for those of the picture.
TEST(Damage, SecondFrameHeaderKeepsTheScansBefore) {
  const Bytes jpeg = JpegBuilder().size(40, 40).progressive().build();
  for (const host::u8 marker : {host::u8{0xC0}, host::u8{0xC2}, host::u8{0xC9}}) {
    for (const std::size_t place : laterMarkers(jpeg)) {
      const Bytes second = {0xFF, marker, 0, 17,   12, 0,    0,    0,    0, 0,
                            1,    0x22,   0, 0x02, 17, 0x11, 0x03, 0x11, 1};
      Bytes damaged = firstPart(jpeg, place);
      damaged.insert(damaged.end(), second.begin(), second.end());
      damaged.insert(damaged.end(), jpeg.begin() + static_cast<std::ptrdiff_t>(place), jpeg.end());
      const Reading reading = readInput(damaged);
      EXPECT_EQ(reading.result, 1) << place;
      EXPECT_EQ(reading.pixels.size(), 40U * 40 * 3) << place;
    }
  }
}

TEST(Damage, MissingQuantisationTableFails) {
  Bytes jpeg = JpegBuilder().build();
  for (const auto& segment : support::segmentsOf(jpeg)) {
    if (segment.marker == 0xDB) jpeg[segment.markerOffset + 1] = 0xFE;  // now a comment
  }
  const Reading reading = readInput(jpeg);
  EXPECT_EQ(reading.result, 0);
  EXPECT_TRUE(reading.rows.empty());
}

// Changes one byte of the frame header.
Bytes withFrameByte(const Bytes& jpeg, std::size_t at, host::u8 value) {
  Bytes changed = jpeg;
  for (const auto& segment : support::segmentsOf(jpeg)) {
    if (segment.marker == 0xC0) changed[segment.payloadOffset + at] = value;
  }
  return changed;
}

TEST(Damage, UnservedFramesFail) {
  const Bytes jpeg = JpegBuilder().build();
  for (const auto& segment : support::segmentsOf(jpeg)) {
    if (segment.marker != 0xC0) continue;
    for (const int frame : {0xC3, 0xC5, 0xC6, 0xC7, 0xCB, 0xCD, 0xCE, 0xCF}) {
      Bytes changed = jpeg;
      changed[segment.markerOffset + 1] = static_cast<host::u8>(frame);
      const Reading reading = readInput(changed);
      EXPECT_EQ(reading.result, 0) << frame;
      EXPECT_EQ(reading.events, "5");
    }
  }
  EXPECT_EQ(readInput(withFrameByte(jpeg, 0, 12)).result, 0);  // bits per sample
  EXPECT_EQ(readInput(withFrameByte(jpeg, 0, 16)).result, 0);
}

TEST(Damage, SizesOutsideTheFormatFail) {
  const Bytes jpeg = JpegBuilder().build();
  Bytes tall = withFrameByte(withFrameByte(jpeg, 1, 0xFF), 2, 0xFF);
  EXPECT_EQ(readInput(tall).result, 0);  // 65,535 rows; libjpeg serves 65,500
  Bytes flat = withFrameByte(withFrameByte(jpeg, 1, 0), 2, 0);
  EXPECT_EQ(readInput(flat).result, 0);
  EXPECT_EQ(readInput(withFrameByte(jpeg, 5, 11)).result, 0);  // components
}

TEST(Damage, CoefficientsBeyondTheMemoryLimitFail) {
  Bytes jpeg = JpegBuilder().progressive().build();
  for (const auto& segment : support::segmentsOf(jpeg)) {
    if (segment.marker != 0xC2) continue;
    std::fill_n(jpeg.begin() + static_cast<std::ptrdiff_t>(segment.payloadOffset) + 1, 4,
                host::u8{0xF0});  // 61,680 x 61,680 pixels
  }
  const Reading reading = readInput(jpeg);
  EXPECT_EQ(reading.result, 0);
  EXPECT_EQ(reading.events, "52");
}

TEST(Damage, NothingButNoiseFails) {
  EXPECT_EQ(readInput({}).result, 0);
  EXPECT_EQ(readInput(Bytes(100000, 0)).result, 0);
  EXPECT_EQ(readInput(Bytes(100000, 0xFF)).result, 0);
  EXPECT_EQ(readInput({0xFF, 0xD8}).result, 0);
  EXPECT_EQ(readInput({0xFF, 0xD8, 0xFF, 0xD9}).result, 0);
}

// A progressive picture with `count` scans without any data in front of its last scan, which is
// left out unless it is wanted.
Bytes withEmptyScans(const Bytes& jpeg, std::size_t count, bool lastScan) {
  const std::size_t last = laterMarkers(jpeg).end()[-2];
  EXPECT_EQ(jpeg[last + 1], startOfScan);
  const Bytes emptyScan = {0xFF, startOfScan, 0, 8, 1, 1, 0, 1, 1, 0};  // of coefficient 1
  Bytes hostile = firstPart(jpeg, last);
  for (std::size_t i = 0; i < count; ++i) {
    hostile.insert(hostile.end(), emptyScan.begin(), emptyScan.end());
  }
  const auto rest = static_cast<std::ptrdiff_t>(lastScan ? last : jpeg.size() - 2);
  hostile.insert(hostile.end(), jpeg.begin() + rest, jpeg.end());
  return hostile;
}

TEST(Damage, SmallPictureMayHaveAnyNumberOfScans) {
  const Bytes jpeg = JpegBuilder().size(64, 64).layout(Layout::grey).progressive().build();
  const Bytes pixels = readInput(withEmptyScans(jpeg, 5000, true)).pixels;
  EXPECT_EQ(pixels, referenceDecode(withEmptyScans(jpeg, 5000, true)).pixels);
  EXPECT_NE(pixels, referenceDecode(withEmptyScans(jpeg, 5000, false)).pixels);
}

TEST(Damage, LargePictureStopsAtItsBudgetOfScans) {
  // 256 x 256 blocks: 16 scans, and 512 more for the budget of 2^25 blocks.
  const Bytes jpeg = JpegBuilder().size(2048, 2048).layout(Layout::grey).progressive().build();
  const Bytes within = referenceDecode(withEmptyScans(jpeg, 4, true)).pixels;
  const Bytes beyond = referenceDecode(withEmptyScans(jpeg, 4, false)).pixels;
  ASSERT_NE(within, beyond);
  EXPECT_TRUE(readInput(withEmptyScans(jpeg, 500, true)).pixels == within);
  const Reading reading = readInput(withEmptyScans(jpeg, 600, true));
  EXPECT_EQ(reading.result, 1);
  EXPECT_TRUE(reading.pixels == beyond);
}

}  // namespace
}  // namespace klibjpg_test

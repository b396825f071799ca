// Finding the multi-picture segment: markers, lengths, fill bytes, the stream's end.
#include <gtest/gtest.h>

#include "mpo/mpf_segment.h"
#include "tests/support/scratch_file.h"

namespace {

using support::Bytes;
using support::bytesOf;
using support::joined;

Bytes segment(std::uint8_t marker, const Bytes& payload) {
  const std::size_t length = payload.size() + 2;
  return joined(
      {0xFF, marker, static_cast<std::uint8_t>(length >> 8), static_cast<std::uint8_t>(length)},
      payload);
}

const Bytes startOfImage = {0xFF, 0xD8};
const Bytes endOfImage = {0xFF, 0xD9};
const Bytes mpfSegment = segment(0xE2, joined(bytesOf("MPF"), {0, 'I', 'I', 42, 0}));

Bytes stream(std::initializer_list<Bytes> parts) {
  Bytes all = startOfImage;
  for (const Bytes& part : parts) all = joined(all, part);
  return all;
}

struct Found {
  int result;
  host::u64 position;
  bool found;
  host::u64 filePosition;
};

Found find(const Bytes& content, host::i64 from = 0) {
  const test::ScratchFile scratch(content);
  const platform::OpenFile file = scratch.open();
  platform::moveTo(file.get(), from);
  Found found{0, 77, true, 0};
  found.result = mpo::MpfFindSegment(file.get(), &found.position, &found.found);
  found.filePosition = platform::moveTo(file.get(), 0, FILE_CURRENT).value_or(~host::u64{0});
  return found;
}

// The byte-order field lies behind marker, length and signature.
void expectFoundAt(const Bytes& content, std::size_t marker) {
  const Found found = find(content);
  EXPECT_EQ(found.result, 1);
  EXPECT_EQ(found.position, marker + 8);
  EXPECT_TRUE(found.found);
  EXPECT_EQ(found.filePosition, marker + 8);
}

void expectNotFound(const Bytes& content) {
  const Found found = find(content);
  EXPECT_EQ(found.result, 0);
  EXPECT_EQ(found.position, 0u) << "cleared";
  EXPECT_FALSE(found.found) << "cleared";
}

TEST(MpfFind, ThePositionIsTheByteOrderField) { expectFoundAt(stream({mpfSegment}), 2); }

TEST(MpfFind, BothOutsAreOptional) {
  const test::ScratchFile scratch(stream({mpfSegment}));
  const platform::OpenFile file = scratch.open();
  EXPECT_EQ(mpo::MpfFindSegment(file.get()), 1);
  EXPECT_EQ(platform::moveTo(file.get(), 0, FILE_CURRENT), 10u);
}

TEST(MpfFind, SegmentsWithALengthAreSteppedOverWhole) {
  // Their payloads hold what looks like the segment.
  for (const int marker : {0x02, 0xC0, 0xC4, 0xCF, 0xDB, 0xE0, 0xE1, 0xE3, 0xEF, 0xFE}) {
    const Bytes other = segment(static_cast<std::uint8_t>(marker), joined(mpfSegment, Bytes(9)));
    expectFoundAt(stream({other, mpfSegment}), 2 + other.size());
    expectNotFound(stream({other, endOfImage}));
  }
}

TEST(MpfFind, OtherApp2SegmentsAreSteppedOverWhole) {
  for (const std::size_t size : {4u, 5u, 6u, 100u, 4090u, 65533u}) {
    Bytes payload(size, 0);
    const Bytes text = bytesOf("MPFX");
    std::copy(text.begin(), text.end(), payload.begin());
    const Bytes other = segment(0xE2, payload);
    expectFoundAt(stream({other, mpfSegment}), 2 + other.size());
  }
}

TEST(MpfFind, AnApp2LengthOfSixOrLessSkipsNothingMore) {
  // Four bytes are read whatever the length says; the sliding pair goes on behind them.
  const Bytes shortSegment = {0xFF, 0xE2, 0, 2, 'A', 'B', 'C', 'D'};
  expectFoundAt(stream({shortSegment, mpfSegment}), 10);
  const Bytes lengthSeven = {0xFF, 0xE2, 0, 7, 'A', 'B', 'C', 'D', 0xFF};
  expectFoundAt(stream({lengthSeven, mpfSegment}), 11);
}

TEST(MpfFind, LengthsBelowThreeSkipNothing) {
  for (const int length : {0, 1, 2}) {
    const Bytes head = {0xFF, 0xE1, 0, static_cast<std::uint8_t>(length)};
    expectFoundAt(stream({head, mpfSegment}), 6);
  }
  expectFoundAt(stream({Bytes{0xFF, 0xE1, 0, 3, 0xFF}, mpfSegment}), 7);
}

TEST(MpfFind, MarkersWithoutALengthAreSteppedThroughByteByByte) {
  for (const int marker : {0x00, 0x01, 0xD0, 0xD7, 0xD8, 0xFF}) {
    expectFoundAt(stream({Bytes{0xFF, static_cast<std::uint8_t>(marker)}, mpfSegment}), 4);
  }
}

TEST(MpfFind, FillBytesAndScanDataAreSteppedThrough) {
  expectFoundAt(stream({Bytes(5, 0xFF), mpfSegment}), 7);
  const Bytes scan =
      joined(segment(0xDA, {1, 1, 0, 0, 63, 0}), {0x12, 0xFF, 0x00, 0x34, 0xFF, 0xD1});
  expectFoundAt(stream({scan, mpfSegment}), 2 + scan.size());
}

TEST(MpfFind, TheSearchEndsWithTheFirstImage) {
  expectNotFound(stream({endOfImage, startOfImage, mpfSegment}));
}

TEST(MpfFind, AnyShortReadEndsTheSearch) {
  const Bytes whole = stream({segment(0xE1, Bytes(5000)), mpfSegment});
  const std::size_t needed = whole.size() - 4;  // the signature is the last that is looked at
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{5},
        std::size_t{6}, std::size_t{4096}, needed - 5, needed - 1}) {
    expectNotFound(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  expectFoundAt(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(needed)), 5006);
}

TEST(MpfFind, TheSearchStartsAtTheFilesPosition) {
  const Bytes content = joined(stream({endOfImage}), stream({mpfSegment}));
  EXPECT_EQ(find(content).result, 0);
  const Found second = find(content, 4);
  EXPECT_EQ(+second.result, 1);
  EXPECT_EQ(+second.position, 14u);
}

TEST(MpfFind, TheSegmentIsFoundAcrossTheReadersBuffer) {
  for (std::size_t before = 4080; before < 4100; ++before) {
    const Bytes other = segment(0xE1, Bytes(before, 0xFF));
    expectFoundAt(stream({other, mpfSegment}), 2 + other.size());
    expectFoundAt(stream({Bytes(before, 0xFF), mpfSegment}), 2 + before);
  }
}

TEST(MpfFind, AnythingIsReadForwardOnlyAndEnds) {
  Bytes noise(300'000);
  std::uint32_t state = 1;
  for (std::uint8_t& byte : noise) {
    state = state * 1664525 + 1013904223;
    byte = (state >> 24) % 3 == 0 ? 0xFF : static_cast<std::uint8_t>(state >> 16);
  }
  for (std::uint8_t& byte : noise) byte = byte == 0xD9 || byte == 0xE2 ? 0 : byte;
  expectNotFound(noise);
}

TEST(MpfGet, NumbersComeInTheirOrder) {
  const Bytes bytes = {1, 2, 3, 4};
  EXPECT_EQ(mpo::MpfGet16(platform::ByteOrder::little, bytes), 0x0201);
  EXPECT_EQ(mpo::MpfGet16(platform::ByteOrder::big, bytes), 0x0102);
  EXPECT_EQ(mpo::MpfGet32(platform::ByteOrder::little, bytes), 0x04030201u);
  EXPECT_EQ(mpo::MpfGet32(platform::ByteOrder::big, bytes), 0x01020304u);
  EXPECT_FALSE(mpo::MpfGet32(platform::ByteOrder::big, Bytes{1, 2, 3}).has_value());
  EXPECT_FALSE(mpo::MpfGet16(platform::ByteOrder::big, Bytes{1}).has_value());
}

}  // namespace

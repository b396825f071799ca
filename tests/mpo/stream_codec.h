// A codec double that reads the streams it is given: it walks their segments and makes up their
// rows, with nothing but what the file holds.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "tests/plugin/plugin.h"
#include "tests/support/jpeg_builder.h"

namespace test {

struct StreamCodec {
  // What the next reads do besides: every stream's width in the order of reading, and answers.
  std::vector<host::u32> widths;
  std::vector<std::size_t> lengths;      // bytes from each stream's start to the file's end
  int resultAfterHeader = 1;             // of a stream that was left after its header
  std::size_t failAt = ~std::size_t{0};  // the read that fails, counted from 0
  int failWith = 0;
  bool progressive = false;
  host::u32 headerWidth = 0;  // instead of the stream's own
  host::u32 headerHeight = 0;
  host::u32 components = 3;

  static support::Bytes drain(const host::InputDescriptor& input) {
    EXPECT_EQ(input.size, 24u);
    support::Bytes all;
    for (;;) {
      host::u32 count = ~host::u32{0};
      host::u8* buffer = nullptr;
      const int answer = input.read(input.context, &count, &buffer);
      EXPECT_NE(buffer, nullptr);
      EXPECT_LE(count, 65536u);
      all.insert(all.end(), buffer, buffer + count);
      EXPECT_TRUE(answer == 1 || answer == 8) << answer;
      if (answer != 1) return all;
      EXPECT_EQ(count, 65536u) << "1 answers a full buffer only";
    }
  }

  static host::u32 raise(const host::CodecCallback& callback, host::u32 event, void* block) {
    return callback.callback(callback.context, event, 0, block);
  }

  static int resultOf(host::u32 answer) { return static_cast<int>(answer); }

  static host::u32 number16(const support::Bytes& bytes, std::size_t at) {
    return host::u32{bytes.at(at)} << 8 | bytes.at(at + 1);
  }

  int read(const host::InputDescriptor& input, const host::CodecCallback& callback) {
    const support::Bytes stream = drain(input);
    lengths.push_back(stream.size());
    if (widths.size() == failAt) {
      widths.push_back(0);
      return failWith;
    }
    host::ImageHeaderWithExtra header = {{56, 0, 0, 3, 2, 118, 119, components},
                                         {24, {}, 0, 1, 1, progressive ? 1u : 0u}};
    for (const support::MarkerSegment& segment : support::segmentsOf(stream)) {
      if (segment.marker == 0xC0 || segment.marker == 0xC2) {
        header.header.height = number16(segment.payload, 1);
        header.header.width = number16(segment.payload, 3);
      }
      if (segment.marker < 0xE0 || segment.marker > 0xEF) continue;
      host::SegmentRecord record = {};
      record.kind = 1;
      record.appNumber = static_cast<host::u16>(segment.marker - 0xE0);
      record.payloadOffset = static_cast<host::u32>(segment.payloadOffset);
      record.payloadLength = static_cast<host::i32>(segment.payload.size());
      record.payload = segment.payload.data();
      const host::u32 answer = raise(callback, host::eventSegment, &record);
      if (answer != 1) return resultOf(answer);
    }
    widths.push_back(header.header.width);
    if (header.header.width == 0) return 0;  // no JPEG stream starts there
    if (headerWidth != 0) header.header.width = headerWidth;
    if (headerHeight != 0) header.header.height = headerHeight;
    const host::u32 answer = raise(callback, host::eventHeader, &header);
    if (answer == host::codecHeaderOnly) return resultAfterHeader;
    if (answer != 1) return resultOf(answer);
    return rows(header.header, callback);
  }

  static int rows(const host::ImageHeader& header, const host::CodecCallback& callback) {
    for (host::u32 row = 0; row < header.height; ++row) {
      support::Bytes pixels(std::size_t{header.width} * 3, static_cast<host::u8>(row));
      host::RowBlock block = {
          40, row, header.width, header.height, 3, {}, header.width * 3, {}, pixels.data()};
      const host::u32 answer = raise(callback, host::eventRow, &block);
      if (answer != 1) return resultOf(answer);
    }
    return 1;
  }

  // The codec double's read from now on. This object has to outlive it.
  void install() {
    the().read = [this](const host::InputDescriptor& input, const host::CodecCallback& callback) {
      return read(input, callback);
    };
  }
};

inline HGLOBAL describeMpo(const std::string& path) {
  return entry<host::MPOGetFileDataEntry>(host::ordinalMPOGetFileData)(nullptr, path.c_str(), 0);
}

}  // namespace test

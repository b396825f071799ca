// Multi-picture segments as a parser meets them, and the list that it fills.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

#include "mpo/mpf_segment.h"
#include "tests/support/mpf_builder.h"

namespace test {

using host::i32;
using host::MpoAttributes;
using host::MpoEntry;
using host::MpoList;
using host::u32;
using support::ByteOrder;
using support::Bytes;
using support::MpfBuilder;
using support::MpImage;
namespace mpf = support::mpf;

inline constexpr u32 noEntry = 0x80004005;
inline constexpr u32 child = 0x40000000;
inline constexpr u32 base = 1000;

// The list and the array as they lie in a record, with bytes behind them that nobody may touch.
class Parsed {
 public:
  Parsed() { std::memset(guard_, 0x5A, sizeof guard_); }
  ~Parsed() {
    for (const host::u8 byte : guard_) EXPECT_EQ(byte, 0x5A);
  }

  u32 parse(const Bytes& segment, u32 imageIndex = 0) {
    // A copy of exactly that size, so that reading past it is noticed.
    const std::unique_ptr<host::u8[]> exact(new host::u8[segment.size() + 1]);
    if (!segment.empty()) std::memcpy(exact.get(), segment.data(), segment.size());
    return mpo::MpfParseSegment(imageIndex, {list, entries}, {exact.get(), segment.size()}, base);
  }

  MpoList list = {};
  MpoEntry entries[host::mpoMostImages] = {};

 private:
  host::u8 guard_[64];
};

inline Bytes indexOf(const std::vector<MpImage>& images, ByteOrder order = ByteOrder::little) {
  MpfBuilder mpf(order);
  mpf.ifd().number(mpf::imageCount, static_cast<u32>(images.size())).images(images);
  return mpf.build();
}

inline Bytes attributesOf(const std::function<void(MpfBuilder&)>& fill, ByteOrder order) {
  MpfBuilder mpf(order);
  mpf.ifd().number(mpf::imageCount, 1).images({{}});
  mpf.ifd();
  fill(mpf);
  return mpf.build();
}

}  // namespace test

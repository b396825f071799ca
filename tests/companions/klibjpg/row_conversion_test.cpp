#include "companions/klibjpg/row_conversion.h"

#include <gtest/gtest.h>

#include "tests/support/jpeg_builder.h"

namespace {

using support::Bytes;

TEST(InvertInk, TurnsEveryByteOfAnyLength) {
  for (std::size_t length = 0; length < 40; ++length) {
    Bytes source(length);
    for (std::size_t i = 0; i < length; ++i) source[i] = static_cast<host::u8>(i * 37 + length);
    Bytes target(length + 1, 0xAA);
    klibjpg::invertInk(target.data(), source.data(), length);
    for (std::size_t i = 0; i < length; ++i) EXPECT_EQ(target[i], 255 - source[i]);
    EXPECT_EQ(target[length], 0xAA) << length;
  }
}

TEST(InvertInk, WorksInPlace) {
  Bytes row = {0, 1, 2, 127, 128, 253, 254, 255, 9, 10, 11};
  const Bytes turned = {255, 254, 253, 128, 127, 2, 1, 0, 246, 245, 244};
  klibjpg::invertInk(row.data(), row.data(), row.size());
  EXPECT_EQ(row, turned);
}

}  // namespace

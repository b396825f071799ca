// Camera-data heaps as plain trees, and their bytes: a model that shares no code with the software
// under test.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <string_view>
#include <vector>

#include "tests/support/jpeg_builder.h"

namespace test {

using support::Bytes;
using support::bytesOf;

// Values as they lie in memory: little-endian numbers.
Bytes numbers16(std::initializer_list<std::uint16_t> values);
Bytes numbers32(std::initializer_list<std::uint32_t> values);
Bytes reals(std::initializer_list<float> values);
// Texts one after another, each with its NUL.
Bytes texts(std::initializer_list<std::string_view> values);

struct ModelRecord {
  std::uint16_t tag;
  Bytes value = {};  // 8 bytes for a tag with location bits, none for a sub-heap
  std::vector<ModelRecord> children = {};

  [[nodiscard]] bool isSubHeap() const;
  [[nodiscard]] bool liesInEntry() const { return (tag & 0xC000) != 0; }
  bool operator==(const ModelRecord&) const = default;
};

struct ModelHeap {
  bool bigEndian = false;
  std::vector<ModelRecord> records = {};
  // As they lie in memory, behind the byte-order mark: length, type, subtype, version, reserved.
  Bytes header = defaultHeader();

  static Bytes defaultHeader();
  // Laid out as the format describes: values in table order, each block's table at its end, odd
  // values padded with a zero.
  [[nodiscard]] Bytes build() const;
};

// "816:4142 2807(...)" in messages of tests.
void PrintTo(const ModelRecord& record, std::ostream* out);

// The records with their odd values padded, as a file holds them.
std::vector<ModelRecord> padded(std::vector<ModelRecord> records);

// A heap whose blocks are written by hand: for tables and entries that lie.
class RawHeap {
 public:
  struct Entry {
    std::uint16_t tag;
    std::uint32_t size;
    std::uint32_t offset;
  };
  explicit RawHeap(bool bigEndian = false);
  // Bytes of the top block.
  RawHeap& bytes(const Bytes& values);
  RawHeap& zeros(std::size_t count);
  // A record table with its offset, relative to blockStart in the top block.
  RawHeap& table(const std::vector<Entry>& entries, std::size_t blockStart = 0);
  RawHeap& u16(std::uint32_t value);
  RawHeap& u32(std::uint32_t value);
  [[nodiscard]] std::size_t position() const;  // in the top block
  [[nodiscard]] const Bytes& build() const { return bytes_; }

 private:
  bool bigEndian_;
  Bytes bytes_;
};

}  // namespace test

#include "tests/heap/heap_model.h"

#include <algorithm>
#include <bit>
#include <ostream>

namespace test {
namespace {

constexpr std::size_t headerSize = 26;

void put(Bytes& bytes, std::uint64_t value, unsigned width, bool bigEndian) {
  for (unsigned i = 0; i < width; ++i) {
    const unsigned shift = 8 * (bigEndian ? width - 1 - i : i);
    bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  }
}

Bytes turned(Bytes bytes, std::size_t width) {
  for (std::size_t i = 0; i + width <= bytes.size(); i += width) {
    std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(i),
                 bytes.begin() + static_cast<std::ptrdiff_t>(i + width));
  }
  return bytes;
}

Bytes inFileOrder(const Bytes& value, std::uint16_t tag, bool bigEndian) {
  if (!bigEndian) return value;
  const unsigned type = tag & 0x3800;
  if (type == 0x1000) return turned(value, 2);
  return type == 0x1800 ? turned(value, 4) : value;
}

void append(Bytes& target, const Bytes& source) {
  target.insert(target.end(), source.begin(), source.end());
}

Bytes buildBlock(const std::vector<ModelRecord>& records, bool bigEndian) {
  Bytes values;
  Bytes table;
  put(table, records.size(), 2, bigEndian);
  for (const ModelRecord& record : records) {
    put(table, record.tag, 2, bigEndian);
    if (record.liesInEntry()) {
      append(table, inFileOrder(record.value, record.tag, bigEndian));
      continue;
    }
    Bytes value = record.isSubHeap() ? buildBlock(record.children, bigEndian)
                                     : inFileOrder(record.value, record.tag, bigEndian);
    if (value.size() % 2 != 0) value.push_back(0);
    put(table, value.size(), 4, bigEndian);
    put(table, values.size(), 4, bigEndian);
    append(values, value);
  }
  const std::size_t tableOffset = values.size();
  append(values, table);
  put(values, tableOffset, 4, bigEndian);
  return values;
}

}  // namespace

Bytes numbers16(std::initializer_list<std::uint16_t> values) {
  Bytes bytes;
  for (const std::uint16_t value : values) put(bytes, value, 2, false);
  return bytes;
}

Bytes numbers32(std::initializer_list<std::uint32_t> values) {
  Bytes bytes;
  for (const std::uint32_t value : values) put(bytes, value, 4, false);
  return bytes;
}

Bytes reals(std::initializer_list<float> values) {
  Bytes bytes;
  for (const float value : values) put(bytes, std::bit_cast<std::uint32_t>(value), 4, false);
  return bytes;
}

Bytes texts(std::initializer_list<std::string_view> values) {
  Bytes bytes;
  for (const std::string_view value : values) {
    append(bytes, bytesOf(value));
    bytes.push_back(0);
  }
  return bytes;
}

bool ModelRecord::isSubHeap() const {
  const unsigned type = tag & 0x3800;
  return !liesInEntry() && (type == 0x2800 || type == 0x3000);
}

Bytes ModelHeap::defaultHeader() {
  Bytes header = numbers32({26});
  append(header, bytesOf("HEAPJPGM"));
  append(header, numbers32({0x00010001, 0, 0}));
  return header;
}

Bytes ModelHeap::build() const {
  Bytes bytes = bytesOf(bigEndian ? "MM" : "II");
  Bytes rest = header;
  if (bigEndian) {
    for (const std::size_t offset : {0U, 12U, 16U, 20U}) {
      std::reverse(rest.begin() + static_cast<std::ptrdiff_t>(offset),
                   rest.begin() + static_cast<std::ptrdiff_t>(offset) + 4);
    }
  }
  append(bytes, rest);
  append(bytes, buildBlock(records, bigEndian));
  return bytes;
}

void PrintTo(const ModelRecord& record, std::ostream* out) {
  *out << std::hex << record.tag << ':';
  for (const std::uint8_t byte : record.value) *out << byte / 16 << byte % 16;
  if (!record.isSubHeap()) return;
  *out << '(';
  for (const ModelRecord& child : record.children) {
    PrintTo(child, out);
    *out << ' ';
  }
  *out << ')';
}

std::vector<ModelRecord> padded(std::vector<ModelRecord> records) {
  for (ModelRecord& record : records) {
    if (record.value.size() % 2 != 0) record.value.push_back(0);
    record.children = padded(std::move(record.children));
  }
  return records;
}

RawHeap::RawHeap(bool bigEndian) : bigEndian_(bigEndian) {
  bytes_ = ModelHeap{.bigEndian = bigEndian}.build();
  bytes_.resize(headerSize);
}

RawHeap& RawHeap::bytes(const Bytes& values) {
  append(bytes_, values);
  return *this;
}

RawHeap& RawHeap::zeros(std::size_t count) {
  bytes_.resize(bytes_.size() + count);
  return *this;
}

RawHeap& RawHeap::table(const std::vector<Entry>& entries, std::size_t blockStart) {
  const std::size_t offset = position() - blockStart;
  u16(static_cast<std::uint32_t>(entries.size()));
  for (const Entry& entry : entries) u16(entry.tag).u32(entry.size).u32(entry.offset);
  return u32(static_cast<std::uint32_t>(offset));
}

RawHeap& RawHeap::u16(std::uint32_t value) {
  put(bytes_, value, 2, bigEndian_);
  return *this;
}

RawHeap& RawHeap::u32(std::uint32_t value) {
  put(bytes_, value, 4, bigEndian_);
  return *this;
}

std::size_t RawHeap::position() const { return bytes_.size() - headerSize; }

}  // namespace test

// Property fields made by hand, which free their blocks.
#pragma once

#include <string_view>

#include "platform/global_memory.h"
#include "tests/exif/exif_test.h"

namespace test {

// A descriptor of its own, outside a record.
class MadeField {
 public:
  MadeField(host::u16 id, host::u16 kind, host::u16 tiffType) {
    field_.descriptorSize = sizeof field_;
    field_.fieldId = id;
    field_.valueKind = kind;
    field_.sourceGroup = tiffType;
  }
  MadeField(const MadeField&) = delete;
  MadeField& operator=(const MadeField&) = delete;
  ~MadeField() {
    const bool block = field_.valueKind == host::kindText || field_.valueKind == host::kindBlock;
    if (block && field_.data != 0) GlobalFree(reinterpret_cast<HGLOBAL>(field_.data));
  }

  MadeField& number(host::u32 value) {
    field_.data = value;
    return *this;
  }
  // The bytes of the block as they are, a prefix included.
  MadeField& data(const Bytes& bytes) {
    field_.data = reinterpret_cast<host::u64>(newBlock(bytes));
    field_.dataSize = static_cast<host::u32>(bytes.size());
    return *this;
  }
  MadeField& payload(const Bytes& bytes) {
    const Bytes prefix =
        bytesOfNumbers(FileOrder::little, 4, {static_cast<host::u64>(bytes.size())});
    return data(support::joined(prefix, bytes));
  }
  MadeField& shorts(const std::vector<host::u64>& values) {
    return payload(bytesOfNumbers(FileOrder::little, 2, values));
  }
  MadeField& longs(const std::vector<host::u64>& values) {
    return payload(bytesOfNumbers(FileOrder::little, 4, values));
  }

  [[nodiscard]] host::PropertyField& field() { return field_; }
  [[nodiscard]] Bytes block() const {
    const auto* first = reinterpret_cast<const host::u8*>(field_.data);
    return first != nullptr ? Bytes(first, first + field_.dataSize) : Bytes{};
  }
  // The descriptor for a record, which then owns the block.
  [[nodiscard]] host::PropertyField release() {
    const host::PropertyField given = field_;
    field_.data = 0;
    return given;
  }

 private:
  static void* newBlock(const Bytes& bytes) {
    void* block = GlobalAlloc(platform::fixedZeroed, bytes.size());
    std::copy(bytes.begin(), bytes.end(), static_cast<host::u8*>(block));
    return block;
  }
  host::PropertyField field_ = {};
};

}  // namespace test

// Property records with camera data, as a host holds and edits them, and the heap inside.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "frame/module.h"
#include "host/property_record.h"
#include "property/heap_parser.h"
#include "property/heap_serialiser.h"
#include "tests/heap/heap_model.h"
#include "tests/plugin/doubles/doubles.h"

namespace test {

// A field and what it holds.
struct HeldField {
  host::u16 id;
  host::u16 kind;
  host::u16 group;
  std::string name;
  host::u32 dataSize;
  host::u64 number;  // of kinds that hold their value themselves
  std::string text;
  Bytes block;  // prefix and value
};

class PropertyHolder {
 public:
  PropertyHolder() = default;
  PropertyHolder(const PropertyHolder&) = delete;
  PropertyHolder& operator=(const PropertyHolder&) = delete;
  ~PropertyHolder() { doubles::freeProperty(handle_); }

  [[nodiscard]] HGLOBAL handle() const { return handle_; }
  [[nodiscard]] HGLOBAL* slot() { return &handle_; }

  // Field 5000 with the 32-bit length in front, as the expansion makes it.
  void addHeap(const Bytes& heap);
  // The whole APP0 segment, as the metadata scan keeps it.
  void addSegment(const Bytes& heap);
  void addNumber(host::u16 id, host::u16 kind, host::u64 value);
  void addText(host::u16 id, std::string_view text);
  void addDate(host::u16 id, host::u16 date, host::u16 time);
  // The fields of the heap's items, added by the software under test.
  [[nodiscard]] int expand(const Bytes& heap);

  // Edits of the first field with that id.
  void setNumber(host::u16 id, host::u64 value);
  void setText(host::u16 id, std::string_view text);

  [[nodiscard]] std::vector<HeldField> fields() const;
  [[nodiscard]] std::optional<HeldField> field(host::u16 id) const;
  // The bytes of the first field 5000 behind its prefix.
  [[nodiscard]] Bytes heap() const;

 private:
  void addBlock(host::u16 group, const Bytes& block);
  void append(const host::PropertyField& field);
  template <typename Edit>
  void edit(host::u16 id, Edit edit);

  HGLOBAL handle_ = nullptr;
};

// Every test begins with doubles at their defaults.
class HeapTest : public testing::Test {
 protected:
  void SetUp() override { doubles::state().reset(); }

  // What the software under test reads out of a heap, as a model; none when it refuses the heap.
  static std::optional<ModelHeap> parsed(const Bytes& heap);
  // Parsed and serialised again.
  static Bytes rewritten(const Bytes& heap);
  static bool writeBack(const PropertyHolder& property);

  // The heap after the edits that prepare puts beside it; empty when the write-back failed.
  static Bytes edited(const Bytes& heap, const std::function<void(PropertyHolder&)>& prepare);
  // The records after one edit; none when it failed.
  static std::vector<ModelRecord> recordsAfterText(const std::vector<ModelRecord>& records,
                                                   host::u16 id, std::string_view text);
  static std::vector<ModelRecord> recordsAfterNumber(const std::vector<ModelRecord>& records,
                                                     host::u16 id, host::u16 kind,
                                                     host::u64 number);
};

}  // namespace test

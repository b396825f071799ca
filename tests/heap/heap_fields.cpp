#include "tests/heap/heap_fields.h"

#include <cstring>

#include "platform/global_memory.h"
#include "property/heap_expansion.h"
#include "property/heap_write_back.h"

namespace test {
namespace {

using host::PropertyField;
using host::PropertyHeader;

PropertyField newField(host::u16 id, host::u16 kind) {
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = kind;
  field.fieldId = id;
  return field;
}

host::u64 newBlock(const void* bytes, std::size_t size, std::size_t blockSize) {
  HGLOBAL block = GlobalAlloc(platform::fixedZeroed, blockSize);
  std::memcpy(block, bytes, size);
  return reinterpret_cast<host::u64>(block);
}

HeldField held(const PropertyField& field) {
  HeldField result = {
      field.fieldId, field.valueKind, field.sourceGroup, {}, field.dataSize, field.data, {}, {}};
  const char* name = reinterpret_cast<const char*>(&field) + offsetof(PropertyField, name);
  result.name.assign(name, strnlen(name, 62));
  const auto* data = reinterpret_cast<const host::u8*>(field.data);
  if (field.valueKind == host::kindBlock) result.block.assign(data, data + field.dataSize);
  if (field.valueKind == host::kindText && data != nullptr) {
    result.text = reinterpret_cast<const char*>(data);
  }
  return result;
}

ModelRecord modelOf(const property::ParsedHeap& heap, host::i32 index) {
  const property::HeapRecord& record = heap.record(index);
  const auto value = heap.value(index);
  ModelRecord model = {record.tag, {value.begin(), value.end()}};
  for (host::i32 child = record.firstChild; child >= 0; child = heap.record(child).nextSibling) {
    model.children.push_back(modelOf(heap, child));
  }
  return model;
}

}  // namespace

void PropertyHolder::append(const PropertyField& field) {
  ASSERT_EQ(doubles::reserveFields(&handle_, 1), 1);
  ASSERT_EQ(doubles::appendField(handle_, &field), 1);
}

void PropertyHolder::addBlock(host::u16 group, const Bytes& block) {
  PropertyField field = newField(host::fieldHeap, host::kindBlock);
  field.sourceGroup = group;
  field.dataSize = static_cast<host::u32>(block.size());
  field.data = newBlock(block.data(), block.size(), block.size());
  append(field);
}

void PropertyHolder::addHeap(const Bytes& heap) {
  addBlock(0, support::joined(numbers32({static_cast<std::uint32_t>(heap.size())}), heap));
}

void PropertyHolder::addSegment(const Bytes& heap) {
  const std::size_t length = heap.size() + 2;
  const Bytes head = {0xFF, 0xE0, static_cast<host::u8>(length >> 8),
                      static_cast<host::u8>(length)};
  addBlock(host::groupRawSegment, support::joined(head, heap));
}

void PropertyHolder::addNumber(host::u16 id, host::u16 kind, host::u64 value) {
  PropertyField field = newField(id, kind);
  field.data = value;
  append(field);
}

void PropertyHolder::addText(host::u16 id, std::string_view text) {
  PropertyField field = newField(id, host::kindText);
  field.dataSize = static_cast<host::u32>(text.size());
  field.data = newBlock(text.data(), text.size(), text.size() + 2);
  append(field);
}

void PropertyHolder::addDate(host::u16 id, host::u16 date, host::u16 time) {
  addNumber(id, host::kindDateTime, host::u32{time} << 16 | date);
}

int PropertyHolder::expand(const Bytes& heap) {
  return property::expandHeap(frame::resourceLibrary(), heap, static_cast<host::u16>(heap.size()),
                              &handle_);
}

template <typename Edit>
void PropertyHolder::edit(host::u16 id, Edit edit) {
  const platform::LockedGlobal lock(handle_);
  auto* header = static_cast<PropertyHeader*>(lock.address());
  auto* first = reinterpret_cast<PropertyField*>(header + 1);
  for (int index = 0; index < header->fieldCount; ++index) {
    if (first[index].fieldId == id) return edit(first[index]);
  }
  ADD_FAILURE() << "no field " << id;
}

void PropertyHolder::setNumber(host::u16 id, host::u64 value) {
  edit(id, [value](PropertyField& field) { field.data = value; });
}

void PropertyHolder::setText(host::u16 id, std::string_view text) {
  edit(id, [text](PropertyField& field) {
    GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
    field.data = newBlock(text.data(), text.size(), text.size() + 2);
    field.dataSize = static_cast<host::u32>(text.size());
  });
}

std::vector<HeldField> PropertyHolder::fields() const {
  std::vector<HeldField> fields;
  if (handle_ == nullptr) return fields;
  const platform::LockedGlobal lock(handle_);
  const auto* header = static_cast<const PropertyHeader*>(lock.address());
  const auto* first = reinterpret_cast<const PropertyField*>(header + 1);
  EXPECT_EQ(header->recordSize, 8 + 88 * header->fieldCount);
  for (int index = 0; index < header->fieldCount; ++index) fields.push_back(held(first[index]));
  return fields;
}

std::optional<HeldField> PropertyHolder::field(host::u16 id) const {
  for (HeldField& field : fields()) {
    if (field.id == id) return field;
  }
  return std::nullopt;
}

Bytes PropertyHolder::heap() const {
  const auto found = field(host::fieldHeap);
  if (!found || found->block.size() < 4) return {};
  return {found->block.begin() + 4, found->block.end()};
}

std::optional<ModelHeap> HeapTest::parsed(const Bytes& heap) {
  const auto result = property::parseHeap(frame::resourceLibrary(), heap);
  if (!result) return std::nullopt;
  ModelRecord top = modelOf(*result, 0);
  return ModelHeap{result->bigEndian(), std::move(top.children),
                   Bytes(top.value.begin() + 2, top.value.end())};
}

Bytes HeapTest::rewritten(const Bytes& heap) {
  const auto result = property::parseHeap(frame::resourceLibrary(), heap);
  if (!result) return {};
  Bytes bytes(static_cast<std::size_t>(property::serialisedHeapLength(*result)));
  property::serialiseHeap(*result, bytes);
  return bytes;
}

bool HeapTest::writeBack(const PropertyHolder& property) {
  return property::writeHeapBack(frame::resourceLibrary(), property.handle());
}

Bytes HeapTest::edited(const Bytes& heap, const std::function<void(PropertyHolder&)>& prepare) {
  PropertyHolder property;
  property.addHeap(heap);
  prepare(property);
  if (writeBack(property)) return property.heap();
  EXPECT_EQ(property.heap(), heap) << "a failure changes nothing";
  return {};
}

std::vector<ModelRecord> HeapTest::recordsAfterText(const std::vector<ModelRecord>& records,
                                                    host::u16 id, std::string_view text) {
  const auto model = parsed(edited(ModelHeap{false, records}.build(),
                                   [&](PropertyHolder& property) { property.addText(id, text); }));
  return model ? model->records : std::vector<ModelRecord>{};
}

std::vector<ModelRecord> HeapTest::recordsAfterNumber(const std::vector<ModelRecord>& records,
                                                      host::u16 id, host::u16 kind,
                                                      host::u64 number) {
  const auto model =
      parsed(edited(ModelHeap{false, records}.build(),
                    [&](PropertyHolder& property) { property.addNumber(id, kind, number); }));
  return model ? model->records : std::vector<ModelRecord>{};
}

}  // namespace test

#include "exif/iptc_datasets.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>
#include <optional>

#include "exif/field_room.h"
#include "exif/tag_tables.h"
#include "frame/module.h"
#include "property/field_block.h"

namespace exif {
namespace {

using host::i64;
using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using Bytes = std::span<const u8>;

constexpr u8 tagMarker = 0x1C;
constexpr u8 applicationRecord = 2;
constexpr std::size_t headSize = 5;  // marker, record, dataset, 16-bit length
constexpr std::size_t shortestDataset = headSize + 1;

struct LabelOfDataset {
  u16 dataset;
  u32 stringId;
};
constexpr LabelOfDataset labels[] = {
    {0, 2400},   {5, 2401},   {10, 2402},  {15, 2403},  {20, 2404},  {25, 2405},  {40, 2406},
    {55, 2407},  {80, 2408},  {85, 2409},  {90, 2410},  {95, 2411},  {100, 2412}, {101, 2412},
    {103, 2413}, {105, 2414}, {110, 2415}, {115, 2416}, {116, 2417}, {120, 2418}, {122, 2419}};

// A dataset as it lies in the stream.
struct Dataset {
  u8 record;
  u8 number;
  Bytes data;
};

// A length that runs past the end is cut to one byte less than what is there: kept.
Dataset readDataset(Bytes rest) noexcept {
  const std::size_t length = std::size_t{rest[3]} << 8 | rest[4];
  const std::size_t there = rest.size() - headSize;
  const std::size_t used = length <= there ? length : there - 1;
  return {rest[1], rest[2], rest.subspan(headSize, used)};
}

// Turns datasets into fields.
class Decoder {
 public:
  Decoder(HGLOBAL* slot, ValueBudget& budget) noexcept
      : slot_(slot), budget_(budget), table_(iptcTable()) {}

  void take(const Dataset& dataset) noexcept {
    if (dataset.record != applicationRecord || dataset.data.empty()) return;
    const auto row = std::find_if(
        table_.begin(), table_.end(),
        [&](const host::TagDefinition& definition) { return definition.tag == dataset.number; });
    if (row != table_.end()) add(dataset, row->fieldId);
  }

 private:
  void add(const Dataset& dataset, u16 fieldId) noexcept {
    static_cast<void>(reserveFields(slot_, 1));  // what counts is the room that there is
    FieldRoom room(slot_);
    if (!room || room.full()) return;
    loadLabel(dataset.number);
    PropertyField field = describe(fieldId);
    if (!budget_.take(dataset.data.size()) || !storeText(dataset.data, field)) return;
    room.add(field);
    room.publish();
  }

  // A dataset without a label of its own keeps the one loaded last: kept.
  void loadLabel(u8 dataset) noexcept {
    const auto* label =
        std::find_if(std::begin(labels), std::end(labels),
                     [=](const LabelOfDataset& row) { return row.dataset == dataset; });
    if (label == std::end(labels)) return;
    LoadStringA(frame::resourceLibrary(), label->stringId, label_, sizeof label_);
  }

  PropertyField describe(u16 fieldId) const noexcept {
    PropertyField field = {};
    field.descriptorSize = sizeof field;
    field.valueKind = host::kindText;
    field.fieldId = fieldId;
    std::memcpy(field.name, label_, std::min(std::strlen(label_), sizeof field.name));
    return field;
  }

  static bool storeText(Bytes data, PropertyField& field) noexcept {
    platform::OwnedGlobal block(platform::fixedZeroed, data.size() + 1);
    if (!block) return false;
    std::memcpy(block.get(), data.data(), data.size());
    field.dataSize = static_cast<u32>(data.size());
    field.data = reinterpret_cast<u64>(block.release());
    return true;
  }

  HGLOBAL* slot_;
  ValueBudget& budget_;
  TagTable table_;
  char label_[260] = {};
};

bool isIptcField(const PropertyField& field) noexcept {
  return field.fieldId >= host::fieldIptcFirst && field.fieldId <= host::fieldIptcLast;
}

// The write position moves on whatever the buffer holds, so that counting and writing agree.
class DatasetWriter {
 public:
  explicit DatasetWriter(std::span<u8> buffer) noexcept : buffer_(buffer) {}

  void add(const PropertyField& field, u8 dataset) noexcept {
    if (field.valueKind != host::kindText) {
      const u8 emptyVersion[headSize] = {tagMarker, applicationRecord, 0, 0, 0};
      copy(0, emptyVersion);
      total_ = headSize;
    }
    const u8 head[headSize] = {tagMarker, applicationRecord, dataset,
                               static_cast<u8>(field.dataSize >> 8),
                               static_cast<u8>(field.dataSize)};
    copy(position_, head);
    copy(position_ + headSize, property::blockOf(field));
    position_ += headSize + u64{field.dataSize};
    total_ += headSize + u64{field.dataSize};
  }
  [[nodiscard]] u64 total() const noexcept { return total_; }

 private:
  void copy(u64 position, Bytes bytes) noexcept {
    if (position >= buffer_.size()) return;
    const std::size_t room = buffer_.size() - static_cast<std::size_t>(position);
    const std::size_t length = std::min(room, bytes.size());
    if (length != 0) std::memcpy(buffer_.data() + position, bytes.data(), length);
  }

  std::span<u8> buffer_;
  u64 position_ = 0;
  u64 total_ = 0;
};

u64 writeDatasets(std::span<const PropertyField> fields, std::span<u8> buffer) noexcept {
  const TagTable table = iptcTable();
  if (table.empty()) return 0;
  DatasetWriter writer(buffer);
  for (const PropertyField& field : fields) {
    if (!isIptcField(field)) continue;
    const std::size_t row = static_cast<std::size_t>(field.fieldId - host::fieldIptcFirst);
    writer.add(field, static_cast<u8>(table[row].tag));
  }
  return writer.total();
}

}  // namespace

void decodeDatasets(std::span<const u8> data, HGLOBAL* slot, ValueBudget& budget) noexcept {
  Decoder decoder(slot, budget);
  std::size_t position = 0;
  while (position < data.size()) {
    const Bytes rest = data.subspan(position);
    if (rest[0] != tagMarker || rest.size() < shortestDataset) {
      ++position;
      continue;
    }
    const Dataset dataset = readDataset(rest);
    decoder.take(dataset);
    position += headSize + dataset.data.size();
  }
}

u64 serialisedDatasetsSize(std::span<const PropertyField> fields) noexcept {
  return writeDatasets(fields, {});
}

u64 serialiseDatasets(std::span<const PropertyField> fields, std::span<u8> buffer) noexcept {
  if (buffer.data() == nullptr) return 0;
  const u64 total = writeDatasets(fields, buffer);
  constexpr u32 largestInline = 4;
  for (const PropertyField& field : fields) {
    if (!isIptcField(field) || field.dataSize <= largestInline || !property::ownsBlock(field))
      continue;
    GlobalUnlock(reinterpret_cast<HGLOBAL>(field.data));
  }
  return total;
}

}  // namespace exif

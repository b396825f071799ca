#include "exif/directory.h"

#include <cstring>

#include "exif/definition_set.h"
#include "exif/entry_store.h"
#include "exif/field_room.h"
#include "exif/tags.h"

namespace exif {
namespace {

using host::i32;
using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using platform::ByteReader;

// Room beyond the entries that readers of the host's older records rely on; the GPS directory has
// never had it.
constexpr u32 spareFields = 4;

template <typename Number>
void note(Number* out, Number value) noexcept {
  if (out != nullptr) *out = value;
}

void notePointers(const DirectoryEntry& entry, const PointerOuts& outs) noexcept {
  if (entry.tag == tagMakerNote) note(outs.makerNote, entry.valueOrOffset);
  if (entry.tag == tagPhotoshop) note(outs.photoshop, entry.valueOrOffset);
  if (entry.tag == tagIptc) {
    note(outs.iptcOffset, entry.valueOrOffset);
    note(outs.iptcCount, entry.count);
  }
}

PropertyField describe(u16 valueKind, u16 fieldId, const Label& label) noexcept {
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = valueKind;
  field.fieldId = fieldId;
  std::memcpy(field.name, label.data(), label.size());
  return field;
}

// Adds the field of one entry whose row is known.
void addField(const ByteReader& tiff, const DirectoryEntry& entry, PropertyField field,
              FieldRoom& room, ValueBudget& budget) noexcept {
  if (room.full()) return;
  if (storeEntry(tiff, entry, BlockHead::length, field, budget)) room.add(field);
}

// Calls use for each of the directory's entries that lie inside.
template <typename Use>
void forEachEntry(const ByteReader& tiff, u32 offset, u32 count, Use use) noexcept {
  u64 at = u64{offset} + entryCountSize;
  for (u32 index = 0; index < count; ++index, at += entrySize) {
    const std::optional<DirectoryEntry> entry = readEntry(tiff, at);
    if (!entry) return;
    use(*entry);
  }
}

}  // namespace

bool readDirectory(const ByteReader& tiff, u32 offset, HGLOBAL* slot, ValueBudget& budget,
                   const PointerOuts& outs) noexcept {
  const u32 count = readEntryCount(tiff, offset);
  if (!reserveFields(slot, count + spareFields)) return false;
  FieldRoom room(slot);
  DefinitionSet definitions;
  if (!room || !definitions.buildExif(bothGroups)) return false;
  forEachEntry(tiff, offset, count, [&](const DirectoryEntry& entry) {
    if (entry.count < 0 || !isKnownType(entry.type)) return;
    notePointers(entry, outs);
    const std::optional<unsigned> row = definitions.find(entry.tag);
    if (!row) return;
    const host::TagDefinition& definition = definitions.row(*row);
    addField(tiff, entry, describe(definition.kind, definition.fieldId, definitions.label(*row)),
             room, budget);
  });
  room.publish();
  return true;
}

bool readGpsDirectory(const ByteReader& tiff, u32 offset, HGLOBAL* slot,
                      ValueBudget& budget) noexcept {
  const u32 count = readEntryCount(tiff, offset);
  if (count < 1 || count > host::gpsRows || !reserveFields(slot, count)) return false;
  FieldRoom room(slot);
  DefinitionSet definitions;
  if (!room || !definitions.buildGps()) return false;
  forEachEntry(tiff, offset, count, [&](const DirectoryEntry& entry) {
    const std::optional<unsigned> row = definitions.find(entry.tag);
    if (!row) return;
    const auto fieldId = static_cast<u16>(host::fieldGpsFirst + *row);
    addField(tiff, entry, describe(definitions.row(*row).kind, fieldId, definitions.label(*row)),
             room, budget);
  });
  room.publish();
  return true;
}

}  // namespace exif

#include "exif/maker_note.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "exif/entry_store.h"
#include "exif/field_room.h"

namespace exif {
namespace {

using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using platform::ByteOrder;
using platform::ByteReader;

constexpr std::string_view signedNote{"Nikon"};
constexpr u64 signatureSize = 10;
constexpr u16 littleMark = 0x4949;  // the same in either order
constexpr u16 bigMark = 0x4D4D;
constexpr u64 directoryOffsetAt = 4;
constexpr u32 onlyDirectoryOffset = 8;
constexpr u16 mostEntries = 300;
constexpr u32 spareFields = 4;

// Where the entries lie, and what their offsets count in.
struct Note {
  ByteReader values;
  u64 directory;
};

bool beginsWith(const ByteReader& tiff, u64 offset, std::string_view text) noexcept {
  const auto bytes = tiff.bytes(offset, text.size());
  return bytes && std::equal(text.begin(), text.end(), bytes->begin());
}

// None when the note's own header is not one that can be followed.
std::optional<Note> findDirectory(const ByteReader& tiff, u64 offset) noexcept {
  if (beginsWith(tiff, offset, signedNote)) offset += signatureSize;
  const u16 mark = tiff.u16(offset).value_or(0);
  if (mark != littleMark && mark != bigMark) return Note{tiff, offset};
  const std::optional<ByteReader> rest = tiff.sub(offset, tiff.size() - offset);
  if (!rest) return std::nullopt;
  const ByteReader own = rest->as(mark == bigMark ? ByteOrder::big : ByteOrder::little);
  if (own.u32(directoryOffsetAt) != onlyDirectoryOffset) return std::nullopt;
  return Note{own, onlyDirectoryOffset};
}

void addEntry(const Note& note, u64 index, FieldRoom& room, ValueBudget& budget) noexcept {
  const std::optional<DirectoryEntry> entry =
      readEntry(note.values, note.directory + entryCountSize + index * entrySize);
  if (!entry || entry->count < 0 || static_cast<host::i32>(entry->valueOrOffset) < 0) return;
  if (!isKnownType(entry->type) || room.full()) return;
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = host::kindBlock;
  field.fieldId = static_cast<u16>(host::fieldMakerNoteFirst + index);
  if (storeEntry(note.values, *entry, BlockHead::entry, field, budget)) room.add(field);
}

}  // namespace

bool decodeMakerNote(const ByteReader& tiff, u32 offset, HGLOBAL* slot) noexcept {
  const std::optional<Note> note = findDirectory(tiff, offset);
  if (!note) return true;
  const u16 count = readEntryCount(note->values, note->directory);
  if (count < 1 || count > mostEntries) return false;
  if (!reserveFields(slot, count + spareFields)) return true;
  FieldRoom room(slot);
  if (!room) return true;
  ValueBudget budget;
  for (u64 index = 0; index < count; ++index) addEntry(*note, index, room, budget);
  room.publish();
  return true;
}

}  // namespace exif

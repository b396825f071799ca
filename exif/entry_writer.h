// Writing TIFF directory entries (TIFF 6.0, section 2, "IFD Entry"), little-endian always.
#pragma once

#include <span>

#include "exif/directory_entry.h"
#include "host/property_record.h"
#include "platform/byte_writer.h"

namespace exif {

// A TIFF structure that is being written: the directories one behind the other, and behind the room
// for all of them the values that do not fit into their entries.
class TiffWriter {
 public:
  // tiff: from the byte-order mark on. directorySize: bytes kept for the header and all
  // directories.
  TiffWriter(std::span<host::u8> tiff, host::u64 directorySize) noexcept;

  // The next bytes of the header and the directories.
  platform::ByteWriter directories;
  // The next bytes of the values.
  platform::ByteWriter values;

  // Offsets from the byte-order mark, as entries hold them.
  [[nodiscard]] host::u32 directoryOffset() const noexcept {
    return static_cast<host::u32>(directories.size());
  }
  [[nodiscard]] host::u32 valueOffset() const noexcept {
    return static_cast<host::u32>(valuesAt_ + values.size());
  }

  // An entry whose value or offset is known now, or is patched into the slot later.
  void entry(host::u16 tag, TiffType type, host::u32 count, host::u32 valueOrOffset) noexcept;
  [[nodiscard]] platform::ByteWriter::Slot pointerEntry(host::u16 tag) noexcept;

 private:
  host::u64 valuesAt_;
};

// Writes the entry of a field, and its value behind the directories when it has more than 4 bytes.
// A type that TIFF 6.0 has is the entry's; in its place any other takes the one that the field
// carries. The count is what the value holds in whole elements, but at least 1: a number lies in
// the field itself, and an empty field is written as one element of zero bytes. False when neither
// type is one of TIFF 6.0, with nothing written: the next entry takes the place.
bool writeFieldEntry(TiffWriter& out, host::u16 tag, host::u16 type,
                     const host::PropertyField& field) noexcept;

// The bytes that a field's value takes up behind the directories: none up to four. A block field's
// prefix is not part of the value.
[[nodiscard]] host::u64 valueBytesOf(const host::PropertyField& field) noexcept;

}  // namespace exif

#include "exif/walker.h"

#include <algorithm>

#include "exif/directory.h"
#include "exif/directory_entry.h"
#include "exif/iptc_datasets.h"
#include "exif/tags.h"
#include "property/app_segment.h"

namespace exif {
namespace {

using host::i32;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;
using platform::ByteReader;

constexpr u64 ifd0OffsetAt = 4;
constexpr i32 shortestIptc = 6;  // a dataset head and one byte

// What IFD0 points to; an offset of 0 points nowhere.
struct Pointers {
  u32 exif = 0;
  u32 gps = 0;
  bool makerNoteSeen = false;
};

Pointers findPointers(const ByteReader& tiff, u32 ifd0) noexcept {
  Pointers found;
  const u16 count = readEntryCount(tiff, ifd0);
  for (u64 index = 0; index < count; ++index) {
    const u64 at = u64{ifd0} + entryCountSize + index * entrySize;
    const std::optional<ByteReader> entry = tiff.sub(at, entrySize);
    if (!entry) break;
    const u16 tag = *entry->u16(0);
    const u32 value = *entry->u32(8);  // whatever the entry's type says
    if (tag == tagExifPointer) found.exif = value;
    if (tag == tagGpsPointer) found.gps = value;
    if (tag == tagMakerNote) found.makerNoteSeen = true;
  }
  return found;
}

// What the directories say about blocks elsewhere in the file.
struct Blocks {
  u32 makerNote = 0;
  u32 photoshop = 0;
  u32 iptcOffset = 0;
  i32 iptcCount = 0;
};

// A maker note and a Photoshop block are asked for until one is known, the IPTC block every time.
PointerOuts askFor(Blocks& blocks, bool makerNoteKnown) noexcept {
  return {.makerNote = makerNoteKnown || blocks.makerNote != 0 ? nullptr : &blocks.makerNote,
          .photoshop = blocks.photoshop != 0 ? nullptr : &blocks.photoshop,
          .iptcOffset = &blocks.iptcOffset,
          .iptcCount = &blocks.iptcCount};
}

// The count is a length in bytes, whatever the entry's type: kept, of a block typed LONG only the
// first quarter is read.
void readIptc(const ByteReader& tiff, const Blocks& blocks, HGLOBAL* slot,
              ValueBudget& budget) noexcept {
  if (blocks.iptcOffset == 0 || blocks.iptcCount < shortestIptc) return;
  if (blocks.iptcOffset >= tiff.size()) return;
  const u64 length =
      std::min<u64>(static_cast<u64>(blocks.iptcCount), tiff.size() - blocks.iptcOffset);
  if (const auto block = tiff.bytes(blocks.iptcOffset, length)) {
    decodeDatasets(*block, slot, budget);
  }
}

}  // namespace

bool walkExif(std::span<const u8> payload, u32 length, HGLOBAL* slot) noexcept {
  constexpr std::size_t identifierSize = property::exifSignature.size();
  if (payload.size() <= identifierSize) return false;
  const std::span<const u8> bytes = payload.subspan(identifierSize);
  // Only this byte decides: neither the second one nor the number 42 is looked at.
  const ByteReader tiff(bytes, bytes[0] == 'M' ? ByteOrder::big : ByteOrder::little);
  const std::optional<u32> ifd0 = tiff.u32(ifd0OffsetAt);
  if (!ifd0 || *ifd0 >= length) return false;

  const Pointers pointers = findPointers(tiff, *ifd0);
  if (*ifd0 == 0 && pointers.exif == 0 && pointers.gps == 0) return false;
  ValueBudget budget;
  Blocks blocks;
  if (*ifd0 != 0) {
    readDirectory(tiff, *ifd0, slot, budget, askFor(blocks, pointers.makerNoteSeen));
  }
  if (pointers.exif != 0) {
    readDirectory(tiff, pointers.exif, slot, budget, askFor(blocks, pointers.makerNoteSeen));
  }
  if (pointers.gps != 0) readGpsDirectory(tiff, pointers.gps, slot, budget);
  readIptc(tiff, blocks, slot, budget);
  return true;
}

}  // namespace exif

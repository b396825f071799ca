// Reading a multi-picture segment into the image list.
#include <algorithm>
#include <bitset>
#include <cstring>

#include "mpo/mpf_segment.h"

namespace mpo {
namespace {

using host::i32;
using host::MpoEntry;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;
using platform::ByteReader;

constexpr u32 firstIfdOffset = 4;
constexpr u32 entriesOffset = 2;  // in an IFD, behind the count
constexpr u32 valueOffset = 8;    // in an IFD entry
constexpr std::size_t longestSegment = 0x10000;

// The 16 bytes of one image in the MP Entry table (CIPA DC-007, 5.2.3.3).
struct TableEntry {
  u32 attribute;
  u32 size;
  u32 offset;
  u16 dependent1;
  u16 dependent2;

  [[nodiscard]] bool child() const noexcept { return (attribute >> 30 & 1) != 0; }
  // Kept: of class and sub-code only the low four bits count.
  [[nodiscard]] u32 typeClass() const noexcept { return attribute >> 16 & 0xF; }
  [[nodiscard]] u32 subCode() const noexcept { return attribute & 0xF; }
};

u32 kindOf(const TableEntry& entry) noexcept {
  constexpr u32 anySubCode = 16;
  constexpr struct {
    u32 typeClass, subCode;
    host::MpoKind kind;
  } kinds[] = {{1, 1, host::mpoLargeThumbnailVga}, {1, 2, host::mpoLargeThumbnailFullHd},
               {2, 1, host::mpoPanorama},          {2, 2, host::mpoDisparity},
               {2, 3, host::mpoMultiAngle},        {3, anySubCode, host::mpoBaselinePrimary}};
  for (const auto& row : kinds) {
    const bool subCodeFits = row.subCode == anySubCode || row.subCode == entry.subCode();
    if (row.typeClass == entry.typeClass() && subCodeFits) return row.kind;
  }
  return host::mpoOther;
}

// Array positions of the children by entry number, which is 16 bits wide in the file; cameras write
// a few dozen images at most, so numbers past the map are taken for non-children.
class ChildPositions {
 public:
  void enter(u32 entryNumber, i32 position) noexcept { positions_[entryNumber] = position; }
  // -1 for none; 0 for a number that is no child's.
  [[nodiscard]] i32 find(u16 entryNumber) const noexcept {
    return entryNumber < std::size(positions_) ? positions_[entryNumber] : 0;
  }

 private:
  i32 positions_[256] = {-1};
};

class Parser {
 public:
  Parser(u32 imageIndex, const MpoIndex& index, const ByteReader& reader, u32 base) noexcept
      : imageIndex_(imageIndex), index_(index), reader_(reader), base_(base) {
    chooseEntry();
  }

  u32 parse() noexcept {
    u32 offset = reader_.u32(firstIfdOffset).value_or(0);
    while (offset != 0 && offset < reader_.size() && !visited_[offset]) {
      visited_.set(offset);
      offset = parseIfd(offset);
    }
    return result_;
  }

 private:
  // Returns the next IFD's offset, 0 when there is none.
  u32 parseIfd(u32 offset) noexcept {
    const u32 count = reader_.u16(offset).value_or(0);
    u64 position = u64{offset} + entriesOffset;
    for (u32 entry = 0; entry < count; ++entry, position += mpfIfdEntrySize) {
      if (!reader_.contains(position, mpfIfdEntrySize)) return 0;
      // IFDs that lie over each other could hold far more entries than the segment has room for.
      if (++walked_ > reader_.size() / mpfIfdEntrySize) return 0;
      const MpfTag* row = findMpfTag(*reader_.u16(position));
      if (row != nullptr) takeTag(*row, position + valueOffset);
    }
    return reader_.u32(position).value_or(0);
  }

  // place: offset of the value word, which lies inside.
  void takeTag(const MpfTag& row, u64 place) noexcept {
    const u32 value = *reader_.u32(place);
    switch (row.value) {
      case MpfValue::version:
        return takeVersion(row, value);
      case MpfValue::imageCount:
        return takeImageCount(value);
      case MpfValue::entryTable:
        return takeEntryTable(value);
      case MpfValue::uidList:
        return takeUidList(row, value);
      case MpfValue::totalFrames:
        index_.list.totalFrames = value;
        return;
      case MpfValue::imageNumber:
        if (MpoEntry* entry = entryFor(row)) entry->imageNumber = static_cast<i32>(value - 1);
        return;
      case MpfValue::number:
        if (MpoEntry* entry = entryFor(row)) storeWord(*entry, row.member, value);
        return;
      case MpfValue::ratio:
        return takeRatio(row, value);
    }
  }

  void takeVersion(const MpfTag& row, u32 value) noexcept {
    if (imageIndex_ == 0) {
      index_.list.version = value;
    } else if (MpoEntry* entry = entryFor(row)) {
      entry->version = value;
    }
  }

  void takeImageCount(u32 value) noexcept {
    const u32 count = std::min(value, host::mpoMostImages);
    index_.list.imageCount = count;
    if (index_.list.totalFrames == 0) index_.list.totalFrames = count;
  }

  void takeRatio(const MpfTag& row, u32 offset) noexcept {
    const std::optional<u32> numerator = reader_.u32(offset);
    const std::optional<u32> denominator = reader_.u32(u64{offset} + sizeof(u32));
    if (current_ != nullptr && !(numerator && denominator)) return;
    if (MpoEntry* entry = entryFor(row)) {
      storeWord(*entry, row.member, *numerator);
      storeWord(*entry, row.member + sizeof(u32), *denominator);
    }
  }

  // A list that a host hands in may count more than there is room for.
  [[nodiscard]] u32 imageCount() const noexcept {
    return std::min(index_.list.imageCount, host::mpoMostImages);
  }

  void takeUidList(const MpfTag& row, u32 offset) noexcept {
    const u32 count = imageCount();
    if (index_.list.entries == 0 || !fits(offset, u64{count} * host::mpoUidLength)) return;
    // Kept: identifiers go by file order, even where the array's order is another.
    for (u32 image = 0; image < count; ++image) {
      MpoEntry& entry = index_.entries[image];
      const u64 place = offset + u64{image} * host::mpoUidLength;
      const auto uid = *reader_.bytes(place, host::mpoUidLength);
      std::memcpy(entry.uid, uid.data(), uid.size());
      entry.flags |= row.flagRead;
    }
  }

  void takeEntryTable(u32 offset) noexcept {
    const u32 count = imageCount();
    if (count == 0) return;
    if (index_.list.entries == 0) placeArray(count);
    if (fits(offset, u64{count} * mpfImageEntrySize)) decodeTable(offset, count);
  }

  void placeArray(u32 count) noexcept {
    index_.list.entries = reinterpret_cast<u64>(index_.entries.data());
    std::memset(index_.entries.data(), 0, count * sizeof(MpoEntry));
    chooseEntry();
  }

  // The array holds the independent images first, then the children, each in file order.
  void decodeTable(u32 offset, u32 count) noexcept {
    index_.list.kind = kindOf(tableEntry(offset, 0));
    u32 nextChild = 0;
    for (u32 image = 0; image < count; ++image)
      nextChild += tableEntry(offset, image).child() ? 0u : 1u;
    ChildPositions children;
    for (u32 image = 0; image < count; ++image) {
      const TableEntry source = tableEntry(offset, image);
      if (!source.child()) continue;
      children.enter(image + 1, static_cast<i32>(nextChild));
      MpoEntry& entry = index_.entries[nextChild++];
      fillEntry(entry, source, image);
      entry.dependent1 = source.dependent1 != 0 ? source.dependent1 : -1;
      entry.dependent2 = source.dependent2 != 0 ? source.dependent2 : -1;
    }
    u32 next = 0;
    for (u32 image = 0; image < count; ++image) {
      const TableEntry source = tableEntry(offset, image);
      if (source.child()) continue;
      MpoEntry& entry = index_.entries[next++];
      fillEntry(entry, source, image);
      entry.dependent1 = children.find(source.dependent1);
      entry.dependent2 = children.find(source.dependent2);
    }
  }

  void fillEntry(MpoEntry& entry, const TableEntry& source, u32 fileIndex) const noexcept {
    entry.dependentParent = source.attribute >> 31;
    entry.dependentChild = source.attribute >> 30 & 1;
    entry.representative = source.attribute >> 29 & 1;
    entry.dataFormat = static_cast<u8>(source.attribute >> 24 & 7);
    entry.typeClass = source.typeClass();
    entry.typeSubCode = source.subCode();
    entry.size = source.size;
    // The first image's offset counts from the start of the file, whatever it holds.
    entry.fileOffset = fileIndex == 0 ? source.offset : source.offset + base_;
  }

  // The table has been found to lie inside.
  [[nodiscard]] TableEntry tableEntry(u32 table, u32 image) const noexcept {
    const u64 place = table + u64{image} * mpfImageEntrySize;
    return {*reader_.u32(place), *reader_.u32(place + 4), *reader_.u32(place + 8),
            *reader_.u16(place + 12), *reader_.u16(place + 14)};
  }

  // Kept: a table that ends exactly with the segment counts as one that runs past it.
  [[nodiscard]] bool fits(u32 offset, u64 size) const noexcept {
    return offset + size < reader_.size();
  }

  void chooseEntry() noexcept {
    const bool exists = index_.list.entries != 0 && imageIndex_ < index_.entries.size();
    current_ = exists ? &index_.entries[imageIndex_] : nullptr;
  }

  // The current entry with the tag marked as present, or null with the result saying so.
  MpoEntry* entryFor(const MpfTag& row) noexcept {
    if (current_ == nullptr) {
      result_ = mpfNoEntry;
    } else {
      current_->flags |= row.flagRead;
    }
    return current_;
  }

  static void storeWord(MpoEntry& entry, std::size_t member, u32 value) noexcept {
    std::memcpy(reinterpret_cast<u8*>(&entry.attributes) + member, &value, sizeof value);
  }

  u32 imageIndex_;
  const MpoIndex& index_;
  ByteReader reader_;
  u32 base_;
  MpoEntry* current_ = nullptr;
  u32 result_ = mpfParsed;
  std::bitset<longestSegment> visited_;
  u64 walked_ = 0;
};

// Kept: whatever is not "II" is big-endian, and the 42 behind it is not looked at.
ByteOrder orderOf(std::span<const u8> segment) noexcept {
  return segment[0] == 'I' && segment[1] == 'I' ? ByteOrder::little : ByteOrder::big;
}

}  // namespace

u32 MpfParseSegment(u32 imageIndex, const MpoIndex& index, std::span<const u8> segment,
                    u32 base) noexcept {
  if (segment.size() < mpfHeaderSize) return mpfParsed;
  segment = segment.first(std::min(segment.size(), longestSegment));
  return Parser(imageIndex, index, ByteReader(segment, orderOf(segment)), base).parse();
}

}  // namespace mpo

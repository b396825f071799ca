// Entering a written image's size and offset into the index of the first image.
#include <limits>

#include "mpo/mpf_segment.h"
#include "platform/byte_writer.h"
#include "platform/open_file.h"

namespace mpo {
namespace {

using host::i64;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;

constexpr u32 headSize = 10;  // the header and the first IFD's entry count
constexpr host::u16 entryTableTag = 0xB002;
constexpr u32 sizeFieldOffset = 4;  // in a table entry; the offset follows

// Restores the file position on every way out.
class KeptPosition {
 public:
  KeptPosition(HANDLE file, u64 position) noexcept
      : file_(file), position_(static_cast<i64>(position)) {}
  KeptPosition(const KeptPosition&) = delete;
  KeptPosition& operator=(const KeptPosition&) = delete;
  ~KeptPosition() { platform::moveTo(file_, position_); }

 private:
  HANDLE file_;
  i64 position_;
};

// The offset of the MP Entry table from the byte-order field, where the file is positioned.
std::optional<u32> findTable(HANDLE file) noexcept {
  u8 head[headSize];
  if (!platform::readWhole(file, head, sizeof head)) return std::nullopt;
  const std::span<const u8> header(head);
  if (MpfGet32(ByteOrder::little, header.subspan(4)) != mpfHeaderSize) return std::nullopt;
  for (u32 count = *MpfGet16(ByteOrder::little, header.subspan(mpfHeaderSize)); count != 0;
       --count) {
    u8 bytes[mpfIfdEntrySize];
    if (!platform::readWhole(file, bytes, sizeof bytes)) return std::nullopt;
    const std::span<const u8> entry(bytes);
    if (MpfGet16(ByteOrder::little, entry) != entryTableTag) continue;
    return MpfGet32(ByteOrder::little, entry.subspan(8));
  }
  return std::nullopt;
}

// Bytes from the byte-order field to the end of its segment.
std::optional<u32> segmentLength(HANDLE file, u64 byteOrder) noexcept {
  constexpr u32 beforeByteOrder = sizeof(host::u16) + mpfSignatureSize;
  u8 length[sizeof(host::u16)];
  if (!platform::moveTo(file, static_cast<i64>(byteOrder - beforeByteOrder)) ||
      !platform::readWhole(file, length, sizeof length)) {
    return std::nullopt;
  }
  const u32 whole = *MpfGet16(ByteOrder::big, length);
  return whole > beforeByteOrder ? whole - beforeByteOrder : 0;
}

bool writeFields(HANDLE file, u64 place, u32 size, u32 offset) noexcept {
  u8 fields[8];
  platform::ByteWriter writer(fields, ByteOrder::little);
  writer.u32(size);
  writer.u32(offset);
  return platform::moveTo(file, static_cast<i64>(place)).has_value() &&
         platform::writeWhole(file, fields, sizeof fields);
}

bool patch(HANDLE file, u32 position, u64 start, u32 size) noexcept {
  u64 byteOrder = 0;
  if (!platform::moveTo(file, 0) || MpfFindSegment(file, &byteOrder) == 0) return false;
  const std::optional<u32> table = findTable(file);
  const std::optional<u32> length = segmentLength(file, byteOrder);
  if (!table || !length) return false;
  const u64 entry = *table + u64{position} * mpfImageEntrySize;
  if (entry + mpfImageEntrySize > *length) return false;
  const u64 offset = position == 0 ? 0 : start - byteOrder;
  if (offset > std::numeric_limits<u32>::max()) return false;
  return writeFields(file, byteOrder + entry + sizeFieldOffset, size, static_cast<u32>(offset));
}

}  // namespace

int MpfPatchEntry(HANDLE file, u32 imageCount, u32 position, u64 start, u32 size) noexcept {
  if (position >= imageCount) return 0;
  const std::optional<u64> before = platform::moveTo(file, 0, FILE_CURRENT);
  if (!before) return 0;
  const KeptPosition kept(file, *before);
  return patch(file, position, start, size) ? 1 : 0;
}

}  // namespace mpo

#include "companions/kExifLib/thumbnail.h"

#include <cstddef>

namespace kExifLib {
namespace {

using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr u64 headerSize = 8;
constexpr u64 entrySize = 12;
constexpr u16 magic = 42;

enum Tag : u16 { jpegInterchangeFormat = 0x0201, jpegInterchangeFormatLength = 0x0202 };
enum Type : u16 { typeShort = 3, typeLong = 4 };

// The only way to the bytes: what lies outside reads as not there.
class TiffReader {
 public:
  explicit TiffReader(std::span<const u8> bytes) noexcept
      : bytes_(bytes), bigEndian_(!bytes.empty() && bytes[0] == 'M') {}

  [[nodiscard]] bool has(u64 offset, u64 count) const noexcept {
    return offset <= bytes_.size() && count <= bytes_.size() - offset;
  }
  [[nodiscard]] bool read16(u64 offset, u16& value) const noexcept {
    if (!has(offset, 2)) return false;
    value = static_cast<u16>(at(offset, bigEndian_ ? 0 : 1) << 8 | at(offset, bigEndian_ ? 1 : 0));
    return true;
  }
  [[nodiscard]] bool read32(u64 offset, u32& value) const noexcept {
    u16 first = 0;
    u16 second = 0;
    if (!read16(offset, first) || !read16(offset + 2, second)) return false;
    value = bigEndian_ ? u32{first} << 16 | second : u32{second} << 16 | first;
    return true;
  }
  // A count or an offset: SHORT or LONG.
  [[nodiscard]] bool readNumber(u64 entry, u32& value) const noexcept {
    u16 type = 0;
    if (!read16(entry + 2, type)) return false;
    if (type == typeLong) return read32(entry + 8, value);
    u16 narrow = 0;
    if (type != typeShort || !read16(entry + 8, narrow)) return false;
    value = narrow;
    return true;
  }
  [[nodiscard]] std::span<const u8> part(u64 offset, u64 count) const noexcept {
    return has(offset, count) ? bytes_.subspan(offset, count) : std::span<const u8>();
  }

 private:
  [[nodiscard]] unsigned at(u64 offset, unsigned index) const noexcept {
    return bytes_[offset + index];
  }

  std::span<const u8> bytes_;
  bool bigEndian_;
};

// The offset of the 1st IFD, which follows the entries of the 0th. 0 = none.
u32 findFirstIfd(const TiffReader& tiff) noexcept {
  u32 ifd0 = 0;
  u16 entries = 0;
  u32 ifd1 = 0;
  if (!tiff.read32(4, ifd0) || ifd0 < headerSize || !tiff.read16(ifd0, entries)) return 0;
  return tiff.read32(ifd0 + 2 + entries * entrySize, ifd1) && ifd1 >= headerSize ? ifd1 : 0;
}

struct Place {
  u32 offset = 0;
  u32 length = 0;
};

// Entries that run past the end are as good as absent.
Place readPlace(const TiffReader& tiff, u64 ifd) noexcept {
  u16 entries = 0;
  Place place;
  if (!tiff.read16(ifd, entries)) return place;
  for (u64 i = 0; i < entries; ++i) {
    const u64 entry = ifd + 2 + i * entrySize;
    u16 tag = 0;
    if (!tiff.has(entry, entrySize) || !tiff.read16(entry, tag)) break;
    u32 value = 0;
    if (!tiff.readNumber(entry, value)) continue;
    if (tag == jpegInterchangeFormat) place.offset = value;
    if (tag == jpegInterchangeFormatLength) place.length = value;
  }
  return place;
}

}  // namespace

bool isTiff(std::span<const u8> tiff) noexcept {
  if (tiff.size() < headerSize || tiff[0] != tiff[1]) return false;
  if (tiff[0] != 'I' && tiff[0] != 'M') return false;
  u16 stored = 0;
  return TiffReader(tiff).read16(2, stored) && stored == magic;
}

std::span<const u8> findThumbnail(std::span<const u8> tiff) noexcept {
  if (!isTiff(tiff)) return {};
  const TiffReader reader(tiff);
  const u32 ifd1 = findFirstIfd(reader);
  if (ifd1 == 0) return {};
  const Place place = readPlace(reader, ifd1);
  if (place.offset < headerSize) return {};
  return reader.part(place.offset, place.length);
}

}  // namespace kExifLib

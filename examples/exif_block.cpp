#include "examples/exif_block.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace examples {
namespace {

enum Type : std::uint16_t {
  typeAscii = 2,
  typeShort = 3,
  typeLong = 4,
  typeRational = 5,
  typeUndefined = 7
};

void put16(Bytes& bytes, std::uint32_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void put32(Bytes& bytes, std::uint32_t value) {
  put16(bytes, value & 0xFFFF);
  put16(bytes, value >> 16);
}

struct Entry {
  std::uint16_t tag;
  Type type;
  std::uint32_t count;
  Bytes value;
};

Entry textEntry(std::uint16_t tag, const std::string& text) {
  Bytes value(text.begin(), text.end());
  value.push_back(0);
  return {tag, typeAscii, static_cast<std::uint32_t>(value.size()), value};
}

Entry shortEntry(std::uint16_t tag, std::uint32_t number) {
  Bytes value;
  put16(value, number);
  return {tag, typeShort, 1, value};
}

Entry longEntry(std::uint16_t tag, std::uint32_t number) {
  Bytes value;
  put32(value, number);
  return {tag, typeLong, 1, value};
}

Entry rationalEntry(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator) {
  Bytes value;
  put32(value, numerator);
  put32(value, denominator);
  return {tag, typeRational, 1, value};
}

// The bytes of a directory with its values behind it. Values begin on even offsets (TIFF 6.0,
// section 2).
class Directory {
 public:
  explicit Directory(std::vector<Entry> entries) : entries_(std::move(entries)) {}

  [[nodiscard]] std::uint32_t size() const {
    std::uint32_t size = tableSize();
    for (const Entry& entry : entries_) size += placeOf(entry);
    return size;
  }

  void append(Bytes& block, std::uint32_t start, std::uint32_t next) const {
    Bytes values;
    put16(block, static_cast<std::uint32_t>(entries_.size()));
    for (const Entry& entry : entries_) {
      put16(block, entry.tag);
      put16(block, entry.type);
      put32(block, entry.count);
      if (placeOf(entry) == 0) {
        block.insert(block.end(), entry.value.begin(), entry.value.end());
        block.resize(block.size() + 4 - entry.value.size());
        continue;
      }
      put32(block, start + tableSize() + static_cast<std::uint32_t>(values.size()));
      values.insert(values.end(), entry.value.begin(), entry.value.end());
      values.resize(values.size() + placeOf(entry) - entry.value.size());
    }
    put32(block, next);
    block.insert(block.end(), values.begin(), values.end());
  }

 private:
  [[nodiscard]] std::uint32_t tableSize() const {
    return 2 + 12 * static_cast<std::uint32_t>(entries_.size()) + 4;
  }
  // Bytes behind the table: none for a value that fits into its entry.
  static std::uint32_t placeOf(const Entry& entry) {
    const auto size = static_cast<std::uint32_t>(entry.value.size());
    return size <= 4 ? 0 : (size + 1) / 2 * 2;
  }

  std::vector<Entry> entries_;
};

constexpr std::uint32_t headerSize = 8;

Directory mainDirectory(std::uint32_t exifStart) {
  return Directory({textEntry(0x010E, "House below the hills"),  // ImageDescription
                    textEntry(0x010F, "Example"),                // Make
                    textEntry(0x0110, "Computed scene"),         // Model
                    shortEntry(0x0112, 1),                       // Orientation: as stored
                    rationalEntry(0x011A, 72, 1),                // XResolution
                    rationalEntry(0x011B, 72, 1),                // YResolution
                    shortEntry(0x0128, 2),                       // ResolutionUnit: inch
                    textEntry(0x0132, "2024:06:01 18:30:00"),    // DateTime
                    shortEntry(0x0213, 1),                       // YCbCrPositioning: centred
                    longEntry(0x8769, exifStart)});              // Exif IFD
}

Directory exifDirectory(std::uint32_t width, std::uint32_t height) {
  return Directory({{0x9000, typeUndefined, 4, {'0', '2', '3', '2'}},  // ExifVersion
                    textEntry(0x9003, "2024:06:01 18:30:00"),          // DateTimeOriginal
                    {0x9101, typeUndefined, 4, {1, 2, 3, 0}},          // ComponentsConfiguration
                    {0xA000, typeUndefined, 4, {'0', '1', '0', '0'}},  // FlashpixVersion
                    shortEntry(0xA001, 1),                             // ColorSpace: sRGB
                    longEntry(0xA002, width),                          // PixelXDimension
                    longEntry(0xA003, height)});                       // PixelYDimension
}

Directory thumbnailDirectory(std::uint32_t start, std::uint32_t length) {
  return Directory({shortEntry(0x0103, 6),         // Compression: JPEG
                    rationalEntry(0x011A, 72, 1),  // XResolution
                    rationalEntry(0x011B, 72, 1),  // YResolution
                    shortEntry(0x0128, 2),         // ResolutionUnit: inch
                    longEntry(0x0201, start),      // JPEGInterchangeFormat
                    longEntry(0x0202, length)});   // JPEGInterchangeFormatLength
}

}  // namespace

Bytes exifBlock(std::uint32_t width, std::uint32_t height, const Bytes& thumbnail) {
  const std::uint32_t exifStart = headerSize + mainDirectory(0).size();
  const Directory exif = exifDirectory(width, height);
  const std::uint32_t nextStart = exifStart + exif.size();
  const std::uint32_t thumbnailStart = nextStart + thumbnailDirectory(0, 0).size();

  Bytes tiff = {'I', 'I', 42, 0};
  put32(tiff, headerSize);
  mainDirectory(exifStart).append(tiff, headerSize, nextStart);
  exif.append(tiff, exifStart, 0);
  thumbnailDirectory(thumbnailStart, static_cast<std::uint32_t>(thumbnail.size()))
      .append(tiff, nextStart, 0);
  tiff.insert(tiff.end(), thumbnail.begin(), thumbnail.end());

  constexpr std::array<std::uint8_t, 6> signature = {'E', 'x', 'i', 'f', 0, 0};
  Bytes block(signature.size() + tiff.size());
  std::copy(tiff.begin(), tiff.end(), std::copy(signature.begin(), signature.end(), block.begin()));
  return block;
}

}  // namespace examples

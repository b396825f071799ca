#include "fiohost/strip/exif_places.h"

#include <algorithm>
#include <set>

#include "exif/directory_entry.h"
#include "fiohost/strip/iptc_places.h"
#include "platform/byte_writer.h"

namespace fiohost {
namespace {

using platform::ByteOrder;
using platform::ByteReader;
using std::uint16_t;
using std::uint32_t;
using std::uint64_t;
using std::uint8_t;

constexpr uint64_t headerSize = 8;
constexpr uint64_t firstDirectoryWord = 4;
constexpr uint64_t nextWordSize = 4;
constexpr uint32_t inlineSize = 4;

constexpr uint16_t tagOrientation = 0x0112;
constexpr uint16_t tagSubDirectories = 0x014A;
constexpr uint16_t tagIptc = 0x83BB;
constexpr uint16_t tagExif = 0x8769;
constexpr uint16_t tagGps = 0x8825;
constexpr uint16_t tagMakerNote = 0x927C;

ByteOrder orderOf(std::span<const uint8_t> tiff) {
  return !tiff.empty() && tiff[0] == 'I' ? ByteOrder::little : ByteOrder::big;
}

struct Value {
  uint64_t place;
  uint64_t size;
};

class Blanker {
 public:
  explicit Blanker(std::span<uint8_t> tiff) : tiff_(tiff), reader_(tiff, orderOf(tiff)) {}

  ExifPlaces blank() {
    visit(reader_.u32(firstDirectoryWord).value_or(0));
    return found_;
  }

 private:
  // A directory and those that follow it.
  void visit(uint64_t place) {
    constexpr int deepest = 16;
    if (++depth_ <= deepest) visitChain(place);
    --depth_;
  }

  void visitChain(uint64_t place) {
    constexpr std::size_t mostDirectories = 256;
    while (place >= headerSize && visited_.size() < mostDirectories &&
           visited_.insert(place).second) {
      const uint64_t count = exif::readEntryCount(reader_, place);
      const uint64_t end = entryPlace(place, count);
      if (count == 0 || end > reader_.size()) return;
      for (uint64_t i = 0; i < count; ++i) look(entryPlace(place, i));
      removeGpsEntries(place);
      place = reader_.u32(entryPlace(place, exif::readEntryCount(reader_, place))).value_or(0);
    }
  }

  void look(uint64_t entry) {
    const uint16_t tag = *reader_.u16(entry);
    const Value value = valueOf(entry);
    if (tag == tagExif) visit(*reader_.u32(entry + 8));
    if (tag == tagSubDirectories) visitAll(value);
    if (tag == tagGps) blankDirectory(*reader_.u32(entry + 8));
    if (tag == tagMakerNote) found_.makerNote += value.size;
    if (tag == tagIptc) found_.iptc += blankIptcPlaces(part(value.place, value.size));
  }

  void visitAll(const Value& pointers) {
    for (uint64_t at = 0; at + 4 <= pointers.size; at += 4) {
      visit(reader_.u32(pointers.place + at).value_or(0));
    }
  }

  // The rest of the directory moves up by one entry, its end is zeros.
  void removeGpsEntries(uint64_t directory) {
    for (uint64_t i = 0; i < exif::readEntryCount(reader_, directory);) {
      const uint64_t entry = entryPlace(directory, i);
      if (reader_.u16(entry) != tagGps) {
        ++i;
        continue;
      }
      const uint16_t count = exif::readEntryCount(reader_, directory);
      const uint64_t end =
          std::min<uint64_t>(entryPlace(directory, count) + nextWordSize, reader_.size());
      const auto rest = part(entry, end - entry);
      const auto behind = rest.subspan(std::min(std::size_t{exif::entrySize}, rest.size()));
      std::copy(behind.begin(), behind.end(), rest.begin());
      std::fill(rest.end() - std::ptrdiff_t{exif::entrySize}, rest.end(), uint8_t{0});
      platform::ByteWriter(part(directory, exif::entryCountSize), reader_.order())
          .u16(static_cast<uint16_t>(count - 1));
    }
  }

  void blankDirectory(uint64_t directory) {
    const uint64_t count = exif::readEntryCount(reader_, directory);
    const uint64_t end = entryPlace(directory, count);
    if (directory < headerSize || count == 0 || end > reader_.size()) return;
    for (uint64_t i = 0; i < count; ++i) {
      const Value value = valueOf(entryPlace(directory, i));
      if (value.size > inlineSize) zero(value.place, value.size);
    }
    zero(directory, std::min<uint64_t>(end + nextWordSize, reader_.size()) - directory);
  }

  void zero(uint64_t place, uint64_t size) {
    if (place < headerSize) return;
    const auto bytes = part(place, size);
    std::fill(bytes.begin(), bytes.end(), uint8_t{0});
    found_.gps += bytes.size();
  }

  [[nodiscard]] Value valueOf(uint64_t entry) const {
    const uint64_t size =
        uint64_t{exif::elementSize(*reader_.u16(entry + 2))} * *reader_.u32(entry + 4);
    return {size > inlineSize ? *reader_.u32(entry + 8) : entry + 8, size};
  }

  static uint64_t entryPlace(uint64_t directory, uint64_t index) {
    return directory + exif::entryCountSize + index * exif::entrySize;
  }

  // Empty when it does not lie inside.
  [[nodiscard]] std::span<uint8_t> part(uint64_t place, uint64_t size) const {
    if (!reader_.contains(place, size)) return {};
    return tiff_.subspan(static_cast<std::size_t>(place), static_cast<std::size_t>(size));
  }

  std::span<uint8_t> tiff_;
  ByteReader reader_;
  std::set<uint64_t> visited_;
  int depth_ = 0;
  ExifPlaces found_;
};

}  // namespace

ExifPlaces blankExifPlaces(std::span<uint8_t> tiff) { return Blanker(tiff).blank(); }

uint16_t orientationOf(std::span<const uint8_t> tiff) {
  const ByteReader reader(tiff, orderOf(tiff));
  const uint64_t directory = reader.u32(firstDirectoryWord).value_or(0);
  const uint16_t count = exif::readEntryCount(reader, directory);
  for (uint64_t i = 0; i < count; ++i) {
    const uint64_t entry = directory + exif::entryCountSize + i * exif::entrySize;
    if (reader.u16(entry) != tagOrientation) continue;
    const uint16_t value = reader.u16(entry + 8).value_or(0);
    return value <= 8 ? value : uint16_t{0};
  }
  return 0;
}

}  // namespace fiohost

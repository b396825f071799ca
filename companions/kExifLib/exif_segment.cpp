#include "companions/kExifLib/exif_segment.h"

#include <algorithm>
#include <array>

namespace kExifLib {
namespace {

using host::u8;

enum Marker : u8 {
  temporary = 0x01,
  firstRestart = 0xD0,
  startOfImage = 0xD8,
  endOfImage = 0xD9,
  startOfScan = 0xDA,
  app1 = 0xE1,
};

constexpr std::array<u8, 6> exifIdentifier = {'E', 'x', 'i', 'f', 0, 0};

// Markers that stand alone, without a length behind them.
bool isBare(u8 marker) noexcept {
  return marker == temporary || (marker >= firstRestart && marker <= startOfImage);
}

// The code behind 0xFF; any number of 0xFF may fill the space before it.
bool readMarker(FileStream& file, u8& marker) noexcept {
  if (!file.readByte(marker) || marker != 0xFF) return false;
  while (marker == 0xFF) {
    if (!file.readByte(marker)) return false;
  }
  return true;
}

// The next segment's marker and payload length. False where the segments end.
bool readSegmentHead(FileStream& file, u8& marker, std::size_t& length) noexcept {
  do {
    if (!readMarker(file, marker)) return false;
  } while (isBare(marker));
  if (marker == startOfScan || marker == endOfImage) return false;
  unsigned stored = 0;
  if (!file.readBigEndian16(stored) || stored < 2) return false;
  length = stored - 2;
  return true;
}

bool beginsWithIdentifier(const std::vector<u8>& payload) noexcept {
  return payload.size() >= exifIdentifier.size() &&
         std::equal(exifIdentifier.begin(), exifIdentifier.end(), payload.begin());
}

}  // namespace

std::vector<u8> readExifTiff(FileStream& file) {
  u8 marker = 0;
  if (!readMarker(file, marker) || marker != startOfImage) return {};
  std::size_t length = 0;
  while (readSegmentHead(file, marker, length)) {
    if (marker != app1) {
      if (!file.skip(length)) break;
      continue;
    }
    std::vector<u8> payload = file.readUpTo(length);
    if (beginsWithIdentifier(payload)) {
      payload.erase(payload.begin(), payload.begin() + exifIdentifier.size());
      return payload;
    }
  }
  return {};
}

}  // namespace kExifLib

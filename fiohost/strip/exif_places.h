// GPS directories and other places in a TIFF structure (TIFF 6.0, EXIF 2.32), taken out without
// moving anything else: maker notes hold offsets that nobody may shift.
#pragma once

#include <cstdint>
#include <span>

namespace fiohost {

struct ExifPlaces {
  std::uint64_t gps = 0;        // bytes of GPS directories and their values that were blanked
  std::uint64_t iptc = 0;       // of IPTC location datasets
  std::uint64_t makerNote = 0;  // of maker notes, which are left alone
};

// tiff: from the byte-order field to the end of what may belong to the structure.
ExifPlaces blankExifPlaces(std::span<std::uint8_t> tiff);

// The orientation of the first directory, 1 to 8; 0 for none.
[[nodiscard]] std::uint16_t orientationOf(std::span<const std::uint8_t> tiff);

}  // namespace fiohost

// Private data taken out of a JPEG or multi-picture file. No picture is decoded, and its data stays
// byte for byte.
#pragma once

#include <string>

#include "fiohost/streams/jpeg_stream.h"

namespace fiohost {

// Something that was taken out, or that was left though it may be private.
struct PrivatePart {
  std::uint32_t image;  // from 1; 0 for what lies behind the images
  std::string what;
  std::uint64_t bytes;
};

struct StrippedFile {
  ByteBlock bytes;
  std::vector<PrivatePart> removed;
  std::vector<PrivatePart> kept;
};

// Without what tells where a picture was taken: GPS directories, location properties of XMP,
// location datasets of IPTC and the telemetry of action cameras, in every image, thumbnail and in
// what lies behind them. Everything keeps its place. Throws Failure for what is no JPEG file.
[[nodiscard]] StrippedFile withoutPlaces(ByteView file);

// With nothing but what it takes to show the pictures: their data, JFIF header, Adobe marker,
// colour profile, orientation and multi-picture index. Throws Failure as above, or when the
// multi-picture index cannot be read.
[[nodiscard]] StrippedFile withoutPrivateData(ByteView file);

}  // namespace fiohost

// Everything about a picture that a person understands, gathered from the file-data record, the
// codec and the EXIF reader.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fiohost/describe.h"
#include "fiohost/thumbnail.h"

namespace fiohost {

// One image of a multi-picture file.
struct MpoImage {
  host::u32 width;   // pixels, 0 = unknown
  host::u32 height;  // pixels, 0 = unknown
  host::u32 byteCount;
  const char* kind;
  bool representative;
};

struct PictureInfo {
  std::string file;  // as the user named it
  host::u64 byteCount = 0;
  Family family = Family::jpeg;
  host::u32 width = 0;   // pixels
  host::u32 height = 0;  // pixels
  host::u32 bitsPerPixel = 0;
  host::u32 components = 0;
  host::u32 horizontalResolution = 0;
  host::u32 verticalResolution = 0;
  // What only the codec can tell is unknown when it cannot read the file a second time.
  std::optional<host::u32> densityUnit;
  std::optional<bool> progressive;
  std::optional<host::u32> sampling;  // see host::ChromaSampling; none for grey
  std::optional<bool> jfif;
  std::optional<bool> adobe;
  std::optional<ThumbnailFacts> thumbnail;
  std::string note;              // what the user should know, mostly empty
  std::string mpoKind;           // MPO only
  std::vector<MpoImage> images;  // MPO only
};

[[nodiscard]] PictureInfo gatherInfo(const Session& session, const SourceFile& file,
                                     const Described& described);

// The figures in words, or null when there is no word for them.
[[nodiscard]] const char* colourName(host::u32 components);
[[nodiscard]] const char* densityUnitName(host::u32 unit);
[[nodiscard]] const char* samplingName(host::u32 sampling);

// What a multi-picture file, and one image of it, is for. Always words.
[[nodiscard]] const char* mpoKindName(host::u32 kind);
[[nodiscard]] const char* mpoImageKind(const host::MpoEntry& entry);

}  // namespace fiohost

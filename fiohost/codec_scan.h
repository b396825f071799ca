// What the codec tells about a file's header: facts that the file-data record has no place for.
#pragma once

#include <optional>

#include "fiohost/companions.h"
#include "fiohost/source_file.h"

namespace fiohost {

struct HeaderFacts {
  host::ImageHeader header;
  host::ExtraInformation extra;
  bool adobe;  // an APP14 segment of Adobe's was seen
};

// Reads a file's header and segments without its pixels; nothing when the codec cannot.
[[nodiscard]] std::optional<HeaderFacts> scanHeader(const Codec& codec, const SourceFile& file);

}  // namespace fiohost

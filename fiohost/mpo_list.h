// The image list of a multi-picture file as the plug-in describes it.
#pragma once

#include <vector>

#include "fiohost/describe.h"

namespace fiohost {

// One image in array order: independent images first, then the dependent ones.
struct ListedImage {
  host::u32 number;      // from 1
  host::MpoEntry entry;  // with the figures in place for every image
  bool insideFile;       // its bytes, and at least one of them
};

struct MpoFile {
  Described described;
  host::MpoList list;
  std::vector<ListedImage> images;
};

// Throws Failure when the file holds no image list that the plug-in can read.
[[nodiscard]] MpoFile describeMpo(const Session& session, const SourceFile& file);

}  // namespace fiohost

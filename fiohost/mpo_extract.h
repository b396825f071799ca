// Taking images out of a multi-picture file.
#pragma once

#include <string>

#include "fiohost/mpo_list.h"
#include "fiohost/row_writer.h"

namespace fiohost {

struct TakenImage {
  host::u32 number;
  std::string output;
  host::u64 byteCount;
};

// Decodes an image into a PNG. Throws Failure and leaves no file behind.
TakenImage extractPng(const Session& session, MpoFile& mpo, const ListedImage& image,
                      const std::string& outputName, Existing existing);

// Copies an image's JPEG stream as it stands in the file. Throws as extractPng().
TakenImage extractStream(const SourceFile& file, const ListedImage& image,
                         const std::string& outputName, Existing existing);

}  // namespace fiohost

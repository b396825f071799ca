// The files that the cases work on, made when they are first asked for.
#pragma once

#include <filesystem>
#include <vector>

#include "host/types.h"

namespace bench {

using Path = std::filesystem::path;
using Paths = std::vector<Path>;

// Where the inputs and real pictures lie. Set once, before anything is asked for.
struct Folders {
  Path inputs;
  Path outputs;  // exists; in memory, so that no disk is measured
  Path samples;  // need not exist
};
void setFolders(const Folders& folders);

// A file's place among the inputs.
[[nodiscard]] Path inputPath(const std::string& name);
// A place for output.
[[nodiscard]] Path outputPath(const std::string& name);

// 24 megapixels, 4:2:0.
[[nodiscard]] Path largeJpeg(bool progressive);
// A baseline file of about so many megapixels.
[[nodiscard]] Path jpegOfMegapixels(host::u32 megapixels);
// The real pictures, and the large baseline file; that one alone when there are none.
[[nodiscard]] Paths describedFiles();
// The files of the list above that a file with metadata stands for, 300 in all.
[[nodiscard]] Paths manyFiles();
// A multi-picture file of so many images.
[[nodiscard]] Path mpoOf(host::u32 images);

}  // namespace bench

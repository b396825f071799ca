// libjpeg-turbo as a program without the plug-in would use it.
#pragma once

#include <filesystem>

#include "bench/plugin_host.h"

namespace bench {

// Decodes the file at eighths / 8 of its size, rows blue first, into the sink. Throws
// std::runtime_error when it cannot.
void decodeByLoop(const std::filesystem::path& path, int eighths, RowSink& sink);

// Encodes the picture into the file. Throws std::runtime_error when it cannot.
void encodeByLoop(const std::filesystem::path& path, const HostPicture& picture,
                  const fiohost::FileData::SaveOptions& options);

}  // namespace bench

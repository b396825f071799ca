// Reading the first image of a multi-picture file as a JPEG is read.
#pragma once

#include "host/requests.h"

namespace mpo {

// file and path may be null when the record names its source. 1 decoded, -1 stopped, 0 failed.
[[nodiscard]] int readFile(HANDLE file, const char* path, HGLOBAL fileData,
                           host::ReadRequest& request, host::RowCallback* rowCallback) noexcept;

}  // namespace mpo

// Reading any image of a multi-picture file for a host that answers requests.
#pragma once

#include "host/plugin_entries.h"

namespace mpo {

inline constexpr int everyImage = -1;

// index: 1 for the first image of the record's list, everyImage for all in array order up to the
// first whose result is not 1. 1 decoded, -1 stopped, 0 failed or no such image.
[[nodiscard]] int readImages(HGLOBAL fileData, host::MPORequestCallback* callback, void* context,
                             int index) noexcept;

}  // namespace mpo

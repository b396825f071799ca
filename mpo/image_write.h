// Writing one image of a multi-picture file.
#pragma once

#include "host/plugin_entries.h"

namespace mpo {

// Writes the image that fileData describes: as the first image into a new file, or behind those
// that the file holds. The callback says how many images there are, which one this is and what each
// is, and gives the rows. 1 written, -1 stopped, 0 failed; an answer to a question that is not 1 is
// the result.
[[nodiscard]] int writeImage(HGLOBAL fileData, host::MPORequestCallback* callback,
                             void* context) noexcept;

// Writes a file of the one image that fileData describes, its rows from rowCallback.
[[nodiscard]] int writeSingleImage(HGLOBAL fileData, void* user,
                                   host::MPORowCallback* rowCallback) noexcept;

}  // namespace mpo

// The options of a write: the image's own, else the settings.
#pragma once

#include "host/file_data.h"
#include "host/klibjpg.h"

namespace jpeg {

// The record's JPEG tail, or null when it carries none. size: bytes that the record really has.
[[nodiscard]] host::JpegTail* jpegTailOf(void* lockedRecord, std::size_t size) noexcept;

// The codec's options from the tail, or from the settings without one. A tail's quality above 100
// is replaced by the setting, in the tail too.
[[nodiscard]] host::WriteOptions chooseWriteOptions(host::JpegTail* tail) noexcept;

}  // namespace jpeg

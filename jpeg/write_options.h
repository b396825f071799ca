// The options of a write: the image's own, else the settings.
#pragma once

#include "host/file_data.h"
#include "host/klibjpg.h"
#include "platform/global_memory.h"

namespace jpeg {

inline constexpr host::u32 bestQuality = 100;

// The record's JPEG tail, or null when it carries none. size: bytes that the record really has.
[[nodiscard]] host::JpegTail* jpegTailOf(void* lockedRecord, std::size_t size) noexcept;

// Gives a record of another format the size and the marks of a JPEG record; the rest of the tail
// is as it was, new bytes are zero. The lock is renewed. Null, and the record unlocked, when it
// cannot be enlarged.
[[nodiscard]] host::JpegTail* addJpegTail(HGLOBAL fileData,
                                          platform::LockedGlobal& record) noexcept;

// The codec's options from the tail, or from the settings without one. A tail's quality above 100
// is replaced by the setting, in the tail too.
[[nodiscard]] host::WriteOptions chooseWriteOptions(host::JpegTail* tail) noexcept;

}  // namespace jpeg

// kExifLib.dll: the EXIF reader, used for the thumbnail that a file carries in its EXIF block.
#pragma once

#include "host/types.h"
#include "platform/companion_call.h"

// A reader, or null when the file cannot be read. End it with kRExifEndRead.
COMPANION_CALL("kExifLib.dll", void*, kRExifBeginRead, (const char* path))
COMPANION_CALL("kExifLib.dll", void*, kRExifBeginReadW, (const wchar_t* path))
COMPANION_CALL("kExifLib.dll", int, kRExifIsExifExist, (void* reader))
COMPANION_CALL("kExifLib.dll", int, kRExifIsThumbnailExist, (void* reader))
// words[0] = address, words[1] = length of bytes that live until kRExifEndRead; -1 = none.
COMPANION_CALL("kExifLib.dll", host::i64, kRExifGetThumbnailData, (void* reader, host::u64* words))
COMPANION_CALL("kExifLib.dll", void, kRExifEndRead, (void* reader))

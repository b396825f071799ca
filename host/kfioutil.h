// kFioUtil.dll: source paths, row shrinking, property storage, the property-sheet frame.
#pragma once

#include "host/types.h"
#include "platform/companion_call.h"

// 1 = the host's file-I/O layer accepts this plug-in's version.
COMPANION_CALL("kFioUtil.dll", int, CheckFIOVersion, (HMODULE plugin))
// A slot without a path is set to null. The paths live as long as the record is not freed or grown.
COMPANION_CALL("kFioUtil.dll", int, gfioGetFileSourcePath,
               (HGLOBAL fileData, char** ansi, wchar_t** wide))
COMPANION_CALL("kFioUtil.dll", int, gfioGetFileSourcePath_DS,
               (void* lockedFileData, char** ansi, wchar_t** wide))
// columnMap holds one source column index for each of targetWidth target columns.
COMPANION_CALL("kFioUtil.dll", void, ShrinkImage,
               (host::u8 * target, const host::u8* source, int zero, host::u32 sourceWidth,
                host::u32 bytesPerPixel, const host::u32* columnMap, host::u32 targetWidth))
// Makes zeroed room for count descriptors more than the record holds; 0 = failed.
COMPANION_CALL("kFioUtil.dll", int, Prop_ReAllocFieldSpace, (HGLOBAL * slot, int count))
// Copies the 88-byte descriptor behind the last one and takes over its data block; 0 = failed.
COMPANION_CALL("kFioUtil.dll", int, Prop_AppendFieldData,
               (HGLOBAL record, const void* descriptor88))
// The open kFioUtil only: frees a record with every data block that it owns.
COMPANION_CALL("kFioUtil.dll", void, kfioFreeProperty, (HGLOBAL record))
COMPANION_CALL("kFioUtil.dll", int, kFioShowProperty,
               (HWND owner, void* header, int pageCount, void* pages, int flags))
// 1 = show the topic, 2 = close help.
COMPANION_CALL("kFioUtil.dll", int, kFioWinHelp, (HWND dialog, int command, host::u64 data))

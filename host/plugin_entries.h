// The plug-in's exported entry points: ordinals and signatures, for whoever calls them.
#pragma once

#include "host/requests.h"
#include "host/types.h"

namespace host {

enum PluginOrdinal : u16 {
  ordinalGetFileFmtNum = 2,
  ordinalJpgFIOAction = 10,
  ordinalJpgGetFormatInfo = 11,
  ordinalJpgGetFileData = 12,
  ordinalJpgShowDlgFileData = 14,
  ordinalJpgShowDlgSaveOption = 15,
  ordinalJpgFileRead = 16,
  ordinalJpgFileWrite = 17,
  ordinalGetProperty = 23,
  ordinalSetProperty = 24,
  ordinalShowProperty = 25,
  ordinalMPOFIOAction = 110,
  ordinalMPOGetFormatInfo = 111,
  ordinalMPOGetFileData = 112,
  ordinalMPOFileRead = 116,
  ordinalMPOFileWrite = 117,
  ordinalMPOGetProperty = 123,
  ordinalMPOSetProperty = 124,
};

// Action codes of kfJpgFIOAction and kfMPOFIOAction.
enum FIOAction : i32 { actionReadImages = 26, actionWriteImage = 27, actionDescribe = 28 };

// What the describing entries answer besides a handle: the file is not served here or unreadable.
inline constexpr u64 fileNotServed = ~u64{0};

using GetFileFmtNumEntry = int();
using GetFormatInfoEntry = HGLOBAL();
using JpgFIOActionEntry = int(u64 context, int action, void* parameters);
using JpgGetFileDataEntry = HGLOBAL(u64 reserved, const char* path);
using JpgFileReadEntry = int(u64 reserved, const char* path, HGLOBAL fileData, ReadRequest* request,
                             RowCallback* rowCallback);
using JpgFileWriteEntry = int(HANDLE file, HGLOBAL fileData, void* context, RowSource* rowSource);
using JpgShowDlgEntry = int(u64 reserved, HWND owner, HGLOBAL fileData);
using GetPropertyEntry = int(HGLOBAL fileData, HGLOBAL* out);
using SetPropertyEntry = int(HGLOBAL fileData, HGLOBAL property);
using ShowPropertyEntry = int(HWND owner, HGLOBAL fileData, int extraPages, void* extra, int flags);
using MPOGetFileDataEntry = HGLOBAL(HANDLE file, const char* path, u64 reserved);
using MPOFileReadEntry = int(HANDLE file, const char* path, HGLOBAL fileData, ReadRequest* request,
                             RowCallback* rowCallback);
using MPORowCallback = void*(void* user, u32 width, u32 height, u32 firstRow, u32 rowCount, int one,
                             int seven, u32 mode);
using MPOFileWriteEntry = int(u64 reserved, HGLOBAL fileData, void* user,
                              MPORowCallback* rowCallback);
using MPOFIOActionEntry = int(HGLOBAL fileData, int action, void* request, void* context,
                              int index);
// The host's answers to the MPO family's questions during actions 26 and 27.
using MPORequestCallback = int(int action, void* record, void* context, HGLOBAL fileData);

}  // namespace host

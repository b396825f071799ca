// k32Comm.dll and K32MISC.dll: error reports, the settings file, dialog start-up.
#pragma once

#include "host/types.h"
#include "platform/companion_call.h"

namespace host {

// The last report of a thread, as the open k32Comm keeps it.
struct ErrorReport {
  i32 count;  // reports since the last clear
  i32 owner;  // always 0
  i32 code;
  i32 site;
  i32 unit;
  i32 source;
  i32 position;
};
HOST_RECORD_SIZE(ErrorReport, 28);

// Error codes that the plug-in reports.
enum ErrorCode : i32 {
  errorMemoryOrOutput = 1004,
  errorColourLayout = 4005,
  errorDescribe = 4019,
  errorRead = 4020,
  errorWrite = 4021,
};

}  // namespace host

COMPANION_CALL("k32Comm.dll", int, c32SetDLLErrInfo,
               (HWND owner, int code, int site, int unit, int source, int position))
// Writes the settings file's full path, at most capacity characters with its NUL.
COMPANION_CALL("k32Comm.dll", void, k32GetKavroIniFileName, (char* path, int capacity))

// The open k32Comm only: the last report of the calling thread; all zeros when there is none since
// the last clear.
COMPANION_CALL("k32Comm.dll", void, kfioLastError, (host::ErrorReport * report))
COMPANION_CALL("k32Comm.dll", void, kfioClearError, ())

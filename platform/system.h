// The Win32 calls that the project uses. On Windows the system's own header; elsewhere the subset
// that platform/posix implements. The only place, with this folder, that knows which it is.
#pragma once

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include "platform/posix/windows_api.h"
#endif

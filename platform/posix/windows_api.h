// The subset of Win32 that the project's code without windows calls, over POSIX.
//
// The functions keep the contract of the Win32 documentation as far as a caller here could tell;
// the comments say only what is narrower or particular. All are safe to call from several threads.
//
// Text: "ANSI" is UTF-8. Paths: a path that contains a backslash and does not exist as it stands is
// taken with slashes in place of the backslashes. Bytes of a path that are not UTF-8 travel through
// the wide functions as U+DC80 to U+DCFF, so that a path always comes back as it was.
#pragma once

#include "platform/posix/windows_c_runtime.h"
#include "platform/posix/windows_types.h"

// An ordinal or resource number in place of a name.
template <typename Number>
[[nodiscard]] LPSTR MAKEINTRESOURCEA(Number number) noexcept {
  return reinterpret_cast<LPSTR>(ULONG_PTR{static_cast<WORD>(number)});
}

extern "C" {

[[nodiscard]] DWORD GetLastError() noexcept;
void SetLastError(DWORD code) noexcept;

// Global memory. Flags: GMEM_FIXED, GMEM_MOVEABLE, GMEM_ZEROINIT. Addresses are multiples of 16.
// A handle that is not live is recognised and refused. A locked movable block grows only with
// GMEM_MOVEABLE, and then its address changes.
[[nodiscard]] HGLOBAL GlobalAlloc(UINT flags, SIZE_T size) noexcept;
[[nodiscard]] HGLOBAL GlobalReAlloc(HGLOBAL block, SIZE_T size, UINT flags) noexcept;
LPVOID GlobalLock(HGLOBAL block) noexcept;
BOOL GlobalUnlock(HGLOBAL block) noexcept;
[[nodiscard]] SIZE_T GlobalSize(HGLOBAL block) noexcept;
[[nodiscard]] UINT GlobalFlags(HGLOBAL block) noexcept;
HGLOBAL GlobalFree(HGLOBAL block) noexcept;

// Files. Sharing is kept among the handles of this process. A file that nobody may write (no write
// bit in its mode) is a read-only file to every user.
[[nodiscard]] HANDLE CreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES,
                                 DWORD disposition, DWORD attributes, HANDLE) noexcept;
[[nodiscard]] HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES,
                                 DWORD disposition, DWORD attributes, HANDLE) noexcept;
BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD count, LPDWORD read, LPOVERLAPPED) noexcept;
BOOL WriteFile(HANDLE file, LPCVOID data, DWORD count, LPDWORD written, LPOVERLAPPED) noexcept;
BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position,
                      DWORD origin) noexcept;
BOOL GetFileSizeEx(HANDLE file, PLARGE_INTEGER size) noexcept;
BOOL CloseHandle(HANDLE object) noexcept;

// Mapped files: PAGE_READONLY and FILE_MAP_READ of a file, without a name.
[[nodiscard]] HANDLE CreateFileMappingA(HANDLE file, LPSECURITY_ATTRIBUTES, DWORD protection,
                                        DWORD sizeHigh, DWORD sizeLow, LPCSTR name) noexcept;
[[nodiscard]] LPVOID MapViewOfFile(HANDLE mapping, DWORD access, DWORD offsetHigh, DWORD offsetLow,
                                   SIZE_T count) noexcept;
BOOL UnmapViewOfFile(LPCVOID view) noexcept;

// Directories. The temporary one is TMPDIR, else /tmp; it ends in a separator.
DWORD GetCurrentDirectoryW(DWORD capacity, LPWSTR buffer) noexcept;
BOOL SetCurrentDirectoryA(LPCSTR path) noexcept;
BOOL SetCurrentDirectoryW(LPCWSTR path) noexcept;
DWORD GetTempPathA(DWORD capacity, LPSTR buffer) noexcept;
DWORD GetTempPathW(DWORD capacity, LPWSTR buffer) noexcept;

// Modules. A name without a folder is one that is loaded already (without regard to case), else a
// file beside the executable, in the current directory or in a folder of PATH; a name without
// a dot gets ".dll". The first load calls the module's DllMain, the last release does again.
// Ending the process does not.
[[nodiscard]] HMODULE LoadLibraryA(LPCSTR name) noexcept;
[[nodiscard]] HMODULE LoadLibraryW(LPCWSTR name) noexcept;
BOOL FreeLibrary(HMODULE module) noexcept;
[[nodiscard]] HMODULE GetModuleHandleA(LPCSTR name) noexcept;
DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD capacity) noexcept;
DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD capacity) noexcept;
// An ordinal N (MAKEINTRESOURCEA) is the export "ordinal.N".
[[nodiscard]] FARPROC GetProcAddress(HMODULE module, LPCSTR nameOrOrdinal) noexcept;
BOOL DisableThreadLibraryCalls(HMODULE module) noexcept;

// A string of the module's table (platform/posix/resource_strings.h). A text that is cut ends with
// a whole character.
int LoadStringA(HINSTANCE module, UINT id, LPSTR buffer, int capacity) noexcept;

// INI files. Section, key and value are needed: neither enumeration nor deletion. A bare file name
// lies in the current directory.
[[nodiscard]] UINT GetPrivateProfileIntA(LPCSTR section, LPCSTR key, INT missing,
                                         LPCSTR path) noexcept;
BOOL WritePrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR path) noexcept;

// Text. Code pages CP_ACP and CP_UTF8.
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR buffer,
                        int capacity) noexcept;
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR buffer,
                        int capacity, LPCSTR defaultCharacter, LPBOOL usedDefault) noexcept;
// At most 1,023 characters. "l" and "h" do not change a width: a Win32 long is an int.
int wsprintfA(LPSTR buffer, LPCSTR format, ...) noexcept;

// The C locale's short forms, MM/DD/YY and HH:MM:SS. A time is needed, a format is not taken.
int GetDateFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR buffer,
                   int capacity) noexcept;
int GetTimeFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR buffer,
                   int capacity) noexcept;

// Process and thread.
[[nodiscard]] ULONGLONG GetTickCount64() noexcept;
[[nodiscard]] DWORD GetCurrentThreadId() noexcept;
PVOID InterlockedExchangePointer(PVOID volatile* target, PVOID value) noexcept;
DWORD GetEnvironmentVariableA(LPCSTR name, LPSTR buffer, DWORD capacity) noexcept;
BOOL SetEnvironmentVariableA(LPCSTR name, LPCSTR value) noexcept;

}  // extern "C"

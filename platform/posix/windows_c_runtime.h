// The names that only the Windows C run-time library has, with its rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

using __time32_t = std::int32_t;

// The largest counts of characters, the closing NUL included, that splitting a path stores.
inline constexpr std::size_t _MAX_PATH = 260;
inline constexpr std::size_t _MAX_DRIVE = 3;
inline constexpr std::size_t _MAX_DIR = 256;
inline constexpr std::size_t _MAX_FNAME = 256;
inline constexpr std::size_t _MAX_EXT = 256;

extern "C" {

// Splits a path; both slashes separate, a character before a colon is a drive. An output may be
// null; what does not fit the counts above is cut.
void _splitpath(const char* path, char* drive, char* directory, char* name,
                char* extension) noexcept;
void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* directory, wchar_t* name,
                 wchar_t* extension) noexcept;

// Compare without regard to the case of the letters A to Z: below 0, 0, above 0.
[[nodiscard]] int _stricmp(const char* first, const char* second) noexcept;
[[nodiscard]] int _strnicmp(const char* first, const char* second, std::size_t count) noexcept;
[[nodiscard]] int _wcsicmp(const wchar_t* first, const wchar_t* second) noexcept;

// Break down a count of seconds since 1970 UTC, as UTC and as local time. The result belongs to the
// thread and lives until its next call; null (and EINVAL) for a count below 0.
[[nodiscard]] std::tm* _gmtime32(const __time32_t* time) noexcept;
[[nodiscard]] std::tm* _localtime32(const __time32_t* time) noexcept;

// The count of seconds of a broken-down local time, which is brought into its ranges. -1 (and
// EINVAL), with the input unchanged, when it lies before 1970, or after 2038-01-18 23:59:59 UTC
// (the wide form: 3001-01-01 07:59:59 UTC).
__time32_t _mktime32(std::tm* time) noexcept;
long long _mktime64(std::tm* time) noexcept;

}  // extern "C"

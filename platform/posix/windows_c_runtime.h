// The names that only the Windows C run-time library has, with its rules.
#pragma once

#include <cstdint>
#include <ctime>

using __time32_t = std::int32_t;

extern "C" {

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

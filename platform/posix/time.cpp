#include <cerrno>
#include <ctime>
#include <mutex>

#include "platform/posix/windows_c_runtime.h"

namespace platform::posix {
namespace {

constexpr long long last32 = 0x7FFFD27F;   // 2038-01-18 23:59:59 UTC
constexpr long long last64 = 0x793406FFF;  // 3001-01-01 07:59:59 UTC

// Windows keeps one for both kinds of break-down, too.
thread_local std::tm brokenDown;

std::mutex timeZone;  // the C library's, which every conversion may load anew

std::time_t localSeconds(std::tm& time) noexcept {
  const std::lock_guard guard(timeZone);
  return std::mktime(&time);
}

std::tm* breakDown(const __time32_t* time, std::tm* (*convert)(const std::time_t*, std::tm*)) {
  if (time == nullptr || *time < 0) {
    errno = EINVAL;
    return nullptr;
  }
  const std::time_t seconds = *time;
  return convert(&seconds, &brokenDown);
}

long long secondsOf(std::tm* time, long long last) {
  if (time != nullptr) {
    std::tm normalized = *time;
    const std::time_t seconds = localSeconds(normalized);
    if (seconds >= 0 && seconds <= last) {
      *time = normalized;
      return seconds;
    }
  }
  errno = EINVAL;
  return -1;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

std::tm* _gmtime32(const __time32_t* time) noexcept { return breakDown(time, gmtime_r); }

std::tm* _localtime32(const __time32_t* time) noexcept {
  const std::lock_guard guard(timeZone);
  tzset();  // localtime_r alone may miss a change of TZ
  return breakDown(time, localtime_r);
}

__time32_t _mktime32(std::tm* time) noexcept {
  return static_cast<__time32_t>(secondsOf(time, last32));
}

long long _mktime64(std::tm* time) noexcept { return secondsOf(time, last64); }

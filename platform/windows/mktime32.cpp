// The system's 64-bit C run-time library offers _mktime32 under that name on some versions only, so
// the compiler's import library leaves it out. This is its contract over the 64-bit form.
#define _CRTIMP  // what is defined here is not imported
#include <cerrno>
#include <ctime>

extern "C" __time32_t _mktime32(std::tm* time) {
  constexpr __time64_t last = 0x7FFFD27F;  // 2038-01-18 23:59:59 UTC
  if (time != nullptr) {
    std::tm normalized = *time;
    const __time64_t seconds = _mktime64(&normalized);
    if (seconds >= 0 && seconds <= last) {
      *time = normalized;
      return static_cast<__time32_t>(seconds);
    }
  }
  errno = EINVAL;
  return -1;
}

// Callers see the header's declaration, which goes through the slot of an import.
extern "C" {
decltype(&_mktime32) __imp__mktime32 = &_mktime32;
}

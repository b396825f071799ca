#include <cstring>

#include "platform/posix/errors.h"

namespace platform::posix {
namespace {

bool isLeapYear(WORD year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int daysOfMonth(WORD year, WORD month) {
  constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

bool isDate(const SYSTEMTIME& time) {
  return time.wYear >= 1601 && time.wYear <= 30827 && time.wMonth >= 1 && time.wMonth <= 12 &&
         time.wDay >= 1 && time.wDay <= daysOfMonth(time.wYear, time.wMonth);
}

bool isTimeOfDay(const SYSTEMTIME& time) {
  return time.wHour < 24 && time.wMinute < 60 && time.wSecond < 60 && time.wMilliseconds < 1000;
}

// Three numbers of two digits with a separator between them. The count of characters with the
// NUL; with a capacity of 0 nothing is stored.
int handOutNumbers(char separator, const int (&numbers)[3], LPSTR buffer, int capacity) {
  char text[16];
  const int length = wsprintfA(text, "%02d%c%02d%c%02d", numbers[0], separator, numbers[1],
                               separator, numbers[2]) +
                     1;
  if (capacity == 0) return length;
  if (capacity < length || buffer == nullptr) return failWith(ERROR_INSUFFICIENT_BUFFER, 0);
  std::memcpy(buffer, text, static_cast<std::size_t>(length));
  return length;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

int GetDateFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR buffer,
                   int capacity) noexcept {
  const bool understood = (flags & ~(LOCALE_NOUSEROVERRIDE | DATE_SHORTDATE)) == 0;
  if (!understood || time == nullptr || format != nullptr || capacity < 0 || !isDate(*time)) {
    return failWith(ERROR_INVALID_PARAMETER, 0);
  }
  return handOutNumbers('/', {time->wMonth, time->wDay, time->wYear % 100}, buffer, capacity);
}

int GetTimeFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR buffer,
                   int capacity) noexcept {
  const bool understood = (flags & ~(LOCALE_NOUSEROVERRIDE | TIME_FORCE24HOURFORMAT)) == 0;
  if (!understood || time == nullptr || format != nullptr || capacity < 0 || !isTimeOfDay(*time)) {
    return failWith(ERROR_INVALID_PARAMETER, 0);
  }
  return handOutNumbers(':', {time->wHour, time->wMinute, time->wSecond}, buffer, capacity);
}

#include "property/heap_date.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>

namespace property {
namespace {

constexpr UINT dateFormatString = 2715;
constexpr int longestPrint = 1024;  // of wsprintf, whatever the format

// Numbers that no part of a date has end the reading, before they overflow anything.
constexpr int largestDateNumber = 9999;

HeapDateText dateFormat(HMODULE resources) noexcept {
  HeapDateText format = {};
  LoadStringA(resources, dateFormatString, format.characters, sizeof format.characters);
  return format;
}

std::optional<host::u32> localSeconds(const int (&numbers)[6]) noexcept {
  std::tm time = {};
  time.tm_mon = numbers[0] - 1;
  time.tm_mday = numbers[1];
  time.tm_year = numbers[2] - 1900;
  time.tm_hour = numbers[3];
  time.tm_min = numbers[4];
  time.tm_sec = numbers[5];
  time.tm_isdst = -1;
  const long long seconds = _mktime64(&time);
  if (seconds < 0 || seconds > std::numeric_limits<host::u32>::max()) return std::nullopt;
  return static_cast<host::u32>(seconds);
}

}  // namespace

HeapDateText printHeapDate(HMODULE resources, const std::tm& time) noexcept {
  char printed[longestPrint] = {};
  wsprintfA(printed, dateFormat(resources).characters, time.tm_mon + 1, time.tm_mday,
            time.tm_year + 1900, time.tm_hour, time.tm_min, time.tm_sec);
  HeapDateText text = {};
  std::copy_n(printed, sizeof text.characters - 1, text.characters);
  return text;
}

std::optional<host::u32> readHeapDate(HMODULE resources, std::string_view text) noexcept {
  HeapDateText terminated = {};
  std::copy_n(text.begin(), std::min(text.size(), heapDateCapacity - 1), terminated.characters);
  int numbers[6] = {};
  const int found =
      std::sscanf(terminated.characters, dateFormat(resources).characters, &numbers[0], &numbers[1],
                  &numbers[2], &numbers[3], &numbers[4], &numbers[5]);
  const auto isImpossible = [](int number) { return number < 0 || number > largestDateNumber; };
  if (found != 6 || std::any_of(std::begin(numbers), std::end(numbers), isImpossible)) {
    return std::nullopt;
  }
  return localSeconds(numbers);
}

}  // namespace property

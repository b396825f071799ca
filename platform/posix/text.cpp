#include <algorithm>
#include <cstdint>
#include <string_view>

#include "platform/posix/windows_api.h"

namespace platform::posix {
namespace {

template <typename Char>
void copyPart(std::basic_string_view<Char> part, Char* target, std::size_t capacity) {
  if (target != nullptr) target[part.copy(target, capacity - 1)] = Char{};
}

template <typename Char>
void splitPath(const Char* path, Char* drive, Char* directory, Char* name, Char* extension) {
  using View = std::basic_string_view<Char>;
  constexpr Char separators[] = {'\\', '/', 0};
  View rest(path);
  const std::size_t driveLength = rest.size() > 1 && rest[1] == Char{':'} ? 2 : 0;
  copyPart(rest.substr(0, driveLength), drive, _MAX_DRIVE);
  rest.remove_prefix(driveLength);

  const std::size_t separator = rest.find_last_of(separators);
  const std::size_t directoryLength = separator == View::npos ? 0 : separator + 1;
  copyPart(rest.substr(0, directoryLength), directory, _MAX_DIR);
  rest.remove_prefix(directoryLength);

  const std::size_t dot = std::min(rest.rfind(Char{'.'}), rest.size());
  copyPart(rest.substr(0, dot), name, _MAX_FNAME);
  copyPart(rest.substr(dot), extension, _MAX_EXT);
}

template <typename Char>
int folded(Char character) {
  const bool capital = character >= Char{'A'} && character <= Char{'Z'};
  return static_cast<int>(character) + (capital ? 'a' - 'A' : 0);
}

int folded(char character) { return folded(static_cast<std::uint8_t>(character)); }

template <typename Char>
int compareFolded(const Char* first, const Char* second, std::size_t count) {
  for (std::size_t at = 0; at < count; ++at) {
    const int difference = folded(first[at]) - folded(second[at]);
    if (difference != 0 || first[at] == Char{}) return difference;
  }
  return 0;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

void _splitpath(const char* path, char* drive, char* directory, char* name,
                char* extension) noexcept {
  splitPath(path, drive, directory, name, extension);
}

void _wsplitpath(const wchar_t* path, wchar_t* drive, wchar_t* directory, wchar_t* name,
                 wchar_t* extension) noexcept {
  splitPath(path, drive, directory, name, extension);
}

int _stricmp(const char* first, const char* second) noexcept {
  return compareFolded(first, second, SIZE_MAX);
}

int _strnicmp(const char* first, const char* second, std::size_t count) noexcept {
  return compareFolded(first, second, count);
}

int _wcsicmp(const wchar_t* first, const wchar_t* second) noexcept {
  return compareFolded(first, second, SIZE_MAX);
}

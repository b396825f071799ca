#include <cstring>
#include <cwchar>

#include "platform/posix/errors.h"
#include "platform/posix/unicode.h"

namespace platform::posix {
namespace {

bool isKnown(UINT codePage) { return codePage == CP_ACP || codePage == CP_UTF8; }

// The source of a conversion: with a length of -1 the text and its NUL.
template <typename Char>
std::basic_string_view<Char> source(const Char* text, int length) {
  if (length >= 0) return {text, static_cast<std::size_t>(length)};
  return {text, std::char_traits<Char>::length(text) + 1};
}

template <typename Char>
bool validArguments(UINT codePage, const Char* text, int length, const void* buffer, int capacity) {
  return isKnown(codePage) && text != nullptr && length != 0 && length >= -1 && capacity >= 0 &&
         (capacity == 0 || buffer != nullptr);
}

// The count of characters of the result, stored unless only the count is wanted.
template <typename Char>
int handOutConverted(const std::optional<std::basic_string<Char>>& text, Char* buffer,
                     int capacity) {
  if (!text) return failWith(ERROR_NO_UNICODE_TRANSLATION, 0);
  const int length = static_cast<int>(text->size());
  if (capacity == 0) return length;
  if (capacity < length) return failWith(ERROR_INSUFFICIENT_BUFFER, 0);
  text->copy(buffer, text->size());
  return length;
}

}  // namespace
}  // namespace platform::posix

using namespace platform::posix;

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR buffer,
                        int capacity) noexcept {
  if (!validArguments(codePage, text, length, buffer, capacity)) {
    return failWith(ERROR_INVALID_PARAMETER, 0);
  }
  return guarded(0, [=] {
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    return handOutConverted(
        wideFromUtf8(source(text, length), strict ? Malformed::refuse : Malformed::substitute),
        buffer, capacity);
  });
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int length, LPSTR buffer,
                        int capacity, LPCSTR defaultCharacter, LPBOOL usedDefault) noexcept {
  // Windows takes a default character for its own code pages only.
  const bool wantsDefault = defaultCharacter != nullptr || usedDefault != nullptr;
  if (!validArguments(codePage, text, length, buffer, capacity) ||
      (wantsDefault && codePage == CP_UTF8)) {
    return failWith(ERROR_INVALID_PARAMETER, 0);
  }
  return guarded(0, [=] {
    auto converted = utf8FromWide(source(text, length), Malformed::refuse);
    if (usedDefault != nullptr) *usedDefault = !converted;
    if (!converted && (flags & WC_ERR_INVALID_CHARS) == 0) {
      converted = utf8FromWide(source(text, length), Malformed::substitute);
    }
    return handOutConverted(converted, buffer, capacity);
  });
}

// Paths as the system takes them, from what callers pass, and back.
#pragma once

#include <string>
#include <string_view>

#include "platform/posix/windows_api.h"

namespace platform::posix {

// The path to use for one that a caller passed (see windows_api.h for backslashes). Empty for null,
// and for a wide path that is not text.
[[nodiscard]] std::string systemPath(const char* path);
[[nodiscard]] std::string systemPath(const wchar_t* path);

// The text of a wide argument as bytes; empty for null.
[[nodiscard]] std::string pathBytes(const wchar_t* path);
[[nodiscard]] std::wstring widePath(std::string_view path);

// The last component, after either kind of slash.
[[nodiscard]] std::string_view baseName(std::string_view path) noexcept;

// The current directory, or empty.
[[nodiscard]] std::string currentDirectory();

// Hands a text out as the "Get" functions do: its length when it fits with its NUL, else the
// capacity that it needs and nothing stored.
template <typename Char>
[[nodiscard]] DWORD handOut(std::basic_string_view<Char> text, DWORD capacity, Char* buffer) {
  const auto length = static_cast<DWORD>(text.size());
  if (buffer == nullptr || capacity <= length) return length + 1;
  buffer[text.copy(buffer, length)] = Char{};
  return length;
}

}  // namespace platform::posix

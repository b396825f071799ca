// Conversion between UTF-8 and wide text, in which a character is a code point.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::posix {

// What becomes of bytes or characters that are not part of a code point.
enum class Malformed {
  refuse,      // there is no result
  substitute,  // U+FFFD; for bytes, one for each maximal subpart of a sequence (Unicode 3.9)
  escape,      // a byte B travels as U+DC00 + B and back; any other character is refused
};

[[nodiscard]] std::optional<std::wstring> wideFromUtf8(std::string_view text, Malformed rule);
[[nodiscard]] std::optional<std::string> utf8FromWide(std::wstring_view text, Malformed rule);

// The longest length, at most `limit`, that does not cut a character of the UTF-8 text.
[[nodiscard]] std::size_t wholeCharacters(std::string_view text, std::size_t limit) noexcept;

}  // namespace platform::posix

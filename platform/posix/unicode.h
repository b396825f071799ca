// Conversion between UTF-8 and wide text, in which a character is a code point.
#pragma once

#include <optional>
#include <span>
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

// The same into a place that is there already, so that it takes no memory: the length, or none when
// the text is refused or the place is too small.
[[nodiscard]] std::optional<std::size_t> utf8Into(std::span<char> target, std::wstring_view text,
                                                  Malformed rule) noexcept;

// The longest length, at most `limit`, that does not cut a character of the UTF-8 text.
[[nodiscard]] std::size_t wholeCharacters(std::string_view text, std::size_t limit) noexcept;

}  // namespace platform::posix

// The text of an INI file: lines "[section]" and "key=value"; what begins with ";" is a comment.
// Names are compared without regard to case; of several equal ones the first counts.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::posix {

// The value without the blanks around it and without one pair of quotes; nothing when the section
// has no such key.
[[nodiscard]] std::optional<std::string> findIniValue(std::string_view text,
                                                      std::string_view section,
                                                      std::string_view key);

// The text with the value set. All other lines stay as they are; a new key goes behind the last
// line of its section that is not blank, a new section to the end. New lines end as those of
// the text do, in a new text with CR LF.
[[nodiscard]] std::string withIniValue(std::string_view text, std::string_view section,
                                       std::string_view key, std::string_view value);

// A number as the profile functions read it: blanks, a sign, 0x, 0o or 0b, and digits up to the
// first other character; 0 when there are none. It wraps at 32 bits.
[[nodiscard]] unsigned iniNumber(std::string_view text) noexcept;

}  // namespace platform::posix

// XMP properties that tell places, blanked in their packet's text (XMP Specification, part 1). The
// text keeps its length, so that no segment moves.
#pragma once

#include <cstdint>
#include <span>

namespace fiohost {

enum class XmpCoding { utf8, utf16Big, utf16Little };

// text: XML from anywhere on; in UTF-16 from the lower byte of its first character on. Answers the
// bytes that became spaces.
std::uint64_t blankXmpPlaces(std::span<std::uint8_t> text, XmpCoding coding = XmpCoding::utf8);

}  // namespace fiohost

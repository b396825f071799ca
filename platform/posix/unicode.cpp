#include "platform/posix/unicode.h"

#include <algorithm>
#include <cstdint>

namespace platform::posix {
namespace {

constexpr wchar_t replacement = 0xFFFD;
constexpr wchar_t escapeBase = 0xDC00;

struct Sequence {
  std::size_t length;  // bytes that belong together, at least 1
  wchar_t codePoint;
  bool wellFormed;
};

// A row of table 3-7 of the Unicode standard: the lead bytes up to `last`, how many bytes follow,
// and the range of the first of them.
struct LeadBytes {
  std::uint8_t last;
  std::uint8_t following;
  std::uint8_t secondFirst;
  std::uint8_t secondLast;
};

constexpr LeadBytes leadBytes[] = {
    {0xDF, 1, 0x80, 0xBF}, {0xE0, 2, 0xA0, 0xBF}, {0xEC, 2, 0x80, 0xBF}, {0xED, 2, 0x80, 0x9F},
    {0xEF, 2, 0x80, 0xBF}, {0xF0, 3, 0x90, 0xBF}, {0xF3, 3, 0x80, 0xBF}, {0xF4, 3, 0x80, 0x8F},
};

std::uint8_t byteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

// The sequence at the start of a text that is not empty.
Sequence readSequence(std::string_view text) {
  const std::uint8_t lead = byteAt(text, 0);
  if (lead < 0x80) return {1, static_cast<wchar_t>(lead), true};
  const auto* row = std::find_if(std::begin(leadBytes), std::end(leadBytes),
                                 [lead](const LeadBytes& each) { return lead <= each.last; });
  if (lead < 0xC2 || row == std::end(leadBytes)) return {1, replacement, false};

  std::uint32_t codePoint = lead & (0x3Fu >> row->following);
  for (std::size_t at = 1; at <= row->following; ++at) {
    const std::uint8_t first = at == 1 ? row->secondFirst : 0x80;
    const std::uint8_t last = at == 1 ? row->secondLast : 0xBF;
    if (at >= text.size() || byteAt(text, at) < first || byteAt(text, at) > last) {
      return {at, replacement, false};
    }
    codePoint = codePoint << 6 | (byteAt(text, at) & 0x3Fu);
  }
  return {row->following + std::size_t{1}, static_cast<wchar_t>(codePoint), true};
}

bool isCodePoint(std::uint32_t character) {
  return character < 0xD800 || (character > 0xDFFF && character <= 0x10FFFF);
}

bool isEscape(std::uint32_t character) {
  return character >= escapeBase + 0x80 && character <= escapeBase + 0xFF;
}

template <typename Add>
void addUtf8(std::uint32_t codePoint, Add add) {
  if (codePoint < 0x80) return add(codePoint);
  if (codePoint < 0x800) {
    add(0xC0 | codePoint >> 6);
  } else if (codePoint < 0x10000) {
    add(0xE0 | codePoint >> 12);
    add(0x80 | (codePoint >> 6 & 0x3F));
  } else {
    add(0xF0 | codePoint >> 18);
    add(0x80 | (codePoint >> 12 & 0x3F));
    add(0x80 | (codePoint >> 6 & 0x3F));
  }
  add(0x80 | (codePoint & 0x3F));
}

// Every byte goes to add(byte). False when the text is refused.
template <typename Add>
bool convert(std::wstring_view text, Malformed rule, Add add) {
  for (const wchar_t each : text) {
    const auto character = static_cast<char32_t>(each);
    if (isCodePoint(character)) {
      addUtf8(character, add);
    } else if (rule == Malformed::substitute) {
      addUtf8(replacement, add);
    } else if (rule == Malformed::escape && isEscape(character)) {
      add(character & 0xFF);
    } else {
      return false;
    }
  }
  return true;
}

}  // namespace

std::optional<std::wstring> wideFromUtf8(std::string_view text, Malformed rule) {
  std::wstring wide;
  wide.reserve(text.size());
  while (!text.empty()) {
    const Sequence sequence = readSequence(text);
    if (sequence.wellFormed || rule == Malformed::substitute) {
      wide.push_back(sequence.codePoint);
    } else if (rule == Malformed::refuse) {
      return std::nullopt;
    } else {
      for (std::size_t at = 0; at < sequence.length; ++at) {
        wide.push_back(escapeBase + byteAt(text, at));
      }
    }
    text.remove_prefix(sequence.length);
  }
  return wide;
}

std::optional<std::string> utf8FromWide(std::wstring_view text, Malformed rule) {
  std::string narrow;
  narrow.reserve(text.size());
  const bool taken =
      convert(text, rule, [&](std::uint32_t byte) { narrow.push_back(static_cast<char>(byte)); });
  return taken ? std::optional(std::move(narrow)) : std::nullopt;
}

std::optional<std::size_t> utf8Into(std::span<char> target, std::wstring_view text,
                                    Malformed rule) noexcept {
  std::size_t length = 0;
  const bool taken = convert(text, rule, [&](std::uint32_t byte) {
    if (length < target.size()) target[length] = static_cast<char>(byte);
    ++length;
  });
  return taken && length <= target.size() ? std::optional(length) : std::nullopt;
}

std::size_t wholeCharacters(std::string_view text, std::size_t limit) noexcept {
  if (text.size() <= limit) return text.size();
  std::size_t length = 0;
  while (true) {
    const std::size_t next = length + readSequence(text.substr(length)).length;
    if (next > limit) return length;
    length = next;
  }
}

}  // namespace platform::posix

#include "platform/posix/ini_text.h"

#include <strings.h>

#include <algorithm>

namespace platform::posix {
namespace {

struct Line {
  std::size_t begin;
  std::size_t end;   // behind the last character, the line's end not counted
  std::size_t next;  // where the next line begins
};

// Where a key is, or would go.
struct Place {
  bool sectionFound = false;
  std::optional<Line> line;   // of the key
  std::size_t insertion = 0;  // for a new key of the section
};

bool isBlank(char character) { return character == ' ' || character == '\t'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool sameName(std::string_view first, std::string_view second) {
  return first.size() == second.size() &&
         strncasecmp(first.data(), second.data(), first.size()) == 0;
}

Line lineAt(std::string_view text, std::size_t begin) {
  const std::size_t feed = std::min(text.find('\n', begin), text.size());
  const bool carriageReturn = feed > begin && text[feed - 1] == '\r';
  return {begin, carriageReturn ? feed - 1 : feed, std::min(feed + 1, text.size())};
}

std::string_view contentOf(std::string_view text, const Line& line) {
  return trimmed(text.substr(line.begin, line.end - line.begin));
}

std::optional<std::string_view> sectionName(std::string_view content) {
  const std::size_t end = content.rfind(']');
  if (content.empty() || content.front() != '[' || end == std::string_view::npos) return {};
  return trimmed(content.substr(1, end - 1));
}

std::optional<std::string_view> keyName(std::string_view content) {
  const std::size_t equals = content.find('=');
  if (equals == std::string_view::npos || content.front() == ';') return {};
  return trimmed(content.substr(0, equals));
}

Place findPlace(std::string_view text, std::string_view section, std::string_view key) {
  Place place;
  for (std::size_t at = 0; at < text.size();) {
    const Line line = lineAt(text, at);
    at = line.next;
    const std::string_view content = contentOf(text, line);
    if (const auto header = sectionName(content)) {
      if (place.sectionFound) return place;
      place.sectionFound = sameName(*header, section);
    } else if (const auto name = keyName(content); place.sectionFound && name) {
      if (sameName(*name, key)) place.line = line;
    }
    if (place.sectionFound && !content.empty()) place.insertion = line.next;
    if (place.line) return place;
  }
  return place;
}

std::string_view lineEnding(std::string_view text) {
  const std::size_t feed = text.find('\n');
  const bool bare = feed != std::string_view::npos && (feed == 0 || text[feed - 1] != '\r');
  return bare ? "\n" : "\r\n";
}

unsigned digitValue(char character) {
  if (character >= '0' && character <= '9') return static_cast<unsigned>(character - '0');
  if (character >= 'a' && character <= 'f') return static_cast<unsigned>(character - 'a' + 10);
  if (character >= 'A' && character <= 'F') return static_cast<unsigned>(character - 'A' + 10);
  return 16;
}

// Takes a prefix that names the base off the text.
unsigned takeBase(std::string_view& text) {
  struct Prefix {
    std::string_view text;
    unsigned base;
  };
  constexpr Prefix prefixes[] = {{"0x", 16}, {"0o", 8}, {"0b", 2}};
  for (const Prefix& prefix : prefixes) {
    if (!text.starts_with(prefix.text)) continue;
    text.remove_prefix(prefix.text.size());
    return prefix.base;
  }
  return 10;
}

}  // namespace

std::optional<std::string> findIniValue(std::string_view text, std::string_view section,
                                        std::string_view key) {
  const Place place = findPlace(text, trimmed(section), trimmed(key));
  if (!place.line) return std::nullopt;
  const std::string_view content = contentOf(text, *place.line);
  std::string_view value = trimmed(content.substr(content.find('=') + 1));
  const bool quoted = value.size() > 1 && value.front() == value.back() &&
                      (value.front() == '"' || value.front() == '\'');
  if (quoted) value = value.substr(1, value.size() - 2);
  return std::string(value);
}

std::string withIniValue(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view value) {
  const Place place = findPlace(text, trimmed(section), trimmed(key));
  const std::string_view ending = lineEnding(text);
  std::string entry(trimmed(key));
  entry.append("=").append(value);

  std::string result(text);
  if (place.line) {
    return result.replace(place.line->begin, place.line->end - place.line->begin, entry);
  }
  entry.append(ending);
  std::size_t at = place.insertion;
  if (!place.sectionFound) {
    at = result.size();
    std::string header(1, '[');
    entry.insert(0, header.append(trimmed(section)).append(1, ']').append(ending));
  }
  if (at > 0 && result[at - 1] != '\n') entry.insert(0, ending);
  return result.insert(at, entry);
}

unsigned iniNumber(std::string_view text) noexcept {
  text = trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const unsigned base = takeBase(text);
  unsigned number = 0;
  for (const char character : text) {
    const unsigned digit = digitValue(character);
    if (digit >= base) break;
    number = number * base + digit;
  }
  return negative ? 0 - number : number;
}

}  // namespace platform::posix

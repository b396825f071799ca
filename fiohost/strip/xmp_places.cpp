#include "fiohost/strip/xmp_places.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>

namespace fiohost {
namespace {

using std::uint8_t;
using namespace std::string_view_literals;

constexpr auto blanks = " \t\r\n"sv;
constexpr std::size_t none = std::string_view::npos;

// What places are called beside the GPS properties, in the schemas of Photoshop, the IPTC and those
// that took the names over.
constexpr std::array placeNames = {"City"sv,        "State"sv,           "Country"sv,
                                   "Location"sv,    "CountryCode"sv,     "Sublocation"sv,
                                   "CountryName"sv, "LocationCreated"sv, "LocationShown"sv};

bool namesPlace(std::string_view name) {
  const std::string_view local = name.substr(name.find(':') + 1);
  constexpr auto gps = "gps"sv;
  const bool isGps = local.size() >= gps.size() &&
                     std::equal(gps.begin(), gps.end(), local.begin(), [](char a, char b) {
                       return a == std::tolower(static_cast<unsigned char>(b));
                     });
  return isGps || std::find(placeNames.begin(), placeNames.end(), local) != placeNames.end();
}

// One byte a character; a question mark for those beyond ASCII, which are no markup.
std::string narrowed(std::span<const uint8_t> bytes, XmpCoding coding) {
  if (coding == XmpCoding::utf8) return {bytes.begin(), bytes.end()};
  std::string text;
  for (std::size_t low = 0; low < bytes.size(); low += 2) {
    const std::size_t high = coding == XmpCoding::utf16Big ? low - 1 : low + 1;
    const bool ascii = high >= bytes.size() || bytes[high] == 0;
    text.push_back(ascii ? static_cast<char>(bytes[low]) : '?');
  }
  return text;
}

class Scanner {
 public:
  Scanner(std::span<uint8_t> bytes, XmpCoding coding)
      : bytes_(bytes),
        stride_(coding == XmpCoding::utf8 ? 1 : 2),
        ascii_(narrowed(bytes, coding)),
        text_(ascii_) {}

  std::uint64_t blankAll() {
    std::size_t at = 0;
    while ((at = text_.find('<', at)) != none) at = passTag(at);
    return blanked_;
  }

 private:
  // Answers where to go on.
  std::size_t passTag(std::size_t at) {
    if (begins(at, "<!--")) return behind("-->", at);
    if (begins(at, "<?")) return behind("?>", at);
    if (begins(at, "</") || begins(at, "<!")) return behind(">", at);
    const std::string_view name = nameAt(at + 1);
    if (!namesPlace(name)) return passAttributes(at + 1 + name.size());
    const std::size_t end = elementEnd(at, name);
    blank(at, end);
    return end;
  }

  // Blanks those of places. Answers the place behind the tag.
  std::size_t passAttributes(std::size_t at) {
    while ((at = text_.find_first_not_of(blanks, at)) != none) {
      if (text_[at] == '>') return at + 1;
      const std::string_view name = nameAt(at);
      const std::size_t end = attributeEnd(at + name.size());
      if (namesPlace(name)) blank(at, end);
      at = std::max(end, at + 1);
    }
    return text_.size();
  }

  // Behind the quoted value, if one follows.
  [[nodiscard]] std::size_t attributeEnd(std::size_t at) const {
    const std::size_t equals = text_.find_first_not_of(blanks, at);
    if (equals == none || text_[equals] != '=') return at;
    const std::size_t open = text_.find_first_not_of(blanks, equals + 1);
    if (open == none) return text_.size();
    if (text_[open] != '"' && text_[open] != '\'') return open;
    const std::size_t close = text_.find(text_[open], open + 1);
    return close == none ? text_.size() : close + 1;
  }

  // Behind the element's end tag; elements of its own name may lie inside.
  [[nodiscard]] std::size_t elementEnd(std::size_t at, std::string_view name) const {
    std::size_t depth = 0;
    while (at != none) {
      const bool closing = begins(at, "</");
      const bool own = nameAt(at + (closing ? 2 : 1)) == name;
      const std::size_t end = tagEnd(at);
      if (own && closing) --depth;
      if (own && !closing && !(end >= 2 && text_[end - 2] == '/')) ++depth;
      if (depth == 0) return end;
      at = text_.find('<', end);
    }
    return text_.size();
  }

  [[nodiscard]] std::size_t tagEnd(std::size_t at) const {
    char quote = 0;
    for (; at < text_.size(); ++at) {
      const char c = text_[at];
      if (quote == 0 && c == '>') return at + 1;
      if (quote == 0 && (c == '"' || c == '\'')) {
        quote = c;
      } else if (c == quote) {
        quote = 0;
      }
    }
    return text_.size();
  }

  [[nodiscard]] std::string_view nameAt(std::size_t at) const {
    const std::size_t end = text_.find_first_of(" \t\r\n/=<>", at);
    return text_.substr(std::min(at, text_.size()), end == none ? none : end - at);
  }
  [[nodiscard]] bool begins(std::size_t at, std::string_view with) const {
    return text_.substr(at, with.size()) == with;
  }
  [[nodiscard]] std::size_t behind(std::string_view end, std::size_t at) const {
    const std::size_t found = text_.find(end, at);
    return found == none ? text_.size() : found + end.size();
  }

  // The higher byte behind the last character may be the next one's.
  void blank(std::size_t from, std::size_t to) {
    const auto part = bytes_.subspan(from * stride_, (to - from) * stride_ - (stride_ - 1));
    for (std::size_t i = 0; i < part.size(); ++i) part[i] = i % stride_ == 0 ? ' ' : 0;
    blanked_ += part.size();
  }

  std::span<uint8_t> bytes_;
  std::size_t stride_;     // bytes a character
  std::string ascii_;      // the same characters
  std::string_view text_;  // of the string
  std::uint64_t blanked_ = 0;
};

}  // namespace

std::uint64_t blankXmpPlaces(std::span<uint8_t> text, XmpCoding coding) {
  return Scanner(text, coding).blankAll();
}

}  // namespace fiohost

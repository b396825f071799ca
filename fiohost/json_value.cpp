#include "fiohost/json_value.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace fiohost {
namespace {

constexpr std::size_t indent = 2;
constexpr std::string_view replacement = "\xEF\xBF\xBD";  // U+FFFD

// Lead bytes and what may follow them first (Unicode, table 3-7); all others are 80 to BF.
struct Lead {
  unsigned char first;
  unsigned char last;
  std::size_t following;
  unsigned char secondFirst;
  unsigned char secondLast;
};
constexpr Lead leads[] = {
    {0x00, 0x7F, 0, 0, 0},       {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF},
    {0xE1, 0xEC, 2, 0x80, 0xBF}, {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF},
    {0xF0, 0xF0, 3, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

struct Character {
  std::size_t length;
  bool wellFormed;
};

// The character at the start of a text that is not empty; of bytes that are none, those that could
// have begun one.
Character nextCharacter(std::string_view text) {
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  const auto* lead = std::find_if(std::begin(leads), std::end(leads), [&](const Lead& each) {
    return byteAt(0) >= each.first && byteAt(0) <= each.last;
  });
  if (lead == std::end(leads)) return {1, false};
  for (std::size_t at = 1; at <= lead->following; ++at) {
    const unsigned char first = at == 1 ? lead->secondFirst : 0x80;
    const unsigned char last = at == 1 ? lead->secondLast : 0xBF;
    if (at >= text.size() || byteAt(at) < first || byteAt(at) > last) return {at, false};
  }
  return {lead->following + 1, true};
}

std::string escaped(char character) {
  constexpr std::pair<char, const char*> names[] = {{'"', "\\\""}, {'\\', "\\\\"}, {'\b', "\\b"},
                                                    {'\f', "\\f"}, {'\n', "\\n"},  {'\r', "\\r"},
                                                    {'\t', "\\t"}};
  for (const auto& [named, text] : names) {
    if (named == character) return text;
  }
  constexpr unsigned char firstPrintable = 0x20;
  if (static_cast<unsigned char>(character) >= firstPrintable) return {character};
  constexpr char digits[] = "0123456789abcdef";
  return {'\\', 'u', '0', '0', digits[character >> 4], digits[character & 15]};
}

void writeText(std::string& out, std::string_view text) {
  out += '"';
  while (!text.empty()) {
    const Character next = nextCharacter(text);
    if (!next.wellFormed) {
      out += replacement;
    } else if (next.length == 1) {
      out += escaped(text.front());
    } else {
      out += text.substr(0, next.length);
    }
    text.remove_prefix(next.length);
  }
  out += '"';
}

// The shortest digits that give the number back, always told from an integer.
void writeReal(std::string& out, double number) {
  if (!std::isfinite(number)) {
    out += "null";
    return;
  }
  char digits[32];
  const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  const std::string_view text(digits, static_cast<std::size_t>(end - digits));
  out += text;
  if (text.find_first_of(".e") == std::string_view::npos) out += ".0";
}

}  // namespace

bool Json::isNamedPair() const {
  return kind_ == Kind::array && parts_.size() == 2 && parts_.front().kind_ == Kind::text;
}

Json::Json(std::initializer_list<Json> parts) : kind_(Kind::array) {
  const bool named =
      std::all_of(parts.begin(), parts.end(), [](const Json& part) { return part.isNamedPair(); });
  if (!named) {
    parts_ = parts;
    return;
  }
  kind_ = Kind::object;
  for (const Json& part : parts) {
    names_.push_back(part.parts_.front().text_);
    parts_.push_back(part.parts_.back());
  }
}

Json& Json::operator[](std::string_view name) {
  if (isNull()) kind_ = Kind::object;
  const auto found = std::find(names_.begin(), names_.end(), name);
  if (found != names_.end()) return parts_[static_cast<std::size_t>(found - names_.begin())];
  names_.emplace_back(name);
  parts_.emplace_back();
  return parts_.back();
}

void Json::push_back(Json element) {
  if (isNull()) kind_ = Kind::array;
  parts_.push_back(std::move(element));
}

void Json::lead(std::string_view name, const Json& value) {
  if (kind_ == Kind::array) {
    for (Json& part : parts_) part.lead(name, value);
  } else if (kind_ == Kind::object) {
    names_.emplace(names_.begin(), name);
    parts_.insert(parts_.begin(), value);
  }
}

std::string Json::dump() const {
  std::string out;
  write(out, 0);
  return out;
}

void Json::write(std::string& out, std::size_t depth) const {
  switch (kind_) {
    case Kind::null:
      out += "null";
      break;
    case Kind::truth:
      out += number_ != 0 ? "true" : "false";
      break;
    case Kind::signedNumber:
      out += std::to_string(static_cast<std::int64_t>(number_));
      break;
    case Kind::unsignedNumber:
      out += std::to_string(number_);
      break;
    case Kind::real:
      writeReal(out, real_);
      break;
    case Kind::text:
      writeText(out, text_);
      break;
    case Kind::array:
    case Kind::object:
      writeParts(out, depth);
      break;
  }
}

// In their brackets, a line each.
void Json::writeParts(std::string& out, std::size_t depth) const {
  const bool named = kind_ == Kind::object;
  out += named ? '{' : '[';
  for (std::size_t part = 0; part < parts_.size(); ++part) {
    out += part == 0 ? "\n" : ",\n";
    out.append((depth + 1) * indent, ' ');
    if (named) {
      writeText(out, names_[part]);
      out += ": ";
    }
    parts_[part].write(out, depth + 1);
  }
  if (!parts_.empty()) out.append("\n").append(depth * indent, ' ');
  out += named ? '}' : ']';
}

}  // namespace fiohost

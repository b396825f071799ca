#include "fiohost/tag_forms.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace fiohost {
namespace {

constexpr auto image = PropertyGroup::image;
constexpr auto exif = PropertyGroup::exif;
constexpr auto gps = PropertyGroup::gps;
constexpr auto iptc = PropertyGroup::iptc;

constexpr const char* dateTime = "dddd:dd:dd dd:dd:dd";
constexpr const char* dateTimeWords = "a date and time such as \"2010:12:31 23:59:59\"";
constexpr const char* offset = "sdd:dd";
constexpr const char* offsetWords = "an offset from universal time such as +01:00";
constexpr const char* version = "dddd";
constexpr const char* versionWords = "four digits such as 0232";
constexpr const char* northWords = "N (north) or S (south)";
constexpr const char* eastWords = "E (east) or W (west)";
constexpr const char* trueWords = "T (true direction) or M (magnetic direction)";

constexpr std::array forms = {
    TextForm{image, 0x0132, dateTime, dateTimeWords},
    TextForm{exif, 0x0002, version, versionWords},
    TextForm{exif, 0x9000, version, versionWords},
    TextForm{exif, 0x9003, dateTime, dateTimeWords},
    TextForm{exif, 0x9004, dateTime, dateTimeWords},
    TextForm{exif, 0x9010, offset, offsetWords},
    TextForm{exif, 0x9011, offset, offsetWords},
    TextForm{exif, 0x9012, offset, offsetWords},
    TextForm{exif, 0xA000, version, versionWords},
    TextForm{exif, 0xA420, "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "32 hexadecimal digits"},
    TextForm{gps, 0x01, "N|S", northWords},
    TextForm{gps, 0x03, "E|W", eastWords},
    TextForm{gps, 0x09, "A|V", "A (measuring) or V (interrupted)"},
    TextForm{gps, 0x0A, "2|3", "2 or 3 (dimensions)"},
    TextForm{gps, 0x0C, "K|M|N", "K (km/h), M (miles per hour) or N (knots)"},
    TextForm{gps, 0x0E, "T|M", trueWords},
    TextForm{gps, 0x10, "T|M", trueWords},
    TextForm{gps, 0x13, "N|S", northWords},
    TextForm{gps, 0x15, "E|W", eastWords},
    TextForm{gps, 0x17, "T|M", trueWords},
    TextForm{gps, 0x19, "K|M|N", "K (kilometres), M (miles) or N (nautical miles)"},
    TextForm{gps, 0x1D, "dddd:dd:dd", "a date such as 2010:12:31"},
    TextForm{iptc, 10, "d", "one digit from 0 to 9"},
    TextForm{iptc, 55, "dddddddd", "a date such as 20101231"},
    TextForm{iptc, 60, "ddddddsdddd", "a time such as 235959+0100"},
};

bool isLike(char given, char wanted) {
  const auto letter = static_cast<unsigned char>(given);
  if (wanted == 'd') return std::isdigit(letter) != 0;
  if (wanted == 'x') return std::isxdigit(letter) != 0;
  if (wanted == 's') return given == '+' || given == '-';
  return given == wanted;
}

}  // namespace

const TextForm* textFormOf(const SettableTag& tag) {
  const auto form = std::find_if(forms.begin(), forms.end(), [&](const TextForm& listed) {
    return listed.group == tag.group && listed.tag == tag.definition.tag;
  });
  return form != forms.end() ? &*form : nullptr;
}

bool hasForm(const TextForm& form, const std::string& text) {
  std::string_view rest = form.pattern;
  while (true) {
    const std::string_view pattern = rest.substr(0, rest.find('|'));
    if (std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(), &isLike)) return true;
    if (pattern.size() == rest.size()) return false;
    rest.remove_prefix(pattern.size() + 1);
  }
}

}  // namespace fiohost

#include "fiohost/tag_catalogue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <span>

#include "exif/tag_tables.h"
#include "fiohost/failure.h"
#include "fiohost/similar_names.h"
#include "fiohost/tag_names.h"

namespace fiohost {
namespace {

using host::TagDefinition;
using host::u16;

std::string labelOf(const Session& session, host::u32 id) {
  std::array<char, 64> text = {};
  LoadStringA(session.resources.handle(), id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

// The packet and the places of pixels are no values that somebody could type.
bool isSettable(u16 fieldId) {
  constexpr u16 stripOffsets = 4008;
  constexpr u16 stripByteCounts = 4012;
  return fieldId != host::fieldXmp && fieldId != stripOffsets && fieldId != stripByteCounts;
}

std::optional<unsigned> numberIn(const std::string& text, const std::string& prefix, int base) {
  if (!text.starts_with(prefix)) return std::nullopt;
  const char* end = text.data() + text.size();
  unsigned number = 0;
  const auto [stop, error] = std::from_chars(text.data() + prefix.size(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

// By number, with the name in small letters.
bool isNumberOf(const SettableTag& tag, const std::string& name) {
  const auto is = [&](const char* prefix, int base) {
    return numberIn(name, prefix, base) == unsigned{tag.definition.tag};
  };
  if (tag.group == PropertyGroup::iptc) return is("2:", 10) || is("iptc:2:", 10);
  if (tag.group == PropertyGroup::gps) return is("gps:0x", 16);
  return is("0x", 16) || is("exif:0x", 16);
}

bool isNamed(const SettableTag& tag, const std::string& name) {
  return lowered(tag.label) == name || lowered(tag.standardName) == name || isNumberOf(tag, name);
}

std::string choicesOf(const std::vector<const SettableTag*>& tags) {
  std::vector<std::string> names;
  names.reserve(tags.size());
  for (const SettableTag* tag : tags) names.push_back(tag->standardName);
  return quotedNames(names);
}

}  // namespace

TagCatalogue::TagCatalogue(const Session& session) {
  const auto add = [&](exif::TagTable table, PropertyGroup group, std::optional<u16> firstField) {
    for (std::size_t row = 0; row < table.size(); ++row) {
      const TagDefinition& definition = table[row];
      const u16 id = firstField ? static_cast<u16>(*firstField + row) : u16{definition.fieldId};
      if (!isSettable(id)) continue;
      tags_.push_back({group, definition, id, labelOf(session, definition.labelId),
                       standardName(group, definition.tag)});
    }
  };
  const exif::TagTable exifRows = exif::exifTable();
  const std::size_t primary = std::min<std::size_t>(exifRows.size(), host::exifPrimaryRows);
  add(exifRows.first(primary), PropertyGroup::exif, std::nullopt);
  add(exifRows.subspan(primary), PropertyGroup::image, std::nullopt);
  add(exif::gpsTable(), PropertyGroup::gps, host::fieldGpsFirst);
  add(exif::iptcTable(), PropertyGroup::iptc, host::fieldIptcFirst);
}

const SettableTag& TagCatalogue::find(const std::string& name) const {
  std::vector<const SettableTag*> found;
  for (const SettableTag& tag : tags_) {
    if (isNamed(tag, lowered(name))) found.push_back(&tag);
  }
  if (found.size() == 1) return *found.front();
  if (!found.empty()) {
    throw Failure("there are several tags \"" + name + "\"", "say one of " + choicesOf(found));
  }
  std::vector<std::string> names;
  for (const SettableTag& tag : tags_) {
    names.push_back(tag.label);
    if (lowered(tag.standardName) != lowered(tag.label)) names.push_back(tag.standardName);
  }
  const std::string similar = similarNames(names, name);
  throw Failure("there is no tag \"" + name + "\" that can be set",
                similar.empty() ? "use a name that \"fiohost properties\" lists, or one of the "
                                  "standard's, such as FNumber"
                                : "did you mean " + similar + "?");
}

const SettableTag* TagCatalogue::ofField(u16 fieldId) const {
  const auto found = std::find_if(tags_.begin(), tags_.end(), [fieldId](const SettableTag& tag) {
    return tag.fieldId == fieldId;
  });
  return found != tags_.end() ? &*found : nullptr;
}

}  // namespace fiohost

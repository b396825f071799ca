#include "fiohost/properties.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "exif/format_rules.h"
#include "exif/iptc_text.h"
#include "exif/value_text.h"
#include "host/tag_definition.h"
#include "property/field_block.h"

namespace fiohost {
namespace {

using host::PropertyField;
using host::u16;
using Rows = std::span<const host::TagDefinition>;

// The tables that say which tag a field id stands for.
struct TagTables {
  explicit TagTables(const FileUtilities& utilities)
      : exif(utilities.module.entry<const host::TagDefinition>("_gfnFIOTIFFFORMATDef"),
             host::exifRows),
        gps(utilities.module.entry<const host::TagDefinition>("_gfnFIOGPSExifDef"), host::gpsRows),
        iptc(utilities.module.entry<const host::TagDefinition>("_gfnIPTCRecordEntry"),
             host::iptcRows) {}
  Rows exif;
  Rows gps;
  Rows iptc;
};

bool isBetween(u16 id, u16 first, u16 last) { return id >= first && id <= last; }

// An XMP packet that lies in a TIFF entry has a TIFF type; one of a segment of its own has none.
PropertyGroup groupOf(const PropertyField& field) {
  const u16 id = field.fieldId;
  if (field.sourceGroup == host::groupRawSegment) return PropertyGroup::segment;
  if (id == host::fieldXmp) return PropertyGroup::xmp;
  if (id == host::fieldIcc) return PropertyGroup::icc;
  if (isBetween(id, host::fieldHostFirst, host::fieldHostLast)) return PropertyGroup::image;
  if (isBetween(id, host::fieldExifFirst, host::fieldExifLast)) return PropertyGroup::exif;
  if (isBetween(id, host::fieldGpsFirst, host::fieldGpsLast)) return PropertyGroup::gps;
  if (isBetween(id, host::fieldIptcFirst, host::fieldIptcLast)) return PropertyGroup::iptc;
  return isBetween(id, host::fieldHeap, host::fieldExifFirst - 1) ? PropertyGroup::camera
                                                                  : PropertyGroup::segment;
}

std::optional<unsigned> tagOfField(Rows rows, u16 id) {
  const auto row = std::find_if(
      rows.begin(), rows.end(),
      [id](const host::TagDefinition& definition) { return definition.fieldId == id; });
  return row != rows.end() ? std::optional<unsigned>(row->tag) : std::nullopt;
}

// GPS fields are numbered by their rows.
std::optional<unsigned> tagOfGps(Rows rows, u16 id) {
  const auto row = static_cast<std::size_t>(id - host::fieldGpsFirst);
  return row < rows.size() ? std::optional<unsigned>(rows[row].tag) : std::nullopt;
}

std::optional<unsigned> tagOf(const TagTables& tables, PropertyGroup group,
                              const PropertyField& field) {
  switch (group) {
    case PropertyGroup::image:
    case PropertyGroup::exif:
      return tagOfField(tables.exif, field.fieldId);
    case PropertyGroup::xmp:
      return field.sourceGroup != 0 ? tagOfField(tables.exif, field.fieldId) : std::nullopt;
    case PropertyGroup::gps:
      return tagOfGps(tables.gps, field.fieldId);
    case PropertyGroup::iptc:
      return tagOfField(tables.iptc, field.fieldId);
    default:
      return std::nullopt;
  }
}

bool hasTiffType(PropertyGroup group) {
  return group == PropertyGroup::image || group == PropertyGroup::exif ||
         group == PropertyGroup::gps;
}

void takeValue(const PropertyField& field, Property& listed) {
  if (field.valueKind == host::kindText || field.valueKind == host::kindBlock) {
    const auto block = property::blockOf(field);
    const auto value = field.valueKind == host::kindBlock ? property::payloadOf(field) : block;
    const auto prefix = block.first(block.size() - value.size());
    listed.prefix.assign(prefix.begin(), prefix.end());
    listed.value.assign(value.begin(), value.end());
    return;
  }
  const bool isShort =
      field.valueKind == host::kindNumber16 || field.valueKind == host::kindNumber16Unsigned;
  std::array<std::uint8_t, 4> number = {};
  std::memcpy(number.data(), &field.data, number.size());
  listed.value.assign(number.begin(), number.begin() + (isShort ? 2 : 4));
}

// What nobody could read, a text of blanks, is left out too.
std::string formattedUnlessRaw(const exif::DisplayText& shown, const exif::DisplayText& raw) {
  const bool says =
      shown.view() != raw.view() && shown.view().find_first_not_of(' ') != std::string_view::npos;
  return says ? std::string(shown.view()) : std::string();
}

std::string formattedExif(HMODULE resources, PropertyGroup group, const PropertyField& field) {
  exif::DisplayText raw;
  if (exif::fieldToText(field, raw) == 0) return "";
  const exif::DisplayText shown = group == PropertyGroup::exif
                                      ? exif::formatExifValue(resources, field, raw)
                                      : exif::formatGpsValue(field, raw);
  return formattedUnlessRaw(shown, raw);
}

std::string formattedIptc(PropertyField& field) {
  std::array<char, exif::iptcNumberText> buffer = {};
  char* text = buffer.data();
  exif::convertFieldText({&field, 1}, 0, exif::TextDirection::fieldToText, &text);
  return text;
}

std::string formatted(HMODULE resources, PropertyGroup group, PropertyField& field) {
  if (group == PropertyGroup::iptc) return formattedIptc(field);
  const bool hasRules = group == PropertyGroup::exif || group == PropertyGroup::gps;
  return hasRules ? formattedExif(resources, group, field) : "";
}

Property readField(HMODULE resources, const TagTables& tables, PropertyField& field) {
  Property property = {};
  property.group = groupOf(field);
  property.id = field.fieldId;
  property.valueKind = field.valueKind;
  property.tiffType = hasTiffType(property.group) ? u16{field.sourceGroup} : u16{0};
  property.tag = tagOf(tables, property.group, field);
  property.name.assign(field.name, strnlen(field.name, sizeof field.name));
  takeValue(field, property);
  property.formatted = formatted(resources, property.group, field);
  return property;
}

}  // namespace

const char* groupName(PropertyGroup group) {
  static constexpr std::array names = {"Image",  "EXIF", "GPS", "IPTC",
                                       "Camera", "XMP",  "ICC", "Segment"};
  return names[static_cast<std::size_t>(group)];
}

LockedFields::LockedFields(const FileData& fileData)
    : record_(reinterpret_cast<HGLOBAL>(host::u64{fileData.common().propertyRecord})),
      lock_(record_) {
  auto* header = lock_.as<host::PropertyHeader>();
  if (header == nullptr || header->fieldCount < 1) return;
  const std::size_t room = (lock_.size() - sizeof *header) / sizeof(PropertyField);
  fields_ = {reinterpret_cast<PropertyField*>(header + 1),
             std::min<std::size_t>(static_cast<std::size_t>(header->fieldCount), room)};
}

void LockedFields::setCount(std::size_t count) const noexcept {
  auto* header = lock_.as<host::PropertyHeader>();
  if (header == nullptr) return;
  header->fieldCount = static_cast<host::i32>(count);
  header->recordSize = static_cast<host::u32>(sizeof *header + count * sizeof(PropertyField));
}

std::vector<Property> readProperties(const Session& session, const FileData& fileData) {
  const TagTables tables(session.utilities);
  std::vector<Property> properties;
  const LockedFields locked(fileData);
  for (PropertyField& field : locked.fields()) {
    if (field.fieldId == host::fieldHeader) continue;
    properties.push_back(readField(session.resources.handle(), tables, field));
  }
  return properties;
}

}  // namespace fiohost

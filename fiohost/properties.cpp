#include "fiohost/properties.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "host/tag_definition.h"

namespace fiohost {
namespace {

using host::PropertyField;
using host::u16;
using Rows = std::span<const host::TagDefinition>;

constexpr std::size_t prefixSize = 4;

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

// The bytes that a block really has.
std::span<const std::uint8_t> blockOf(const PropertyField& field) {
  if (field.data == 0) return {};
  const SIZE_T real = GlobalSize(reinterpret_cast<HGLOBAL>(field.data));
  return {reinterpret_cast<const std::uint8_t*>(field.data),
          std::min<std::size_t>(field.dataSize, real)};
}

void takeValue(const PropertyField& field, Property& property) {
  if (field.valueKind == host::kindText || field.valueKind == host::kindBlock) {
    const auto block = blockOf(field);
    const std::size_t skipped =
        field.valueKind == host::kindBlock ? std::min(prefixSize, block.size()) : 0;
    const auto begin = block.begin() + static_cast<std::ptrdiff_t>(skipped);
    property.prefix.assign(block.begin(), begin);
    property.value.assign(begin, block.end());
    return;
  }
  const bool isShort =
      field.valueKind == host::kindNumber16 || field.valueKind == host::kindNumber16Unsigned;
  std::array<std::uint8_t, 4> number = {};
  std::memcpy(number.data(), &field.data, number.size());
  property.value.assign(number.begin(), number.begin() + (isShort ? 2 : 4));
}

Property readField(const TagTables& tables, const PropertyField& field) {
  Property property = {};
  property.group = groupOf(field);
  property.id = field.fieldId;
  property.valueKind = field.valueKind;
  property.tiffType = hasTiffType(property.group) ? u16{field.sourceGroup} : u16{0};
  property.tag = tagOf(tables, property.group, field);
  const void* end = std::memchr(field.name, '\0', sizeof field.name);
  property.name.assign(
      field.name, end != nullptr ? static_cast<const char*>(end) : field.name + sizeof field.name);
  takeValue(field, property);
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

std::vector<Property> readProperties(const Session& session, const FileData& fileData) {
  const TagTables tables(session.utilities);
  std::vector<Property> properties;
  const LockedFields locked(fileData);
  for (const PropertyField& field : locked.fields()) {
    if (field.fieldId != host::fieldHeader) properties.push_back(readField(tables, field));
  }
  return properties;
}

}  // namespace fiohost

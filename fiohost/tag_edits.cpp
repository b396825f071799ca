#include "fiohost/tag_edits.h"

#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/failure.h"
#include "fiohost/held_fields.h"
#include "fiohost/record_edits.h"
#include "property/field_block.h"

namespace fiohost {
namespace {

using host::PropertyField;
using host::u16;
using host::u8;

// Datasets that an object may have several of (IIM 4.2, chapter 6).
bool isRepeatable(const SettableTag& tag) {
  constexpr std::array repeatable = {12, 20, 25, 80, 85, 118, 122};
  return tag.group == PropertyGroup::iptc &&
         std::find(repeatable.begin(), repeatable.end(), tag.definition.tag) != repeatable.end();
}

u16 presentTypeOf(const FileData& fileData, u16 fieldId) {
  const LockedFields locked(fileData);
  for (const PropertyField& field : locked.fields()) {
    if (field.fieldId == fieldId) return field.sourceGroup;
  }
  return 0;
}

void rewriteSegment(PropertyField& field, const std::vector<DatasetEdit>& edits) {
  constexpr std::size_t mostPayload = 65533;
  const std::vector<u8> payload = withDatasets(property::payloadOf(field), edits);
  if (payload.size() > mostPayload) {
    throw Failure("the IPTC values do not fit their segment",
                  "one segment holds " + std::to_string(mostPayload) + " bytes");
  }
  const std::span<const u8> block = property::blockOf(field);
  const std::size_t length = payload.size() + 2;
  const std::array<u8, 4> head = {block[0], block[1], static_cast<u8>(length >> 8),
                                  static_cast<u8>(length)};
  PropertyField changed = field;
  if (!property::giveBlock(changed, {head, payload})) {
    throw Failure("there is no memory for the IPTC values", "close other programs");
  }
  property::dropBlock(field);
  field = changed;
}

bool isExifSegment(const PropertyField& field) {
  return field.fieldId == host::fieldExifSegment && field.sourceGroup == host::groupRawSegment;
}

// A number is read back in the width of its field.
bool holds(const Property& property, const TagValue& value) {
  std::vector<u8> bytes = property.value;
  const bool isNumber =
      property.valueKind != host::kindText && property.valueKind != host::kindBlock;
  if (isNumber) bytes.resize(value.bytes.size());
  return bytes == value.bytes;
}

}  // namespace

TagEdits::TagEdits(const Session& session, const std::vector<std::string>& changes)
    : session_(session), catalogue_(session), changes_(splitChanges(changes)) {}

void TagEdits::addChange(const SettableTag& tag, TagValue value, std::vector<Edit>& edits) const {
  const auto same =
      std::find_if(edits.begin(), edits.end(), [&](const Edit& edit) { return edit.tag == &tag; });
  if (same == edits.end()) {
    edits.push_back({&tag, {std::move(value)}});
    return;
  }
  if (!isRepeatable(tag)) throw Failure("\"" + tag.label + "\" is set twice", "say it once");
  same->values.push_back(std::move(value));
}

std::vector<TagEdits::Edit> TagEdits::readChanges(const FileData& fileData) const {
  std::vector<Edit> edits;
  for (const Change& change : changes_) {
    const SettableTag& tag = catalogue_.find(change.name);
    addChange(tag, parseTagValue(tag, presentTypeOf(fileData, tag.fieldId), change.text), edits);
  }
  return edits;
}

std::vector<DatasetEdit> TagEdits::datasetEdits() const {
  std::vector<DatasetEdit> datasets;
  for (const Edit& edit : edits_) {
    if (edit.tag->group != PropertyGroup::iptc) continue;
    DatasetEdit& dataset =
        datasets.emplace_back(DatasetEdit{static_cast<u8>(edit.tag->definition.tag), {}});
    for (const TagValue& value : edit.values) dataset.values.push_back(value.bytes);
  }
  return datasets;
}

bool TagEdits::editsDirectories() const {
  return std::any_of(edits_.begin(), edits_.end(),
                     [](const Edit& edit) { return edit.tag->group != PropertyGroup::iptc; });
}

// Datasets live in the Photoshop segment where a file has one.
EditedParts TagEdits::apply(FileData& fileData) {
  edits_ = readChanges(fileData);
  EditedParts parts;
  parts.exif = editsDirectories();
  const std::vector<DatasetEdit> datasets = datasetEdits();
  bool inPhotoshop = false;
  {
    const LockedFields locked(fileData);
    PropertyField* segment = iptcSegment(locked);
    inPhotoshop = segment != nullptr;
    if (inPhotoshop && !datasets.empty()) {
      const auto listed = static_cast<std::size_t>(
          std::count_if(locked.fields().begin(), locked.fields().end(),
                        [](const PropertyField& field) { return isIptcField(field); }));
      const bool inExifToo = listed > countDatasets(property::payloadOf(*segment));
      parts.exif = parts.exif || inExifToo;
      parts.iptc = true;
      rewriteSegment(*segment, datasets);
    }
  }
  parts.exif = parts.exif || (!datasets.empty() && !inPhotoshop);
  for (const Edit& edit : edits_) setField(fileData, *edit.tag, edit.values);
  if (parts.exif) removeFields(fileData, &isExifSegment);
  sortDirectories(fileData, catalogue_);
  return parts;
}

void TagEdits::verify(const SourceFile& saved) const {
  const Described described = describeFile(session_, saved);
  session_.plugin.loadProperties(described.fileData.handle());
  const std::vector<Property> properties = readProperties(session_, described.fileData);
  for (const Edit& edit : edits_) {
    std::vector<const Property*> found;
    for (const Property& property : properties) {
      if (property.id == edit.tag->fieldId) found.push_back(&property);
    }
    const bool same = std::equal(
        found.begin(), found.end(), edit.values.begin(), edit.values.end(),
        [](const Property* property, const TagValue& value) { return holds(*property, value); });
    if (same) continue;
    throw Failure("the plug-in did not take the new value of \"" + edit.tag->label + "\"",
                  "all values together must fit one segment of 65533 bytes");
  }
}

}  // namespace fiohost

#include "fiohost/record_edits.h"

#include <algorithm>
#include <cstring>

#include "fiohost/failure.h"
#include "property/field_block.h"

namespace fiohost {
namespace {

using host::PropertyField;
using host::u32;
using host::u64;
using Bytes = std::span<const std::uint8_t>;

// Zeros behind a text, so that it ends even where its value has no NUL.
constexpr std::size_t textRoom = 2;

[[noreturn]] void refuseMemory() {
  throw Failure("there is no memory for the value", "close other programs");
}

u64 numberOf(Bytes bytes) {
  u64 number = 0;
  for (std::size_t at = bytes.size(); at-- > 0;) number = number << 8 | bytes[at];
  return number;
}

PropertyField describe(const SettableTag& tag) {
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = tag.definition.kind;
  field.fieldId = tag.fieldId;
  tag.label.copy(field.name, sizeof field.name - 1);
  return field;
}

// The field must own no block.
void giveValue(const TagValue& value, PropertyField& field) {
  field.sourceGroup = value.tiffType;
  if (field.valueKind == host::kindText) {
    if (!property::giveBlock(field, {value.bytes}, textRoom)) refuseMemory();
  } else if (field.valueKind == host::kindBlock) {
    const auto length = static_cast<u32>(value.bytes.size());
    std::array<std::uint8_t, sizeof length> prefix = {};
    std::memcpy(prefix.data(), &length, sizeof length);
    if (!property::giveBlock(field, {prefix, value.bytes})) refuseMemory();
  } else {
    field.data = numberOf(value.bytes);
    field.dataSize = 0;
  }
}

void addField(FileData& fileData, const SettableTag& tag, const TagValue& value) {
  PropertyField field = describe(tag);
  giveValue(value, field);
  if (fileData.addField(field)) return;
  property::dropBlock(field);
  refuseMemory();
}

}  // namespace

void setField(FileData& fileData, const SettableTag& tag, const std::vector<TagValue>& values) {
  std::size_t used = 0;
  {
    const LockedFields locked(fileData);
    for (PropertyField& field : locked.fields()) {
      if (field.fieldId != tag.fieldId || used == values.size()) continue;
      PropertyField changed = describe(tag);
      giveValue(values[used++], changed);
      property::dropBlock(field);
      field = changed;
    }
  }
  std::size_t seen = 0;
  removeFields(fileData, [&](const PropertyField& field) {
    return field.fieldId == tag.fieldId && seen++ >= values.size();
  });
  for (; used < values.size(); ++used) addField(fileData, tag, values[used]);
}

void removeFields(const FileData& fileData,
                  const std::function<bool(const PropertyField&)>& condition) {
  const LockedFields locked(fileData);
  const std::span<PropertyField> fields = locked.fields();
  std::size_t kept = 0;
  for (PropertyField& field : fields) {
    if (condition(field)) {
      property::dropBlock(field);
    } else {
      fields[kept++] = field;
    }
  }
  if (kept == fields.size()) return;
  std::fill(fields.begin() + static_cast<std::ptrdiff_t>(kept), fields.end(), PropertyField{});
  locked.setCount(kept);
}

void sortDirectories(const FileData& fileData, const TagCatalogue& catalogue) {
  const LockedFields locked(fileData);
  for (const PropertyGroup group :
       {PropertyGroup::image, PropertyGroup::exif, PropertyGroup::gps}) {
    std::vector<PropertyField*> places;
    for (PropertyField& field : locked.fields()) {
      const SettableTag* tag = catalogue.ofField(field.fieldId);
      if (tag != nullptr && tag->group == group) places.push_back(&field);
    }
    std::vector<PropertyField> sorted;
    sorted.reserve(places.size());
    for (const PropertyField* place : places) sorted.push_back(*place);
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](const PropertyField& a, const PropertyField& b) {
                       return catalogue.ofField(a.fieldId)->definition.tag <
                              catalogue.ofField(b.fieldId)->definition.tag;
                     });
    for (std::size_t i = 0; i < places.size(); ++i) *places[i] = sorted[i];
  }
}

}  // namespace fiohost

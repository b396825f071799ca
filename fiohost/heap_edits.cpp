#include "fiohost/heap_edits.h"

#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/failure.h"
#include "fiohost/similar_names.h"

namespace fiohost {
namespace {

using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;

// Items of the captured time: seconds, the zone's seconds, and whether the zone counts.
constexpr u16 capturedZone = 5032;
constexpr u16 capturedZoneFlag = 5033;

constexpr u16 noKind = 0;  // no item of a heap has it, so the plug-in passes the field over

std::string suggestNames(const std::vector<Property>& items, const std::string& given) {
  std::vector<std::string> names;
  names.reserve(items.size());
  for (const Property& item : items) names.push_back(item.name);
  const std::string similar = similarNames(names, given);
  return similar.empty() ? "the values are " + quotedNames(names) : "did you mean " + similar + "?";
}

const Property& itemNamed(const std::vector<Property>& items, const std::string& name) {
  const auto isIt = [wanted = lowered(name)](const Property& item) {
    return lowered(item.name) == wanted;
  };
  const auto found = std::find_if(items.begin(), items.end(), isIt);
  if (found == items.end()) {
    throw Failure("the camera data has no value \"" + name + "\"", suggestNames(items, name));
  }
  if (std::find_if(found + 1, items.end(), isIt) != items.end()) {
    throw Failure("the camera data has several values \"" + name + "\"",
                  "none of them can be told from the others");
  }
  return *found;
}

PropertyField* findField(const LockedFields& locked, u16 id) {
  const std::span<PropertyField> fields = locked.fields();
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [id](const PropertyField& field) { return field.fieldId == id; });
  return found != fields.end() ? &*found : nullptr;
}

void storeText(const std::string& text, PropertyField& field) {
  constexpr std::size_t tail = 2;
  platform::OwnedGlobal block(platform::fixedZeroed, text.size() + tail);
  if (!block) throw Failure("there is no memory for the text", "close other programs");
  std::copy(text.begin(), text.end(), static_cast<char*>(block.get()));
  const platform::OwnedGlobal old(reinterpret_cast<HGLOBAL>(u64{field.data}));
  field.data = reinterpret_cast<u64>(block.release());
  field.dataSize = static_cast<u32>(text.size());
}

void store(const HeapValue& value, PropertyField& field) {
  if (field.valueKind == host::kindText) {
    storeText(value.text, field);
  } else {
    field.data = value.number;
  }
}

// As the camera keeps it: the zone's seconds are taken off for show.
u32 capturedSeconds(const LockedFields& locked, const HeapValue& date) {
  const PropertyField* zone = findField(locked, capturedZone);
  const PropertyField* flag = findField(locked, capturedZoneFlag);
  const bool zoneCounts = zone != nullptr && flag != nullptr && (flag->data & 1) != 0;
  return secondsOf(date) + (zoneCounts ? static_cast<u32>(zone->data) : 0);
}

// The kinds and values of a record's fields, put back at the end.
class KeptKinds {
 public:
  explicit KeptKinds(std::span<PropertyField> fields) : fields_(fields) {
    for (const PropertyField& field : fields) kept_.push_back({field.valueKind, field.data});
  }
  KeptKinds(const KeptKinds&) = delete;
  KeptKinds& operator=(const KeptKinds&) = delete;
  ~KeptKinds() {
    for (std::size_t at = 0; at < kept_.size(); ++at) {
      fields_[at].valueKind = kept_[at].kind;
      if (fields_[at].valueKind == host::kindDateTime) fields_[at].data = kept_[at].data;
    }
  }

 private:
  struct Kept {
    u16 kind;
    u64 data;
  };
  std::span<PropertyField> fields_;
  std::vector<Kept> kept_;
};

}  // namespace

HeapEdits::HeapEdits(const Session& session, const std::vector<std::string>& changes)
    : session_(session), changes_(splitChanges(changes)) {}

bool HeapEdits::isEdited(u16 fieldId) const {
  return std::any_of(edits_.begin(), edits_.end(),
                     [fieldId](const Edit& edit) { return edit.fieldId == fieldId; });
}

// The plug-in writes every item that the record has back into the heap, a date in local time and
// some months of it as the next one. So it is shown the edited items alone, and a date as the
// seconds that the heap keeps.
EditedParts HeapEdits::apply(const FileData& fileData) {
  const std::vector<Property> items = heapItems(session_, fileData);
  if (items.empty()) throw Failure("this file has no camera data", "there is nothing to set");
  edits_.clear();
  for (const Change& change : changes_) {
    const Property& item = itemNamed(items, change.name);
    if (isEdited(item.id)) throw Failure("\"" + item.name + "\" is set twice", "say it once");
    edits_.push_back({item.name, item.id, parseHeapValue(item, change.text)});
  }
  const LockedFields locked(fileData);
  for (const Edit& edit : edits_) store(edit.value, *findField(locked, edit.fieldId));
  const KeptKinds kept(locked.fields());
  for (PropertyField& field : locked.fields()) {
    if (isHeapItem(field.fieldId) && !isEdited(field.fieldId)) field.valueKind = noKind;
  }
  for (const Edit& edit : edits_) {
    PropertyField& field = *findField(locked, edit.fieldId);
    if (field.valueKind != host::kindDateTime) continue;
    field.valueKind = host::kindNumber32;
    field.data = capturedSeconds(locked, edit.value);
  }
  session_.plugin.setProperties(fileData.handle(), locked.record());
  return {.cameraData = true};
}

void HeapEdits::verify(const SourceFile& saved) const {
  const Described described = describeFile(session_, saved);
  session_.plugin.loadProperties(described.fileData.handle());
  const std::vector<Property> items = heapItems(session_, described.fileData);
  for (const Edit& edit : edits_) {
    const auto item = std::find_if(items.begin(), items.end(),
                                   [&](const Property& other) { return other.id == edit.fieldId; });
    if (item == items.end() || heapValueOf(*item) != edit.value) {
      throw Failure("the plug-in did not take the new value of \"" + edit.name + "\"",
                    "the camera data must fit one segment of 65533 bytes");
    }
  }
}

}  // namespace fiohost

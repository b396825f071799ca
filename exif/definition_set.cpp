#include "exif/definition_set.h"

#include <algorithm>

#include "frame/module.h"

namespace exif {

bool DefinitionSet::buildExif(host::u32 mode) noexcept {
  size_ = 0;
  const TagTable table = exifTable();
  if (table.empty()) return false;
  if ((mode & primaryGroup) != 0) append(table.first(host::exifPrimaryRows), exifCapacity);
  if ((mode & secondaryGroup) != 0) append(table.subspan(host::exifPrimaryRows), exifCapacity);
  return true;
}

bool DefinitionSet::buildGps() noexcept {
  size_ = 0;
  const TagTable table = gpsTable();
  append(table, gpsCapacity);
  return !table.empty();
}

void DefinitionSet::append(TagTable rows, unsigned capacity) noexcept {
  for (const host::TagDefinition& row : rows) {
    if (size_ == capacity) return;
    rows_[size_] = row;
    loaded_[size_] = false;
    ++size_;
  }
}

template <typename Matches>
std::optional<unsigned> DefinitionSet::firstRow(Matches matches) const noexcept {
  for (unsigned index = 0; index < size_; ++index) {
    if (matches(rows_[index])) return index;
  }
  return std::nullopt;
}

std::optional<unsigned> DefinitionSet::find(host::u16 tag) const noexcept {
  return firstRow([=](const host::TagDefinition& row) { return row.tag == tag; });
}

std::optional<unsigned> DefinitionSet::findField(host::u16 fieldId) const noexcept {
  return firstRow([=](const host::TagDefinition& row) { return row.fieldId == fieldId; });
}

const Label& DefinitionSet::label(unsigned index) noexcept {
  Label& label = labels_[index];
  if (loaded_[index]) return label;
  loaded_[index] = true;
  label.fill('\0');
  const host::u32 id = rows_[index].labelId;
  if (id == host::noLabel) return label;
  const int length =
      LoadStringA(frame::resourceLibrary(), id, label.data(), static_cast<int>(label.size()));
  // What lies behind the text is copied into records too, so it must be nothing.
  std::fill(label.begin() + std::clamp(length, 0, static_cast<int>(labelLength) - 1), label.end(),
            '\0');
  return label;
}

}  // namespace exif

#include "exif/value_rows.h"

#include <new>

#include "exif/format_rules.h"
#include "exif/value_text.h"
#include "frame/module.h"

namespace exif {
namespace {

using host::PropertyField;
using host::u16;

// What differs between the two lists.
struct List {
  unsigned setSize;
  u16 firstField;
  u16 lastField;
  std::size_t mapSize;     // rows that a definition row is kept for
  std::size_t valueCount;  // rows that can have a value
  DisplayText (*format)(const PropertyField& field, const DisplayText& raw) noexcept;
};

DisplayText formatExif(const PropertyField& field, const DisplayText& raw) noexcept {
  return formatExifValue(frame::resourceLibrary(), field, raw);
}

constexpr List exifList = {host::exifPrimaryRows,
                           host::fieldExifFirst,
                           host::fieldExifFirst + host::exifPrimaryRows - 1,
                           DefinitionSet::exifCapacity,
                           host::exifPrimaryRows,
                           &formatExif};
constexpr List gpsList = {host::gpsRows,
                          host::fieldGpsFirst,
                          host::fieldGpsLast,
                          DefinitionSet::gpsCapacity,
                          static_cast<std::size_t>(-1),
                          &formatGpsValue};

// The field that a definition row stands for. GPS rows are numbered by their place alone.
u16 fieldIdOf(const List& list, const DefinitionSet& set, int row) noexcept {
  const auto index = static_cast<unsigned>(row);
  return list.firstField == host::fieldGpsFirst ? static_cast<u16>(list.firstField + index)
                                                : u16{set.row(index).fieldId};
}

int rowText(const List& list, const DefinitionSet& set, int row, TextDirection direction,
            DisplayText& text, const property::PropertyRecord& record) noexcept {
  if (set.size() != list.setSize || row < 0 || static_cast<unsigned>(row) >= set.size()) return 0;
  const u16 wanted = fieldIdOf(list, set, row);
  for (PropertyField& field : record.fields()) {
    if (field.fieldId != wanted) continue;
    return direction == TextDirection::fieldToText ? fieldToText(field, text)
                                                   : textToField(field, text);
  }
  return 0;
}

std::string_view nameOf(const PropertyField& field) noexcept {
  return {field.name, strnlen(field.name, sizeof field.name)};
}

void addRow(const List& list, const DefinitionSet& set, const PropertyField& field,
            const property::PropertyRecord& record, ValueRows& rows) {
  const std::size_t position = rows.size();
  const int definition = field.fieldId - list.firstField;
  ValueRow& row = rows.emplace_back();
  row.label.append(nameOf(field));
  if (position < list.mapSize) row.definitionRow = definition;
  DisplayText raw;
  const int shown = rowText(list, set, definition, TextDirection::fieldToText, raw, record);
  if (shown != 0 && position < list.valueCount) row.value = list.format(field, raw);
}

int fillRows(const List& list, const DefinitionSet& set, const property::PropertyRecord& record,
             ValueRows& rows) noexcept {
  rows.clear();
  if (record.header() == nullptr || set.size() == 0) return 0;
  try {
    for (const PropertyField& field : record.fields()) {
      if (field.fieldId < list.firstField || field.fieldId > list.lastField) continue;
      addRow(list, set, field, record, rows);
    }
  } catch (const std::bad_alloc&) {
    rows.clear();
    return 0;
  }
  return 1;
}

}  // namespace

int exifRowText(const DefinitionSet& set, int row, TextDirection direction, DisplayText& text,
                const property::PropertyRecord& record) noexcept {
  return rowText(exifList, set, row, direction, text, record);
}

int gpsRowText(const DefinitionSet& set, int row, TextDirection direction, DisplayText& text,
               const property::PropertyRecord& record) noexcept {
  return rowText(gpsList, set, row, direction, text, record);
}

int fillExifRows(const DefinitionSet& set, const property::PropertyRecord& record,
                 ValueRows& rows) noexcept {
  return fillRows(exifList, set, record, rows);
}

int fillGpsRows(const DefinitionSet& set, const property::PropertyRecord& record,
                ValueRows& rows) noexcept {
  return fillRows(gpsList, set, record, rows);
}

}  // namespace exif

#include "viewer/field_rows.h"

#include <cstring>

#include "exif/iptc_text.h"

namespace viewer {
namespace {

using host::PropertyField;

// The text of a field without its NULs: the record hands out its own data, which ends with one.
std::string displayText(std::span<PropertyField> fields, std::size_t index) {
  char number[exif::iptcNumberText] = {};
  char* text = number;
  if (exif::convertFieldText(fields, index, exif::TextDirection::fieldToText, &text) == 0) {
    return {};
  }
  if (text == number) return number;
  const std::size_t size = GlobalSize(reinterpret_cast<HGLOBAL>(fields[index].data));
  return {text, strnlen(text, size)};
}

bool isIptc(const PropertyField& field) noexcept {
  return field.fieldId >= host::fieldIptcFirst && field.fieldId <= host::fieldIptcLast;
}

}  // namespace

std::string fieldName(const PropertyField& field) {
  return {field.name, strnlen(field.name, sizeof field.name)};
}

std::vector<FieldRow> iptcRows(std::span<PropertyField> fields) {
  std::vector<FieldRow> rows;
  for (std::size_t index = 0; index < fields.size(); ++index) {
    if (isIptc(fields[index])) {
      rows.push_back({fieldName(fields[index]), displayText(fields, index)});
    }
  }
  return rows;
}

std::string iptcBoxText(std::span<PropertyField> fields, std::size_t row) {
  return displayText(fields, row);
}

std::string lineText(const std::string& value) {
  std::string text = value;
  for (const char* gap : {"\r\n", "\n", "\r", "\t"}) {
    const std::size_t length = std::strlen(gap);
    for (std::size_t at = text.find(gap); at != std::string::npos; at = text.find(gap, at)) {
      text.replace(at, length, " ");
    }
  }
  return text;
}

std::string rowsAsText(const std::vector<FieldRow>& rows) {
  std::string text;
  for (const FieldRow& row : rows) text += row.name + "\t" + lineText(row.value) + "\r\n";
  return text;
}

std::string boxText(const std::string& value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const char character = value[i];
    const bool pair = character == '\r' && i + 1 < value.size() && value[i + 1] == '\n';
    if (pair) ++i;
    if (character == '\r' || character == '\n') {
      text += "\r\n";
    } else {
      text += character;
    }
  }
  return text;
}

}  // namespace viewer

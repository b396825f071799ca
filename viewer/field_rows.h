// The rows of the pages that list fields.
#pragma once

#include <string>
#include <vector>

#include "property/property_record.h"

namespace viewer {

struct FieldRow {
  std::string name;
  std::string value;
};

// The name of a field, which may fill its place without a NUL.
[[nodiscard]] std::string fieldName(const host::PropertyField& field);

// IPTC fields in the order of the record, with their display texts.
[[nodiscard]] std::vector<FieldRow> iptcRows(std::span<host::PropertyField> fields);

// What the value box shows for a row of the IPTC list: the display text of the descriptor whose
// index is the row's number, whatever the row shows (kept: hosts know the page like this).
[[nodiscard]] std::string iptcBoxText(std::span<host::PropertyField> fields, std::size_t row);

// A value on one line, as a list shows it: line ends and tabs are spaces.
[[nodiscard]] std::string lineText(const std::string& value);

// Rows for the clipboard: "name, tab, value", each on one line.
[[nodiscard]] std::string rowsAsText(const std::vector<FieldRow>& rows);

// A value as a text box takes it: lines end with a carriage return and a line feed.
[[nodiscard]] std::string boxText(const std::string& value);

}  // namespace viewer

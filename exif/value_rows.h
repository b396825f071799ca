// The EXIF and GPS fields of a record as the rows of a two-column list: label and value.
#pragma once

#include <vector>

#include "exif/definition_set.h"
#include "exif/display_text.h"
#include "exif/text_direction.h"
#include "property/property_record.h"

namespace exif {

struct ValueRow {
  // No field is known for rows behind the last that the list keeps a field for.
  static constexpr int noDefinition = -1;

  DisplayText label;  // the field's name
  DisplayText value;
  int definitionRow = noDefinition;  // of the field shown, in the set that the list was filled with
};

using ValueRows = std::vector<ValueRow>;

// The raw text of the first field in the record that a definition row stands for, or the text put
// into that field. set: of the primary group with its 71 rows, or of the 32 GPS rows; record:
// locked by the caller. Returns 1; 0 when the set has another number of rows, there is no such row
// or field, or its value cannot be shown.
int exifRowText(const DefinitionSet& set, int row, TextDirection direction, DisplayText& text,
                const property::PropertyRecord& record) noexcept;
int gpsRowText(const DefinitionSet& set, int row, TextDirection direction, DisplayText& text,
               const property::PropertyRecord& record) noexcept;

// Puts one row for each EXIF field of the primary group, or for each GPS field, into rows, in
// record order. Values are formatted; where no rule has a text, the raw text stands, and a value
// that cannot be shown is empty. Returns 1; 0, with no rows, when the record is missing, the set
// could not be built, or there is no memory. A set of the wrong size gives labels without values.
int fillExifRows(const DefinitionSet& set, const property::PropertyRecord& record,
                 ValueRows& rows) noexcept;
int fillGpsRows(const DefinitionSet& set, const property::PropertyRecord& record,
                ValueRows& rows) noexcept;

}  // namespace exif

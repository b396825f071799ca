// One IPTC field as text to show and edit.
#pragma once

#include <span>

#include "exif/text_direction.h"
#include "host/property_record.h"

namespace exif {

// What a caller's buffer must hold for a field that is no text.
inline constexpr std::size_t iptcNumberText = 16;

// Converts one field of a locked record. Returns 1, or 0 without a record or such a field.
// fieldToText: *text is the caller's buffer of iptcNumberText bytes. It receives a record version
// as "N.0" and an empty string for a field that is no text; for a text *text is set to the field's
// own data, which the record keeps.
// textToField: *text is the edited text. The field's data is replaced.
int convertFieldText(std::span<host::PropertyField> fields, std::size_t index,
                     TextDirection direction, char** text) noexcept;

}  // namespace exif

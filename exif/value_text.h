// The raw text of an EXIF or GPS field: what a value box shows and an edit turns back.
#pragma once

#include "exif/display_text.h"
#include "host/property_record.h"

namespace exif {

// A text of several pieces ends in "..." where the next piece would bring it to this length.
inline constexpr std::size_t rawTextLimit = 252;

// False for value kinds that always have an empty text.
[[nodiscard]] bool hasShownKind(const host::PropertyField& field) noexcept;

// The value as text, by the field's value kind and TIFF type. Returns 1, or 0 with an empty text
// when the value cannot be shown. Of LONG arrays every fourth value is told, RATIONALs are told as
// signed numbers, kinds 4 and 16 give an empty text and 1 (all kept).
int fieldToText(const host::PropertyField& field, DisplayText& text) noexcept;

// Puts the text into the field. A number becomes the text's leading number; a byte block holds the
// characters themselves, whatever the TIFF type, which stays (kept). Returns 1.
int textToField(host::PropertyField& field, const DisplayText& text) noexcept;

}  // namespace exif

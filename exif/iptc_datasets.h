// IPTC datasets (IIM 4.2, chapter 2): into property fields and back into a stream.
#pragma once

#include <span>

#include "exif/value_budget.h"
#include "host/property_record.h"
#include "platform/system.h"

namespace exif {

// Adds a text field for every dataset of record 2 that the host's table knows. Extended lengths
// are not recognised. slot: where the property record's handle lies.
void decodeDatasets(std::span<const host::u8> data, HGLOBAL* slot, ValueBudget& budget) noexcept;

// The bytes that serialiseDatasets counts for these fields; the builder of a segment sizes its
// buffer by it.
[[nodiscard]] host::u64 serialisedDatasetsSize(
    std::span<const host::PropertyField> fields) noexcept;

// Writes every IPTC field as a dataset, in record order, as far as the buffer reaches. Returns the
// bytes counted, which may be less than what was written: before a field that is no text an empty
// record version is written at the buffer's start and the count begins again at its 5 bytes (kept).
// 0 without fields or buffer.
host::u64 serialiseDatasets(std::span<const host::PropertyField> fields,
                            std::span<host::u8> buffer) noexcept;

}  // namespace exif

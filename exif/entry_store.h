// From a directory entry to the value of a property field.
#pragma once

#include "exif/directory_entry.h"
#include "exif/value_budget.h"
#include "host/property_record.h"

namespace exif {

// What lies in front of a byte block's payload.
enum class BlockHead {
  length,  // 32-bit payload byte count
  entry,   // 16-bit tag, 16-bit type, 32-bit element count, 32-bit payload byte count
};

// Fills type, size and value of a field by its value kind. values: the window that value offsets
// count in, in the file's order. Numbers of a block are stored in this machine's order; a single
// DOUBLE of a big-endian file stays as it lies in the file (kept: readers of the host know it so).
// False when the entry gives no field: a kind that stores nothing, an unknown type, a value that
// does not lie inside whole, no memory, or the budget is used up. A block then is not left behind.
[[nodiscard]] bool storeEntry(const platform::ByteReader& values, const DirectoryEntry& entry,
                              BlockHead head, host::PropertyField& field,
                              ValueBudget& budget) noexcept;

}  // namespace exif

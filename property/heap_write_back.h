// From edited property fields back into the camera-data heap.
#pragma once

#include "host/types.h"

namespace property {

// Takes the values of the heap's fields into the heap that the property record's first field 5000
// holds. True when that was done, or there is nothing to do: no record, no heap, no field of it.
// False, with the record unchanged: the heap cannot be parsed, refuses a value or would not fit its
// segment any more (silent), or memory cannot be had (reported).
[[nodiscard]] bool writeHeapBack(HMODULE resources, HGLOBAL property) noexcept;

}  // namespace property

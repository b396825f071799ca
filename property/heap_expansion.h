// A camera-data heap as property fields, one for every value that is known by name.
#pragma once

#include <span>

#include "host/types.h"

namespace property {

// Adds the heap itself (field 5000) and its items to the record in the slot, which is made when it
// is null. resources: the library with the fields' names. payload: the heap's bytes as far as the
// file holds them; length: how many of them the heap has.
// Returns 1, or 0 with nothing added: the heap cannot be parsed (silent), or memory or room for the
// fields cannot be had (reported).
int expandHeap(HMODULE resources, std::span<const host::u8> payload, host::u16 length,
               HGLOBAL* slot) noexcept;

}  // namespace property

// What libjpeg's colour conversion leaves to do for a row.
#pragma once

#include <cstddef>

#include "host/types.h"

namespace klibjpg {

// Turns count ink amounts between 0 = no ink and 255 = no ink. target may be source, or the two do
// not overlap.
void invertInk(host::u8* target, const host::u8* source, std::size_t count) noexcept;

}  // namespace klibjpg

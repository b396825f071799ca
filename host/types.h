// Fixed-width names and the offset assertion that every host record uses.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/system.h"

namespace host {

using u8 = std::uint8_t;
using u16 = std::uint16_t;
using u32 = std::uint32_t;
using u64 = std::uint64_t;
using i32 = std::int32_t;
using i64 = std::int64_t;

}  // namespace host

// A host record is a wire format: every named field is pinned to its offset. Bytes that belong to
// the host alone are gaps, named after their offset and never touched.
#define HOST_FIELD_AT(Record, field, offset) \
  static_assert(offsetof(Record, field) == (offset), #Record "." #field " is at " #offset)
#define HOST_RECORD_SIZE(Record, size) \
  static_assert(sizeof(Record) == (size), #Record " has " #size " bytes")

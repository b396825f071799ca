// The data block that a text or byte-block field of a property record owns.
#pragma once

#include <initializer_list>
#include <span>

#include "host/property_record.h"

namespace property {

// Whether the field's data word is the address of a block.
[[nodiscard]] bool ownsBlock(const host::PropertyField& field) noexcept;

// The bytes that the block really has, whatever the size word says; a byte block's prefix is among
// them. Empty for a field without a block.
[[nodiscard]] std::span<host::u8> blockOf(const host::PropertyField& field) noexcept;

// What lies behind the prefix of a byte block.
[[nodiscard]] std::span<host::u8> payloadOf(const host::PropertyField& field) noexcept;

// Frees the block, if there is one; the field then has no data.
void dropBlock(host::PropertyField& field) noexcept;

// Gives a text or byte-block field, which must own no block, a new one: the pieces one after the
// other and so many zero bytes more. The size word counts the pieces. Without memory the field
// stays without data, and the answer is false.
bool giveBlock(host::PropertyField& field, std::initializer_list<std::span<const host::u8>> pieces,
               std::size_t zeros = 0) noexcept;

}  // namespace property

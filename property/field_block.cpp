#include "property/field_block.h"

#include <algorithm>

#include "platform/global_memory.h"

namespace property {

using host::PropertyField;
using host::u8;

bool ownsBlock(const PropertyField& field) noexcept {
  return (field.valueKind == host::kindText || field.valueKind == host::kindBlock) &&
         field.data != 0;
}

std::span<u8> blockOf(const PropertyField& field) noexcept {
  if (!ownsBlock(field)) return {};
  const SIZE_T real = GlobalSize(reinterpret_cast<HGLOBAL>(field.data));
  return {reinterpret_cast<u8*>(field.data), std::min<std::size_t>(field.dataSize, real)};
}

std::span<u8> payloadOf(const PropertyField& field) noexcept {
  constexpr std::size_t prefixSize = 4;
  const std::span<u8> block = blockOf(field);
  return block.subspan(std::min(prefixSize, block.size()));
}

void dropBlock(PropertyField& field) noexcept {
  if (ownsBlock(field)) GlobalFree(reinterpret_cast<HGLOBAL>(field.data));
  field.data = 0;
  field.dataSize = 0;
}

bool giveBlock(PropertyField& field, std::initializer_list<std::span<const u8>> pieces,
               std::size_t zeros) noexcept {
  std::size_t size = 0;
  for (const std::span<const u8> piece : pieces) size += piece.size();
  platform::OwnedGlobal block(platform::fixedZeroed, size + zeros);
  if (!block) return false;
  auto* target = static_cast<u8*>(block.get());
  for (const std::span<const u8> piece : pieces) {
    target = std::copy(piece.begin(), piece.end(), target);
  }
  field.dataSize = static_cast<host::u32>(size);
  field.data = reinterpret_cast<host::u64>(block.release());
  return true;
}

}  // namespace property

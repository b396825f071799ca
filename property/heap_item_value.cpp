#include "property/heap_item_value.h"

namespace property {
namespace {

using host::u16;
using host::u32;
using host::u64;
using host::u8;

// Values are in the machine's byte order.
template <typename Number>
std::optional<Number> elementOf(HeapValue value, u32 number) noexcept {
  const u64 offset = u64{number} * sizeof(Number);
  if (offset + sizeof(Number) > value.size()) return std::nullopt;
  Number element = 0;
  std::memcpy(&element, value.data() + offset, sizeof element);
  return element;
}

// The record of the captured time has a zone behind its seconds, and a flag that tells of it.
constexpr u32 zoneElement = 1;
constexpr std::size_t zoneFlagByte = 8;

u32 zoneOf(HeapValue value) noexcept {
  if (value.size() <= zoneFlagByte || (value[zoneFlagByte] & 1) == 0) return 0;
  return heapElement32(value, zoneElement).value_or(0);
}

}  // namespace

std::optional<u16> heapElement16(HeapValue value, u32 number) noexcept {
  return elementOf<u16>(value, number);
}

std::optional<u32> heapElement32(HeapValue value, u32 number) noexcept {
  return elementOf<u32>(value, number);
}

std::optional<HeapTextPart> findHeapText(HeapValue value, u32 number) noexcept {
  auto first = value.begin();
  for (u32 skipped = 0; skipped < number; ++skipped) {
    first = std::find(first, value.end(), u8{0});
    if (first == value.end()) return std::nullopt;
    ++first;
  }
  if (first == value.end()) return std::nullopt;
  const auto end = std::find(first, value.end(), u8{0});
  return HeapTextPart{static_cast<std::size_t>(first - value.begin()),
                      static_cast<std::size_t>(end - first), end != value.end()};
}

std::optional<std::string_view> heapText(HeapValue value, HeapFormat format, u32 number) noexcept {
  const auto part = findHeapText(value, format == HeapFormat::text ? 0 : number);
  if (!part) return std::nullopt;
  return std::string_view(reinterpret_cast<const char*>(value.data()) + part->position,
                          part->length);
}

std::optional<std::tm> heapTime(HeapValue value, u32 number) noexcept {
  const auto seconds = heapElement32(value, number);
  if (!seconds) return std::nullopt;
  const auto local = static_cast<__time32_t>(*seconds - zoneOf(value));
  const std::tm* time = _gmtime32(&local);
  if (time == nullptr) return std::nullopt;
  return *time;
}

}  // namespace property

#include "exif/xmp_segment.h"

#include <algorithm>
#include <limits>

#include "platform/byte_writer.h"
#include "property/app_segment.h"
#include "property/property_record.h"

namespace exif {
namespace {

using host::u32;
using host::u64;
using host::u8;
using platform::ByteOrder;
using platform::ByteReader;
using Bytes = std::span<const u8>;

constexpr u32 prefixSize = 4;
constexpr u32 smallestField = prefixSize + 1;
constexpr host::u16 xmpAppNumber = 1;

bool isHexDigit(u8 character) noexcept {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F') ||
         (character >= 'a' && character <= 'f');
}

// A joined packet begins with its GUID, its length and the offset of its first chunk.
bool isExtendedPacket(Bytes packet) noexcept {
  const ByteReader numbers(packet, ByteOrder::big);
  const auto guid = numbers.bytes(0, property::extendedXmpGuid);
  return guid && std::all_of(guid->begin(), guid->end(), isHexDigit) &&
         numbers.u32(property::extendedXmpGuid) == packet.size() - property::extendedXmpHead &&
         numbers.u32(property::extendedXmpGuid + sizeof(u32)) == 0;
}

}  // namespace

std::optional<Bytes> standardPacketOf(const host::PropertyField& field) noexcept {
  if (field.fieldId != host::fieldXmp || field.dataSize < smallestField) return std::nullopt;
  const Bytes block = property::dataBlockOf(field);
  if (block.empty()) return std::nullopt;
  const u32 length = *ByteReader(block, ByteOrder::little).u32(0);
  const Bytes value = block.subspan(prefixSize);
  const Bytes packet = value.first(std::min<std::size_t>(length, value.size()));
  return isExtendedPacket(packet) ? std::nullopt : std::optional(packet);
}

u64 xmpSegmentSize(Bytes packet) noexcept {
  return sizeof(property::SegmentHead) + property::xmpHeader + packet.size();
}

platform::OwnedGlobal buildXmpSegment(Bytes packet) noexcept {
  const u64 size = xmpSegmentSize(packet);
  if (size > std::numeric_limits<u32>::max()) return {};
  platform::OwnedGlobal block(platform::fixedZeroed, static_cast<std::size_t>(size));
  if (!block) return block;
  platform::ByteWriter writer({static_cast<u8*>(block.get()), static_cast<std::size_t>(size)},
                              ByteOrder::big);
  writer.bytes(property::segmentHead(xmpAppNumber, property::xmpHeader + packet.size()).bytes);
  writer.text(property::xmpSignature);
  writer.u8(0);
  writer.bytes(packet);
  return block;
}

}  // namespace exif

// The XMP packet as an application segment of its own (ISO 16684-1, Annex A; XMP specification
// part 3, "JPEG").
#pragma once

#include <optional>
#include <span>

#include "host/property_record.h"
#include "platform/global_memory.h"

namespace exif {

// The packet that an XMP field holds. None for another field, for one without data, and for a
// joined extended packet, which is no packet of the standard segment.
[[nodiscard]] std::optional<std::span<const host::u8>> standardPacketOf(
    const host::PropertyField& field) noexcept;

// Bytes of the segment's data block: marker, length, signature and packet.
[[nodiscard]] host::u64 xmpSegmentSize(std::span<const host::u8> packet) noexcept;

// The segment of a packet; null when there is no memory.
[[nodiscard]] platform::OwnedGlobal buildXmpSegment(std::span<const host::u8> packet) noexcept;

}  // namespace exif

// The tag-definition tables that the host's utility library exports as data.
#pragma once

#include <span>

#include "host/tag_definition.h"

namespace exif {

using TagTable = std::span<const host::TagDefinition>;

// Data cannot be bound lazily, so each table is looked up by name. Empty when it is missing.
[[nodiscard]] TagTable exifTable() noexcept;
[[nodiscard]] TagTable gpsTable() noexcept;
[[nodiscard]] TagTable iptcTable() noexcept;

}  // namespace exif

// Photoshop image resources: the walk to the one that holds IPTC datasets.
#pragma once

#include "exif/stream_reader.h"
#include "platform/system.h"

namespace exif {

// Decodes the first IPTC-NAA resource (1028) of a row of "8BIM" blocks into the property record.
// reader: stands on the first block. budget: bytes that the blocks are said to have; it alone ends
// the walk. slot: where the property record's handle lies.
// True when an IPTC resource was found. Only bytes that the stream delivers are looked at.
bool walkResources(const StreamReader& reader, host::i64 budget, HGLOBAL* slot) noexcept;

}  // namespace exif

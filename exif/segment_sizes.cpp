#include "exif/segment_sizes.h"

#include "exif/entry_writer.h"
#include "exif/iptc_datasets.h"
#include "property/app_segment.h"

namespace exif {
namespace {

using host::PropertyField;
using host::u32;
using host::u64;

constexpr u64 headerSize = 8;   // byte-order mark, 42, offset of the 0th IFD
constexpr u64 nextIfdSize = 4;  // behind the entries of every directory
constexpr u64 directoryFrame = entryCountSize + nextIfdSize;

constexpr u64 present(bool part, u64 bytes) noexcept { return part ? bytes : 0; }

}  // namespace

bool isHostField(const PropertyField& field, XmpPlace xmp) noexcept {
  if (field.fieldId == host::fieldXmp) return xmp == XmpPlace::ifd0;
  return field.fieldId >= host::fieldHostFirst && field.fieldId <= host::fieldHostLast;
}

SegmentParts partsOf(std::span<const PropertyField> fields, std::span<const host::u8> thumbnail,
                     XmpPlace xmp) noexcept {
  SegmentParts parts;
  for (const PropertyField& field : fields) {
    const bool isHost = isHostField(field, xmp);
    const bool isExif = exifFields.holds(field.fieldId);
    const bool isGps = gpsFields.holds(field.fieldId);
    parts.hostFields += isHost ? 1u : 0u;
    parts.exifFields += isExif ? 1u : 0u;
    parts.gpsFields += isGps ? 1u : 0u;
    if (isHost || isExif || isGps) parts.valueBytes += valueBytesOf(field);
  }
  parts.iptcBytes = serialisedDatasetsSize(fields);
  parts.thumbnailBytes = thumbnail.size();
  return parts;
}

// The 0th IFD's own frame is always there: without an entry a thumbnail hangs on its next-IFD word.
u64 directorySizeOf(const SegmentParts& parts) noexcept {
  const u64 fields = u64{parts.hostFields} + parts.exifFields + parts.gpsFields;
  return headerSize + directoryFrame + fields * entrySize +
         present(parts.iptcBytes != 0, entrySize) +
         present(parts.exifFields != 0, entrySize + directoryFrame) +
         present(parts.gpsFields != 0, entrySize + directoryFrame) +
         present(parts.thumbnailBytes != 0, thumbnailEntries * entrySize + directoryFrame);
}

u64 payloadSizeOf(const SegmentParts& parts) noexcept {
  return property::exifSignature.size() + directorySizeOf(parts) + parts.valueBytes +
         parts.iptcBytes +
         present(parts.thumbnailBytes != 0, parts.thumbnailBytes + thumbnailRationalBytes);
}

}  // namespace exif

#include "property/segment_capture.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "property/app_segment.h"
#include "property/property_record.h"

namespace property {
namespace {

using host::u16;
using host::u32;
using host::u64;
using host::u8;
using Bytes = std::span<const u8>;

constexpr std::string_view jfifSignature{"JFIF\0", 5};
constexpr std::string_view extendedXmpSignature{"http://ns.adobe.com/xmp/extension/"};
constexpr std::string_view fpxrSignature{"FPXR"};
constexpr std::string_view iccSignature{"ICC_PROFILE"};
constexpr std::string_view photoshopSignatures[] = {"Photoshop", "PHOTOSHOP"};
constexpr std::string_view adobeSignature{"Adobe"};
constexpr std::string_view heapSignature{"HEAP"};  // CIFF, behind byte order and header length
constexpr std::size_t heapSignatureOffset = 6;

constexpr std::size_t iccHeader = 14;  // signature with its NUL, chunk number, chunk count

// An extended-XMP segment: signature with its NUL, GUID, full length, chunk offset, chunk.
constexpr std::size_t guidOffset = 35;
constexpr std::size_t fullLengthOffset = 67;
constexpr std::size_t chunkOffsetOffset = 71;
constexpr std::size_t chunkData = 75;
constexpr u32 longestExtendedXmp = 64u << 20;

constexpr std::size_t prefixSize = 4;
constexpr std::size_t rawNameLength = 4;

u32 bigEndian32(const u8* bytes) noexcept {
  return u32{bytes[0]} << 24 | u32{bytes[1]} << 16 | u32{bytes[2]} << 8 | bytes[3];
}

struct Prefix {
  u8 bytes[prefixSize];
};

Prefix lengthPrefix(u32 length) noexcept {
  return {{static_cast<u8>(length), static_cast<u8>(length >> 8), static_cast<u8>(length >> 16),
           static_cast<u8>(length >> 24)}};
}

}  // namespace

struct SegmentCapture::Segment {
  u16 appNumber;
  u32 offset;
  Bytes payload;

  [[nodiscard]] bool holds(std::string_view text, std::size_t at = 0) const noexcept {
    return payload.size() >= at + text.size() &&
           std::memcmp(payload.data() + at, text.data(), text.size()) == 0;
  }
};

SegmentCapture::SegmentCapture(void* lockedRecord, std::size_t size,
                               const CaptureRules& rules) noexcept
    : map_(lockedRecord, size), rules_(rules) {
  if (lockedRecord == nullptr || size < smallestRecordWithProperties) return;
  record_ = static_cast<host::FileDataRecord*>(lockedRecord);
  hadRecord_ = record_->propertyRecord != 0;
  fieldsBefore_ =
      static_cast<host::i32>(PropertyRecord(propertyRecordOf(*record_)).fields().size());
  if (!map_) return;
  mapBytes_ = static_cast<u8*>(lockedRecord) + map_.layout().mapBegin;
  std::memcpy(mapBefore_, mapBytes_, map_.layout().mapEnd - map_.layout().mapBegin);
}

void SegmentCapture::takeBack() noexcept {
  if (record_ == nullptr) return;
  dropFieldsFrom(propertySlot(*record_), fieldsBefore_, !hadRecord_);
  if (map_) std::memcpy(mapBytes_, mapBefore_, map_.layout().mapEnd - map_.layout().mapBegin);
}

bool SegmentCapture::scanned() const noexcept { return map_ && map_.scanned(); }

void SegmentCapture::note(const PlaceOffsets SegmentMapLayout::*place,
                          const Segment& segment) noexcept {
  if (!map_) return;
  map_.noteFirst(map_.layout().*place, segment.offset, static_cast<u32>(segment.payload.size()));
}

void SegmentCapture::capture(const host::SegmentRecord& record) noexcept {
  if (record_ == nullptr || record.kind != 1 || record.payloadLength < 1 ||
      record.payload == nullptr) {
    return;
  }
  const Segment segment{static_cast<u16>(record.appNumber & 0xFF), record.payloadOffset,
                        Bytes(record.payload, static_cast<std::size_t>(record.payloadLength))};
  const std::optional<u16> rawId = classify(segment);
  if (rawId && rules_.keepRaw && !scanned()) addRaw(segment, *rawId);
}

// The id of the raw field that the segment is kept under, or none when it is not kept whole.
std::optional<u16> SegmentCapture::classify(const Segment& segment) noexcept {
  switch (segment.appNumber) {
    case 0:
      return classifyApp0(segment);
    case 1:
      return classifyApp1(segment);
    case 2:
      return classifyApp2(segment);
    case 13:
      return classifyApp13(segment);
    case 14:
      return classifyApp14(segment);
    default:
      return host::fieldRawSegment;
  }
}

std::optional<u16> SegmentCapture::classifyApp0(const Segment& segment) noexcept {
  if (segment.holds(jfifSignature)) {
    if (map_) map_.setMarkerFlag(host::markerJfif);
    return std::nullopt;
  }
  const bool ordered = segment.holds("II") || segment.holds("MM");
  if (!ordered || !segment.holds(heapSignature, heapSignatureOffset)) return host::fieldRawSegment;
  note(&SegmentMapLayout::heap, segment);
  return host::fieldHeap;
}

// Writers disagree on marker numbers, so what is not recognised here is tried as APP2, then APP13.
std::optional<u16> SegmentCapture::classifyApp1(const Segment& segment) noexcept {
  if (segment.holds(exifSignature)) {
    note(&SegmentMapLayout::exif, segment);
    return host::fieldExifSegment;
  }
  if (segment.holds(xmpSignature) && segment.payload.size() > xmpHeader) {
    addXmp(segment);
    if (!rules_.keepRawBesideField) return std::nullopt;
  }
  const bool joinable = rules_.joinExtendedXmp && map_ && !scanned() &&
                        segment.holds(extendedXmpSignature) && segment.payload.size() >= chunkData;
  if (joinable && bigEndian32(segment.payload.data() + chunkOffsetOffset) != 0) {
    joinExtendedXmpChunk(segment);
    return std::nullopt;
  }
  if (joinable) addExtendedXmp(segment);
  return classifyApp2(segment);
}

std::optional<u16> SegmentCapture::classifyApp2(const Segment& segment) noexcept {
  if (segment.holds(fpxrSignature)) return host::fieldFpxr;
  if (segment.holds(iccSignature) && segment.payload.size() > iccHeader) {
    addIcc(segment);
    if (!rules_.keepRawBesideField) return std::nullopt;
  }
  return classifyApp13(segment);
}

std::optional<u16> SegmentCapture::classifyApp13(const Segment& segment) noexcept {
  const auto begins = [&](std::string_view signature) { return segment.holds(signature); };
  if (std::none_of(std::begin(photoshopSignatures), std::end(photoshopSignatures), begins)) {
    return host::fieldRawSegment;
  }
  note(&SegmentMapLayout::iptc, segment);
  return host::fieldPhotoshop;
}

std::optional<u16> SegmentCapture::classifyApp14(const Segment& segment) noexcept {
  if (!segment.holds(adobeSignature)) return host::fieldRawSegment;
  if (map_) map_.setMarkerFlag(host::markerAdobe);
  return std::nullopt;
}

void SegmentCapture::addXmp(const Segment& segment) noexcept {
  if (!map_ || scanned()) return;
  const Bytes packet = segment.payload.subspan(xmpHeader);
  const Prefix prefix = lengthPrefix(static_cast<u32>(packet.size()));
  const u64 size = prefixSize + packet.size();
  addBlockField(propertySlot(*record_),
                {.fieldId = host::fieldXmp, .dataSize = size, .blockSize = size},
                {prefix.bytes, packet});
}

void SegmentCapture::addIcc(const Segment& segment) noexcept {
  if (!map_ || scanned()) return;
  const Bytes chunk = segment.payload.subspan(iccHeader);
  const Prefix prefix = lengthPrefix(static_cast<u32>(chunk.size()));
  const u64 size = prefixSize + chunk.size();
  addBlockField(propertySlot(*record_),
                {.fieldId = host::fieldIcc, .dataSize = size, .blockSize = size},
                {prefix.bytes, chunk});
}

// The first chunk makes the field, with room for the whole packet.
void SegmentCapture::addExtendedXmp(const Segment& segment) noexcept {
  const u32 fullLength = bigEndian32(segment.payload.data() + fullLengthOffset);
  if (fullLength > longestExtendedXmp) return;
  const Prefix prefix = lengthPrefix(fullLength + static_cast<u32>(extendedXmpHead));
  // The block is four bytes longer than its size word says: kept, readers of the host rely on it.
  addBlockField(propertySlot(*record_),
                {.fieldId = host::fieldXmp,
                 .dataSize = u64{fullLength} + extendedXmpHead + prefixSize,
                 .blockSize = u64{fullLength} + extendedXmpHead + 2 * prefixSize},
                {prefix.bytes, segment.payload.subspan(guidOffset)});
}

// A later chunk goes into every field of the same GUID, as far as the field's block reaches.
void SegmentCapture::joinExtendedXmpChunk(const Segment& segment) noexcept {
  const Bytes guid = segment.payload.subspan(guidOffset, extendedXmpGuid);
  const Bytes chunk = segment.payload.subspan(chunkData);
  const u64 target =
      u64{bigEndian32(segment.payload.data() + chunkOffsetOffset)} + extendedXmpHead + prefixSize;
  const PropertyRecord record(propertyRecordOf(*record_));
  for (const host::PropertyField& field : record.fields()) {
    if (field.fieldId != host::fieldXmp) continue;
    const std::span<u8> block = dataBlockOf(field);
    if (block.size() < prefixSize + extendedXmpGuid ||
        !std::equal(guid.begin(), guid.end(), block.begin() + prefixSize)) {
      continue;
    }
    const u64 reach = GlobalSize(reinterpret_cast<HGLOBAL>(field.data));
    if (target >= reach) continue;
    const auto length = static_cast<std::size_t>(std::min<u64>(chunk.size(), reach - target));
    if (length != 0) std::memcpy(block.data() + target, chunk.data(), length);
  }
}

void SegmentCapture::addRaw(const Segment& segment, u16 fieldId) noexcept {
  // The block is the segment as it stands in a stream, so that it can be written back whole.
  const SegmentHead head = segmentHead(segment.appNumber, segment.payload.size());
  const u64 size = prefixSize + segment.payload.size();
  addBlockField(propertySlot(*record_),
                {.fieldId = fieldId,
                 .sourceGroup = host::groupRawSegment,
                 .name = segment.payload.first(std::min(rawNameLength, segment.payload.size())),
                 .dataSize = size,
                 .blockSize = size},
                {head.bytes, segment.payload});
}

}  // namespace property

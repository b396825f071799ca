#include "exif/segment_builder.h"

#include <cstring>
#include <limits>
#include <optional>

#include "exif/definition_set.h"
#include "exif/entry_writer.h"
#include "exif/field_room.h"
#include "exif/iptc_datasets.h"
#include "exif/tags.h"
#include "exif/xmp_segment.h"
#include "frame/module.h"
#include "property/app_segment.h"
#include "property/property_record.h"

namespace exif {
namespace {

using host::PropertyField;
using host::u16;
using host::u32;
using host::u64;
using host::u8;
using platform::ByteWriter;
using platform::OwnedGlobal;
using property::Fields;
using Bytes = std::span<const u8>;

constexpr u16 exifAppNumber = 1;
constexpr u64 segmentHeadSize = sizeof(property::SegmentHead);
constexpr u64 spareBytes = 4;  // behind the payload; the size word does not count them
constexpr u32 segmentNameId = 793;
constexpr u32 tiffMagic = 42;
constexpr u32 ifd0Offset = 8;
constexpr u32 jpegCompression = 6;
constexpr u32 perInch = 2;
constexpr u32 thumbnailResolution = 72;

// Writes the payload of one EXIF segment: the directories in their order, values behind them all.
class PayloadWriter {
 public:
  // payload: zeroed, as large as the parts make it.
  PayloadWriter(Fields fields, const SegmentParts& parts, Bytes thumbnail, XmpPlace xmp,
                std::span<u8> payload) noexcept
      : fields_(fields),
        parts_(parts),
        thumbnail_(thumbnail),
        xmp_(xmp),
        out_(payload.subspan(property::exifSignature.size()), directorySizeOf(parts)) {
    std::memcpy(payload.data(), property::exifSignature.data(), property::exifSignature.size());
  }

  // False when a tag table is missing.
  [[nodiscard]] bool write() noexcept {
    writeHeader();
    if (!writeIfd0() || !writeExifIfd() || !writeGpsIfd()) return false;
    if (!thumbnail_.empty()) writeIfd1();
    return true;
  }
  // What was met among the host fields; valid as long as the fields.
  [[nodiscard]] std::optional<Bytes> xmpPacket() const noexcept { return xmpPacket_; }

 private:
  void writeHeader() noexcept {
    out_.directories.text("II");
    out_.directories.u16(tiffMagic);
    out_.directories.u32(ifd0Offset);
  }

  bool writeIfd0() noexcept {
    // Kept: only the low byte of the count word is ever set, so more than 255 entries wrap.
    const ByteWriter::Slot count = out_.directories.slot8();
    out_.directories.u8(0);
    u32 entries = 0;
    if (parts_.hostFields != 0 && !writeHostEntries(entries)) return false;
    if (parts_.iptcBytes != 0) {
      writeIptcEntry();
      ++entries;
    }
    if (parts_.exifFields != 0) {
      exifPointer_ = out_.pointerEntry(tagExifPointer);
      ++entries;
    }
    if (parts_.gpsFields != 0) {
      gpsPointer_ = out_.pointerEntry(tagGpsPointer);
      ++entries;
    }
    out_.directories.patch(count, entries);
    nextIfd_ = out_.directories.slot32();
    return true;
  }

  bool writeHostEntries(u32& entries) noexcept {
    DefinitionSet definitions;
    if (!definitions.buildExif(secondaryGroup)) return false;
    for (const PropertyField& field : fields_) {
      if (xmp_ == XmpPlace::ownSegment && !xmpPacket_) xmpPacket_ = standardPacketOf(field);
      if (isHostField(field, xmp_) && writeEntry(definitions, field)) ++entries;
    }
    return true;
  }

  bool writeEntry(const DefinitionSet& definitions, const PropertyField& field) noexcept {
    const std::optional<unsigned> row = definitions.findField(field.fieldId);
    return row && writeRowEntry(definitions.row(*row), field);
  }
  bool writeRowEntry(const host::TagDefinition& row, const PropertyField& field) noexcept {
    return writeFieldEntry(out_, row.tag, row.type, field);
  }

  // The serialiser counts again from the start for a field that is no text; it gets the bytes that
  // it has counted and no more.
  void writeIptcEntry() noexcept {
    out_.entry(tagIptc, typeUndefined, static_cast<u32>(parts_.iptcBytes), out_.valueOffset());
    serialiseDatasets(fields_, out_.values.room(static_cast<std::size_t>(parts_.iptcBytes)));
  }

  bool writeExifIfd() noexcept {
    if (parts_.exifFields == 0) return true;
    DefinitionSet definitions;
    if (!definitions.buildExif(primaryGroup)) return false;
    out_.directories.patch(*exifPointer_, out_.directoryOffset());
    writeDirectory(exifFields,
                   [&](const PropertyField& field) { return writeEntry(definitions, field); });
    return true;
  }

  // The rows of this table go by their place alone.
  bool writeGpsIfd() noexcept {
    if (parts_.gpsFields == 0) return true;
    DefinitionSet definitions;
    if (!definitions.buildGps()) return false;
    out_.directories.patch(*gpsPointer_, out_.directoryOffset());
    writeDirectory(gpsFields, [&](const PropertyField& field) {
      const auto row = static_cast<unsigned>(field.fieldId - gpsFields.first);
      return row < definitions.size() && writeRowEntry(definitions.row(row), field);
    });
    return true;
  }

  // A directory at the end of its chain.
  template <typename WriteEntry>
  void writeDirectory(FieldRange range, WriteEntry writeOne) noexcept {
    const ByteWriter::Slot count = out_.directories.slot16();
    u32 entries = 0;
    for (const PropertyField& field : fields_) {
      if (range.holds(field.fieldId) && writeOne(field)) ++entries;
    }
    out_.directories.patch(count, entries);
    out_.directories.u32(0);
  }

  // The thumbnail's directory (EXIF 2.32, clause 4.5.8), its resolutions and its bytes.
  void writeIfd1() noexcept {
    const u32 rationals = out_.valueOffset();
    constexpr u32 rationalBytes = thumbnailRationalBytes / 2;
    const auto length = static_cast<u32>(thumbnail_.size());
    out_.directories.patch(*nextIfd_, out_.directoryOffset());
    out_.directories.u16(thumbnailEntries);
    out_.entry(tagCompression, typeShort, 1, jpegCompression);
    out_.entry(tagXResolution, typeRational, 1, rationals);
    out_.entry(tagYResolution, typeRational, 1, rationals + rationalBytes);
    out_.entry(tagResolutionUnit, typeShort, 1, perInch);
    out_.entry(tagThumbnailOffset, typeLong, 1, rationals + 2 * rationalBytes);
    out_.entry(tagThumbnailLength, typeLong, 1, length);
    out_.directories.u32(0);
    for (int resolution = 0; resolution < 2; ++resolution) {
      out_.values.u32(thumbnailResolution);
      out_.values.u32(1);
    }
    out_.values.bytes(thumbnail_);
  }

  Fields fields_;
  const SegmentParts& parts_;
  Bytes thumbnail_;
  XmpPlace xmp_;
  TiffWriter out_;
  std::optional<ByteWriter::Slot> exifPointer_;
  std::optional<ByteWriter::Slot> gpsPointer_;
  std::optional<ByteWriter::Slot> nextIfd_;
  std::optional<Bytes> xmpPacket_;
};

void loadSegmentName(PropertyField& field) noexcept {
  char name[sizeof field.name + 1] = {};
  LoadStringA(frame::resourceLibrary(), segmentNameId, name, sizeof name);
  std::memcpy(field.name, name, sizeof field.name);
}

// Both segments are raw fields of the same id; the record takes the block over.
void addSegment(FieldRoom& room, OwnedGlobal block, u64 dataSize) noexcept {
  if (!block || room.full()) return;
  PropertyField field = {};
  field.descriptorSize = sizeof field;
  field.valueKind = host::kindBlock;
  field.fieldId = host::fieldExifSegment;
  field.sourceGroup = host::groupRawSegment;
  loadSegmentName(field);
  field.dataSize = static_cast<u32>(dataSize);
  field.data = reinterpret_cast<u64>(block.release());
  room.add(field);
  room.publish();
}

OwnedGlobal segmentBlock(u64 payloadSize) noexcept {
  const u64 size = segmentHeadSize + payloadSize + spareBytes;
  if (size > std::numeric_limits<u32>::max()) return {};
  OwnedGlobal block(platform::fixedZeroed, static_cast<std::size_t>(size));
  if (!block) return block;
  const property::SegmentHead head = property::segmentHead(exifAppNumber, payloadSize);
  std::memcpy(block.get(), head.bytes, sizeof head.bytes);
  return block;
}

SegmentParts countParts(const HGLOBAL* slot, Bytes thumbnail, XmpPlace xmp) noexcept {
  const property::PropertyRecord record(recordIn(slot));
  return partsOf(record.fields(), thumbnail, xmp);
}

}  // namespace

void buildSegments(HGLOBAL* slot, Bytes thumbnail, XmpPlace xmp) noexcept {
  const SegmentParts parts = countParts(slot, thumbnail, xmp);
  constexpr u32 segments = 2;
  if (parts.empty() || !reserveFields(slot, segments)) return;
  property::PropertyRecord record(recordIn(slot));
  FieldRoom room(slot);
  const u64 payloadSize = payloadSizeOf(parts);
  OwnedGlobal block = segmentBlock(payloadSize);
  if (!room || !block) return;
  u8* payload = static_cast<u8*>(block.get()) + segmentHeadSize;
  PayloadWriter writer(record.fields(), parts, thumbnail, xmp,
                       {payload, static_cast<std::size_t>(payloadSize)});
  if (!writer.write()) return record.leaveLocked();
  const std::optional<Bytes> packet = writer.xmpPacket();
  addSegment(room, std::move(block), segmentHeadSize + payloadSize);
  if (packet) addSegment(room, buildXmpSegment(*packet), xmpSegmentSize(*packet));
}

void ensureSegments(HGLOBAL* slot, Bytes thumbnail) noexcept {
  const HGLOBAL record = recordIn(slot);
  if (record == nullptr) return;
  if (property::findField(record, host::fieldExifSegment, nullptr, nullptr) != 0) return;
  buildSegments(slot, thumbnail, XmpPlace::ownSegment);
}

}  // namespace exif

// Building the multi-picture segment, little-endian always.
#include <algorithm>
#include <cstring>

#include "mpo/mpf_segment.h"
#include "platform/byte_writer.h"

namespace mpo {
namespace {

using host::MpoCountAnswer;
using host::MpoImageDesc;
using host::u16;
using host::u32;
using host::u8;
using platform::ByteWriter;
using Images = std::span<const MpoImageDesc>;

constexpr u16 tiffMagic = 42;
constexpr u32 formatVersion = 0x30303130;  // "0100"
constexpr u32 versionLength = 4;
constexpr u32 ratioSize = 8;
constexpr u32 attributeClass = 2;  // multi-frame images alone carry the attributes

// What an IFD is about.
struct Subject {
  Images images;
  u32 position;  // of the image that the attributes are of
  u32 flags;     // presence bits of the tags that it carries
};

// Bytes that a tag has in the value area behind its IFD; 0 when its entry holds the value.
u32 valueBytes(const MpfTag& row, u32 imageCount) noexcept {
  switch (row.value) {
    case MpfValue::entryTable:
      return imageCount * mpfImageEntrySize;
    case MpfValue::uidList:
      return imageCount * host::mpoUidLength;
    case MpfValue::ratio:
      return ratioSize;
    default:
      return 0;
  }
}

u32 elementCount(const MpfTag& row, u32 imageCount) noexcept {
  switch (row.value) {
    case MpfValue::version:
      return versionLength;
    case MpfValue::entryTable:
    case MpfValue::uidList:
      return valueBytes(row, imageCount);
    default:
      return 1;
  }
}

u32 attributeWord(const MpoImageDesc& image, std::size_t member) noexcept {
  u32 value = 0;
  std::memcpy(&value, reinterpret_cast<const u8*>(&image.attributes) + member, sizeof value);
  return value;
}

// The value of a tag that its entry holds.
u32 entryValue(const MpfTag& row, const Subject& subject) noexcept {
  switch (row.value) {
    case MpfValue::version:
      return formatVersion;
    case MpfValue::imageCount:
      return static_cast<u32>(subject.images.size());
    case MpfValue::totalFrames:
      return static_cast<u32>(
          std::count_if(subject.images.begin(), subject.images.end(),
                        [](const MpoImageDesc& image) { return image.dependentChild == 0; }));
    case MpfValue::imageNumber:
      return subject.position + 1;
    default:
      return attributeWord(subject.images[subject.position], row.member);
  }
}

u32 attributeBits(const MpoImageDesc& image) noexcept {
  return (image.dependentParent & 1) << 31 | (image.dependentChild != 0 ? 1u : 0u) << 30 |
         (image.representative & 1) << 29 | (image.dataFormat & 7u) << 24 |
         (image.typeClass & 0xFu) << 16 | (image.typeSubCode & 0xFu);
}

// Size and offset are entered when the image has been written.
void writeTableEntry(ByteWriter& writer, const MpoImageDesc& image) noexcept {
  writer.u32(attributeBits(image));
  writer.u32(0);
  writer.u32(0);
  writer.u16(image.dependent1);
  writer.u16(image.dependent2);
}

void writeValue(ByteWriter& writer, const MpfTag& row, const Subject& subject) noexcept {
  switch (row.value) {
    case MpfValue::entryTable:
      for (const MpoImageDesc& image : subject.images) writeTableEntry(writer, image);
      return;
    case MpfValue::uidList:
      for (const MpoImageDesc& image : subject.images) writer.bytes(image.uid);
      return;
    case MpfValue::ratio: {
      const MpoImageDesc& image = subject.images[subject.position];
      writer.u32(attributeWord(image, row.member));
      writer.u32(attributeWord(image, row.member + sizeof(u32)));
      return;
    }
    default:
      return;
  }
}

// The IFD at the writer's place, its values right behind it. The index IFD names what follows it,
// the attribute IFD is the last.
void writeIfd(ByteWriter& writer, MpfIfd ifd, const Subject& subject) noexcept {
  const auto imageCount = static_cast<u32>(subject.images.size());
  const auto written = [&](const MpfTag& row) { return isWritten(row, ifd, subject.flags); };
  const auto entries = static_cast<u16>(std::count_if(mpfTags().begin(), mpfTags().end(), written));
  const std::size_t start = writer.size() - mpfSignatureSize;
  auto place =
      static_cast<u32>(start + sizeof(u16) + std::size_t{entries} * mpfIfdEntrySize + sizeof(u32));
  writer.u16(entries);
  for (const MpfTag& row : mpfTags()) {
    if (!written(row)) continue;
    const u32 size = valueBytes(row, imageCount);
    writer.u16(row.writtenTag);
    writer.u16(row.type);
    writer.u32(elementCount(row, imageCount));
    writer.u32(size != 0 ? place : entryValue(row, subject));
    place += size;
  }
  writer.u32(ifd == MpfIfd::index ? place : 0);
  for (const MpfTag& row : mpfTags()) {
    if (written(row)) writeValue(writer, row, subject);
  }
}

void writeHeader(ByteWriter& writer) noexcept {
  writer.bytes(mpfSignature);
  writer.u8('I');
  writer.u8('I');
  writer.u16(tiffMagic);
  writer.u32(mpfHeaderSize);
}

u32 attributeFlags(const MpoImageDesc& image) noexcept {
  const bool carries = image.dependentChild == 0 && (image.typeClass & 0xFu) == attributeClass;
  return carries ? image.flags : 0;
}

void writeHead(ByteWriter& writer, Images images) noexcept {
  writeHeader(writer);
  writeIfd(writer, MpfIfd::index, {images, 0, images[0].flags});
}

void writeSegment(ByteWriter& writer, Images images, u32 position) noexcept {
  if (position == 0) {
    writeHead(writer, images);
  } else {
    writeHeader(writer);
  }
  writeIfd(writer, MpfIfd::attributes, {images, position, attributeFlags(images[position])});
}

// Size and content come from the same walk, once without and once with the buffer.
u32 finish(const ByteWriter& writer, std::span<u8> buffer, u32* size) noexcept {
  const auto needed = static_cast<u32>(writer.size());
  if (size != nullptr) *size = needed;
  if (buffer.data() == nullptr) return needed;
  return writer.complete() ? 1 : 0;
}

bool describesAll(Images images, const MpoCountAnswer& counts) noexcept {
  return counts.imageCount != 0 && counts.imageCount <= images.size() &&
         counts.position < counts.imageCount;
}

}  // namespace

u32 MpfBuildIndexIfd(Images images, const MpoCountAnswer& counts, std::span<u8> buffer,
                     u32* size) noexcept {
  if (!describesAll(images, counts)) return 0;
  ByteWriter writer(buffer, platform::ByteOrder::little);
  writeHead(writer, images.first(counts.imageCount));
  return finish(writer, buffer, size);
}

u32 MpfBuildSegment(Images images, const MpoCountAnswer& counts, std::span<u8> buffer,
                    u32* size) noexcept {
  if (!describesAll(images, counts)) return 0;
  ByteWriter writer(buffer, platform::ByteOrder::little);
  writeSegment(writer, images.first(counts.imageCount), counts.position);
  return finish(writer, buffer, size);
}

}  // namespace mpo

// A multi-picture segment as it stands: every directory entry with its bytes, also those that this
// program does not know, so that an edited segment keeps them (CIPA DC-007, 5.2).
#pragma once

#include <array>

#include "fiohost/streams/jpeg_stream.h"
#include "mpo/mpf_tags.h"
#include "platform/byte_reader.h"

namespace fiohost {

struct MpfEntry {
  std::uint16_t tag;
  std::uint16_t type;
  std::uint32_t count;
  ByteBlock value;          // in the block's order; at least the 4 bytes of the value word
  std::uint64_t place = 0;  // of the value, from the byte-order field on; 0 for a new entry
};

struct MpfDirectory {
  std::vector<MpfEntry> entries;

  [[nodiscard]] MpfEntry* find(mpo::MpfValue value);
  [[nodiscard]] const MpfEntry* find(mpo::MpfValue value) const;
};

struct MpfBlock {
  platform::ByteOrder order = platform::ByteOrder::little;
  std::optional<MpfDirectory> index;  // of the whole file, in its first image only
  std::optional<MpfDirectory> attributes;
  bool whole = true;  // every directory and value lay inside
};

// The 16 bytes of one image in the MP Entry table (5.2.3.3).
struct MpImage {
  std::uint32_t attribute;
  std::uint32_t size;
  std::uint32_t offset;  // from the first image's byte-order field; 0 for the first image
  std::array<std::uint16_t, 2> dependents;  // image numbers from 1; 0 for none
};

// Bits of MpImage::attribute.
inline constexpr std::uint32_t mpParent = 0x80000000;
inline constexpr std::uint32_t mpChild = 0x40000000;
inline constexpr std::uint32_t mpRepresentative = 0x20000000;
inline constexpr std::uint32_t mpTypeMask = 0x00FFFFFF;
inline constexpr std::uint32_t mpClassShift = 16;

[[nodiscard]] inline std::uint32_t mpClassOf(const MpImage& image) noexcept {
  return (image.attribute & mpTypeMask) >> mpClassShift;
}

// The first multi-picture segment of a stream, or null.
[[nodiscard]] const StreamSegment* mpfSegmentOf(ByteView bytes, const JpegStream& stream);

// payload: of a multi-picture segment, its signature included. What lies outside is left out.
[[nodiscard]] MpfBlock parseMpf(ByteView payload);
// The payload of a new segment, its signature included.
[[nodiscard]] ByteBlock buildMpf(const MpfBlock& block);

// A number or offset in an entry's value, by position; 0 beyond its end.
[[nodiscard]] std::uint32_t mpfNumber(const MpfBlock& block, const MpfEntry& entry);
[[nodiscard]] MpfEntry mpfNumberEntry(mpo::MpfValue value, std::uint32_t number,
                                      platform::ByteOrder order);
[[nodiscard]] MpfEntry mpfVersionEntry();

[[nodiscard]] std::vector<MpImage> mpImagesOf(const MpfBlock& block, const MpfEntry& table);
[[nodiscard]] MpfEntry mpTableEntry(const std::vector<MpImage>& images, platform::ByteOrder order);

// The directory with its values turned from one order into the other.
[[nodiscard]] MpfDirectory inOrder(MpfDirectory directory, platform::ByteOrder from,
                                   platform::ByteOrder to);

}  // namespace fiohost

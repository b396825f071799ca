#include "fiohost/mpo_edit/picture_index.h"

#include <algorithm>

#include "fiohost/failure.h"
#include "host/mpo.h"
#include "platform/byte_writer.h"

namespace fiohost {
namespace {

using mpo::MpfValue;
using std::uint32_t;
using std::uint64_t;

// An image that is part of no sequence, and a viewpoint that nobody knows (CIPA DC-007, 5.2.4).
constexpr uint32_t noNumber = 0xFFFFFFFF;

JpegStream wholeStream(ByteView bytes) { return firstStream(bytes); }

// Behind the segments in front that tell what kind of file it is and its EXIF data (5.2.1).
uint64_t placeForSegment(const JpegStream& stream) {
  uint64_t place = stream.start + 2;
  for (const StreamSegment& segment : stream.segments) {
    if (!segment.isApp(0) && !segment.isApp(1)) break;
    place = segment.end();
  }
  return place;
}

// The stream with new bytes in place of what lies between two places.
void replaceBytes(ByteBlock& stream, uint64_t from, uint64_t to, ByteView with) {
  const auto first = stream.begin() + static_cast<std::ptrdiff_t>(from);
  stream.erase(first, stream.begin() + static_cast<std::ptrdiff_t>(to));
  stream.insert(stream.begin() + static_cast<std::ptrdiff_t>(from), with.begin(), with.end());
}

// Puts the segment in the old one's place. Answers the place of its byte-order field.
uint64_t storeSegment(ByteBlock& stream, const MpfBlock& block) {
  const JpegStream walked = wholeStream(stream);
  const StreamSegment* old = mpfSegmentOf(stream, walked);
  const uint64_t from = old != nullptr ? old->start : placeForSegment(walked);
  const ByteBlock payload = buildMpf(block);
  if (payload.size() > mostPayload) {
    throw Failure("the index has no room for so many images", "leave some out");
  }
  ByteBlock segment;
  appendSegment(segment, markerApp0 + 2, payload);
  replaceBytes(stream, from, old != nullptr ? old->end() : from, segment);
  return from + segment.size() - payload.size() + mpo::mpfSignatureSize;
}

bool isBaseViewpoint(const MpfEntry& entry) {
  const mpo::MpfTag* row = mpo::findMpfTag(entry.tag);
  return row != nullptr && row->flag == host::presenceBaseViewpoint;
}

uint32_t renumbered(uint32_t number, const NewNumbers& numbers) {
  if (number < 1 || number > numbers.size()) return number;
  return numbers[number - 1] != 0 ? numbers[number - 1] : noNumber;
}

void store(ByteBlock& stream, uint64_t place, uint32_t number, platform::ByteOrder order) {
  const std::span<std::uint8_t> word(stream.data() + place, sizeof number);
  platform::ByteWriter(word, order).u32(number);
}

// A picture's segment and what it says; no block when it has none.
struct OwnBlock {
  std::optional<MpfBlock> block;
  uint64_t header = 0;
};

OwnBlock ownBlock(ByteView stream) {
  const JpegStream walked = wholeStream(stream);
  const StreamSegment* segment = mpfSegmentOf(stream, walked);
  if (segment == nullptr) return {};
  return {parseMpf(payloadOf(stream, *segment)), segment->payload + mpo::mpfSignatureSize};
}

}  // namespace

void renumber(ByteBlock& stream, const NewNumbers& numbers, uint32_t ownNumber) {
  const OwnBlock own = ownBlock(stream);
  if (!own.block || !own.block->attributes) return;
  for (const MpfEntry& entry : own.block->attributes->entries) {
    const uint32_t old = mpfNumber(*own.block, entry);
    const mpo::MpfTag* row = mpo::findMpfTag(entry.tag);
    const bool number = row != nullptr && row->value == MpfValue::imageNumber && old != noNumber;
    if (number) store(stream, own.header + entry.place, ownNumber, own.block->order);
    if (isBaseViewpoint(entry)) {
      store(stream, own.header + entry.place, renumbered(old, numbers), own.block->order);
    }
  }
}

uint64_t placeIndex(ByteBlock& stream, const MpfDirectory& index, platform::ByteOrder order) {
  OwnBlock own = ownBlock(stream);
  MpfBlock block = own.block.value_or(MpfBlock{order, {}, {}, true});
  block.index = inOrder(index, order, block.order);
  return storeSegment(stream, block);
}

void dropIndex(ByteBlock& stream) {
  OwnBlock own = ownBlock(stream);
  if (!own.block || !own.block->index) return;
  if (own.block->attributes) {
    own.block->index.reset();
    storeSegment(stream, *own.block);
    return;
  }
  const JpegStream walked = wholeStream(stream);
  const StreamSegment* old = mpfSegmentOf(stream, walked);
  replaceBytes(stream, old->start, old->end(), {});
}

void placeNumber(ByteBlock& stream, uint32_t number) {
  MpfBlock block;
  block.attributes =
      MpfDirectory{{mpfVersionEntry(), mpfNumberEntry(MpfValue::imageNumber, number, block.order)}};
  storeSegment(stream, block);
}

}  // namespace fiohost

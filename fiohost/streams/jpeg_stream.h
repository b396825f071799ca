// JPEG streams in a block of bytes, walked by their marker segments and entropy-coded data (T.81,
// annex B), so that a thumbnail inside a segment is never taken for a picture of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "fiohost/source_file.h"

namespace fiohost {

using ByteBlock = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

inline constexpr std::uint8_t markerApp0 = 0xE0;
inline constexpr std::uint8_t markerComment = 0xFE;
inline constexpr std::size_t mostPayload = 65533;  // what the length word leaves a segment

// A marker with a length word and what belongs to it. Places count from the block's first byte.
struct StreamSegment {
  std::uint8_t marker;
  std::uint64_t start;    // of the marker
  std::uint64_t payload;  // behind the length word
  std::uint64_t size;     // bytes of payload

  [[nodiscard]] std::uint64_t end() const noexcept { return payload + size; }
  [[nodiscard]] bool isApp(int number) const noexcept { return marker == markerApp0 + number; }
};

struct JpegStream {
  std::uint64_t start = 0;
  std::uint64_t end = 0;  // behind the end-of-image marker, or where the walk stopped
  bool complete = false;  // a frame, a scan and the end of the image were there
  bool tidy = true;       // no stray bytes between the segments in front of the first scan
  std::vector<StreamSegment> segments;

  [[nodiscard]] std::uint64_t size() const noexcept { return end - start; }
};

// The stream that begins at a place; none when no start-of-image marker is there.
[[nodiscard]] std::optional<JpegStream> streamAt(ByteView bytes, std::uint64_t start);

// The first stream of a block, whether or not it begins with a start-of-image marker.
[[nodiscard]] JpegStream firstStream(ByteView bytes);

// Every stream from a place on, none inside another. Behind the first, only whole and tidy ones
// count, since other data may hold the bytes of a start by chance.
[[nodiscard]] std::vector<JpegStream> streamsFrom(ByteView bytes, std::uint64_t start);

[[nodiscard]] ByteView payloadOf(ByteView bytes, const StreamSegment& segment);
// Cameras fill the room up to the next picture with zeros or ones.
[[nodiscard]] bool isFilling(ByteView bytes, std::uint64_t from, std::uint64_t to);
[[nodiscard]] bool beginsWith(ByteView bytes, std::string_view text);

// Marker, length word and payload, which has at most mostPayload bytes.
void appendSegment(ByteBlock& out, std::uint8_t marker, ByteView payload);
void appendBytes(ByteBlock& out, ByteView bytes);

// The whole file. Throws Failure when it cannot be read.
[[nodiscard]] ByteBlock readWhole(const std::filesystem::path& path);

}  // namespace fiohost

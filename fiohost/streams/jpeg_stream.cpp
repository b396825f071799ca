#include "fiohost/streams/jpeg_stream.h"

#include <algorithm>
#include <fstream>

#include "fiohost/failure.h"
#include "platform/byte_reader.h"

namespace fiohost {
namespace {

using std::uint64_t;
using std::uint8_t;

constexpr uint8_t markerPrefix = 0xFF;
constexpr uint8_t startOfImage = 0xD8;
constexpr uint8_t endOfImage = 0xD9;
constexpr uint8_t startOfScan = 0xDA;
constexpr uint64_t markerSize = 2;

bool hasLength(uint8_t marker) {
  return marker > 0x01 && marker != markerPrefix && (marker < 0xD0 || marker > endOfImage);
}

// SOF0 to SOF15 without DHT, JPG and DAC, which lie among them (T.81, table B.1).
bool isFrame(uint8_t marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

class Walker {
 public:
  Walker(ByteView bytes, uint64_t start)
      : reader_(bytes, platform::ByteOrder::big), place_(start) {}

  // From behind the start-of-image marker on.
  void walk(JpegStream& stream) {
    while (const std::optional<uint8_t> marker = nextMarker()) {
      if (!scanned_ && strayed_) stream.tidy = false;
      if (*marker == startOfImage) return stop(stream, markerAt_);  // another picture begins
      if (*marker == endOfImage) {
        stream.complete = framed_ && scanned_;
        return stop(stream, place_);
      }
      if (hasLength(*marker) && !takeSegment(*marker, stream)) return stop(stream, reader_.size());
    }
    stop(stream, reader_.size());
  }

 private:
  static void stop(JpegStream& stream, uint64_t place) { stream.end = place; }

  // Steps over entropy-coded data and fill bytes; a stuffed FF 00 is no marker.
  std::optional<uint8_t> nextMarker() {
    strayed_ = false;
    bool armed = false;
    while (const std::optional<uint8_t> byte = reader_.u8(place_)) {
      ++place_;
      if (armed && *byte != 0 && *byte != markerPrefix) {
        markerAt_ = place_ - markerSize;
        return byte;
      }
      armed = *byte == markerPrefix;
      if (!armed) strayed_ = true;
    }
    return std::nullopt;
  }

  bool takeSegment(uint8_t marker, JpegStream& stream) {
    const std::optional<std::uint16_t> length = reader_.u16(place_);
    if (!length || *length < sizeof *length || !reader_.contains(place_, *length)) return false;
    const uint64_t payload = place_ + sizeof *length;
    stream.segments.push_back({marker, markerAt_, payload, *length - sizeof *length});
    place_ = stream.segments.back().end();
    framed_ = framed_ || isFrame(marker);
    scanned_ = scanned_ || marker == startOfScan;
    return true;
  }

  platform::ByteReader reader_;
  uint64_t place_;
  uint64_t markerAt_ = 0;
  bool strayed_ = false;  // bytes other than fill bytes lay in front of the marker
  bool framed_ = false;
  bool scanned_ = false;
};

bool startsAt(ByteView bytes, uint64_t place) {
  const auto marker = platform::ByteReader(bytes, platform::ByteOrder::big).u16(place);
  return marker == (markerPrefix << 8 | startOfImage);
}

JpegStream walkFrom(ByteView bytes, uint64_t start, uint64_t behindStart) {
  JpegStream stream;
  stream.start = start;
  Walker(bytes, behindStart).walk(stream);
  return stream;
}

// The next place from which a stream may begin: a start-of-image marker and another marker.
std::optional<uint64_t> nextStart(ByteView bytes, uint64_t from) {
  constexpr uint8_t start[] = {markerPrefix, startOfImage, markerPrefix};
  if (from >= bytes.size()) return std::nullopt;
  const auto found = std::search(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end(),
                                 std::begin(start), std::end(start));
  if (found == bytes.end()) return std::nullopt;
  return static_cast<uint64_t>(found - bytes.begin());
}

}  // namespace

std::optional<JpegStream> streamAt(ByteView bytes, uint64_t start) {
  if (!startsAt(bytes, start)) return std::nullopt;
  return walkFrom(bytes, start, start + markerSize);
}

JpegStream firstStream(ByteView bytes) {
  return walkFrom(bytes, 0, startsAt(bytes, 0) ? markerSize : 0);
}

std::vector<JpegStream> streamsFrom(ByteView bytes, uint64_t start) {
  // Bytes that are walked in vain: a file may be made so that every start leads to its end.
  constexpr uint64_t mostWalks = 64;
  uint64_t budget = bytes.size() * mostWalks;
  std::vector<JpegStream> streams;
  uint64_t place = start;
  if (auto first = streamAt(bytes, start)) {
    place = first->end;
    streams.push_back(std::move(*first));
  }
  while (const std::optional<uint64_t> next = nextStart(bytes, place)) {
    std::optional<JpegStream> stream = streamAt(bytes, *next);
    const bool taken = stream->complete && stream->tidy;
    place = taken ? stream->end : *next + 1;
    if (!taken && stream->size() > budget) break;
    if (!taken) budget -= stream->size();
    if (taken) streams.push_back(std::move(*stream));
  }
  return streams;
}

ByteView payloadOf(ByteView bytes, const StreamSegment& segment) {
  return bytes.subspan(static_cast<std::size_t>(segment.payload),
                       static_cast<std::size_t>(segment.size));
}

bool isFilling(ByteView bytes, uint64_t from, uint64_t to) {
  const ByteView part =
      bytes.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  return std::all_of(part.begin(), part.end(), [](uint8_t b) { return b == 0x00 || b == 0xFF; });
}

bool beginsWith(ByteView bytes, std::string_view text) {
  return bytes.size() >= text.size() &&
         std::equal(text.begin(), text.end(), bytes.begin(),
                    [](char a, uint8_t b) { return static_cast<uint8_t>(a) == b; });
}

void appendSegment(ByteBlock& out, uint8_t marker, ByteView payload) {
  const std::size_t length = payload.size() + sizeof(std::uint16_t);
  out.insert(out.end(), {markerPrefix, marker, static_cast<uint8_t>(length >> 8),
                         static_cast<uint8_t>(length)});
  appendBytes(out, payload);
}

void appendBytes(ByteBlock& out, ByteView bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

ByteBlock readWhole(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  ByteBlock bytes(static_cast<std::size_t>(std::filesystem::file_size(path)));
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (file.gcount() == static_cast<std::streamsize>(bytes.size())) return bytes;
  throw Failure("the file cannot be read", "check that it is whole and its disk in order");
}

}  // namespace fiohost

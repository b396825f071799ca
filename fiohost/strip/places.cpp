// Places taken out where they lie.
#include <algorithm>
#include <map>
#include <string_view>

#include "fiohost/failure.h"
#include "fiohost/jpeg_segments.h"
#include "fiohost/strip/exif_places.h"
#include "fiohost/strip/iptc_places.h"
#include "fiohost/strip/picture_streams.h"
#include "fiohost/strip/private_data.h"
#include "fiohost/strip/xmp_places.h"
#include "platform/byte_reader.h"

namespace fiohost {
namespace {

using std::uint32_t;
using std::uint64_t;
using std::uint8_t;
using namespace std::string_view_literals;
using Room = std::span<uint8_t>;

constexpr auto extendedXmp = "http://ns.adobe.com/xmp/extension/\0"sv;
constexpr std::size_t guidSize = 32;
constexpr std::size_t extendedHead = extendedXmp.size() + guidSize + 8;  // length and offset
constexpr auto telemetry = "GoPro\0"sv;
constexpr auto littleTiff = "II*\0"sv;
constexpr auto bigTiff = "MM\0*"sv;
constexpr auto rdfStart = "<rdf:RDF"sv;
constexpr auto rdfEnd = "</rdf:RDF>"sv;
constexpr auto wideStart = "<\0r\0d\0f\0:\0R\0D\0F"sv;
constexpr auto wideEnd = "<\0/\0r\0d\0f\0:\0R\0D\0F\0>"sv;
constexpr auto videoPlace = "\xA9xyz"sv;  // of a QuickTime or MP4 file's user data

// Calls with the place of every occurrence of a text. Data that has more of them than any picture
// is made to keep the search busy.
template <typename Use>
void forEach(Room room, std::string_view text, Use use) {
  auto found = room.begin();
  const auto same = [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); };
  for (int count = 0; count < 1024; ++count) {
    found = std::search(found, room.end(), text.begin(), text.end(), same);
    if (found == room.end()) return;
    use(static_cast<std::size_t>(found - room.begin()));
    ++found;
  }
}

// Everything of one image, or of what lies behind the images.
class PlaceRemoval {
 public:
  PlaceRemoval(uint32_t image, StrippedFile& result) : image_(image), result_(result) {}

  void search(Room room) {
    searchExif(room, littleTiff);
    searchExif(room, bigTiff);
    forEach(room, rdfStart,
            [&](std::size_t at) { xmp_ += blankXmpPlaces(packetAt(room, at, rdfEnd)); });
    forEach(room, wideStart, [&](std::size_t at) {
      const bool big = at > 0 && room[at - 1] == 0;
      xmp_ += blankXmpPlaces(packetAt(room, at, wideEnd),
                             big ? XmpCoding::utf16Big : XmpCoding::utf16Little);
    });
    iptc_ += blankIptcResources(room);
  }

  // Packets of more than one segment are put together, since a property may lie in two.
  void searchExtendedXmp(const std::vector<Room>& segments) {
    std::map<std::string, ByteBlock> packets;
    std::size_t limit = 0;
    for (const Room segment : segments) limit += segment.size();
    for (const bool back : {false, true}) {
      for (const Room segment : segments) join(segment, packets, limit, back);
      if (back) break;
      for (auto& [guid, packet] : packets) xmp_ += blankXmpPlaces(packet);
    }
  }

  void searchTelemetry(Room segment) {
    if (!beginsWith(segment, telemetry)) return;
    const Room content = segment.subspan(telemetry.size());
    const bool told = std::any_of(content.begin(), content.end(), [](uint8_t b) { return b != 0; });
    std::fill(content.begin(), content.end(), uint8_t{0});
    if (told) add("telemetry of the camera", content.size());
  }

  // A box of a video behind the pictures becomes free space (ISO/IEC 14496-12, 8.1.2).
  void searchVideo(Room room) {
    forEach(room, videoPlace, [&](std::size_t at) {
      const platform::ByteReader reader(room, platform::ByteOrder::big);
      constexpr uint32_t longest = 256;
      const uint32_t size = at >= 4 ? reader.u32(at - 4).value_or(0) : 0;
      if (size <= 8 || size > longest || !reader.contains(at - 4, size)) return;
      const Room content = room.subspan(at, size - 4);
      std::fill(content.begin(), content.end(), uint8_t{0});
      std::copy_n("free", 4, content.begin());
      add("place of a video", size);
    });
  }

  // Segments of other makers may tell places in forms of their own.
  void noteUnknown(const StreamSegment& segment, Room payload) {
    const JpegSegment named = {segment.marker, {payload.begin(), payload.end()}};
    const std::string name = segmentName(named);
    const bool unknown = name.starts_with("APP") && !beginsWith(payload, telemetry);
    if (unknown) result_.kept.push_back({image_, name, payload.size()});
  }

  void tell() {
    add("GPS data in EXIF", exif_.gps);
    add("location properties in XMP", xmp_);
    add("location datasets in IPTC", iptc_ + exif_.iptc);
    if (exif_.makerNote != 0) result_.kept.push_back({image_, "maker note", exif_.makerNote});
  }

 private:
  void searchExif(Room room, std::string_view start) {
    forEach(room, start, [&](std::size_t at) {
      const ExifPlaces found = blankExifPlaces(room.subspan(at));
      exif_.gps += found.gps;
      exif_.iptc += found.iptc;
      exif_.makerNote = std::max(exif_.makerNote, found.makerNote);
    });
  }

  static Room packetAt(Room room, std::size_t at, std::string_view with) {
    const Room rest = room.subspan(at);
    const auto end = std::search(rest.begin(), rest.end(), with.begin(), with.end());
    return rest.first(static_cast<std::size_t>(end - rest.begin()));
  }

  // Into the packet of the segment's GUID, or back out of it. limit: of a packet's size.
  static void join(Room segment, std::map<std::string, ByteBlock>& packets, std::size_t limit,
                   bool back) {
    const platform::ByteReader reader(segment, platform::ByteOrder::big);
    const auto offset = reader.u32(extendedHead - 4);
    if (!offset || *offset > limit) return;
    const auto guid = segment.subspan(extendedXmp.size(), guidSize);
    ByteBlock& packet = packets[std::string(guid.begin(), guid.end())];
    const Room chunk = segment.subspan(extendedHead);
    const std::size_t end = *offset + chunk.size();
    if (packet.size() < end) packet.resize(end, ' ');
    const auto place = packet.begin() + static_cast<std::ptrdiff_t>(*offset);
    if (back) {
      std::copy_n(place, chunk.size(), chunk.begin());
    } else {
      std::copy(chunk.begin(), chunk.end(), place);
    }
  }

  void add(const char* what, uint64_t bytes) {
    if (bytes != 0) result_.removed.push_back({image_, what, bytes});
  }

  uint32_t image_;
  StrippedFile& result_;
  ExifPlaces exif_;
  uint64_t xmp_ = 0;
  uint64_t iptc_ = 0;
};

Room roomOf(ByteBlock& bytes, uint64_t from, uint64_t to) {
  return Room(bytes).subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

void searchStream(PlaceRemoval& removal, const JpegStream& stream, ByteBlock& bytes) {
  std::vector<Room> extended;
  for (const StreamSegment& segment : stream.segments) {
    const Room payload = roomOf(bytes, segment.payload, segment.end());
    if (segment.isApp(1) && beginsWith(payload, extendedXmp)) {
      extended.push_back(payload);
    } else if (isMetadata(segment)) {
      if (segment.isApp(6)) removal.searchTelemetry(payload);
      removal.search(payload);
      removal.noteUnknown(segment, payload);
    }
  }
  removal.searchExtendedXmp(extended);
}

StrippedFile blanked(ByteView file) {
  const PictureStreams pictures = pictureStreams(file);
  StrippedFile result = {{file.begin(), file.end()}, {}, {}};
  for (std::size_t i = 0; i < pictures.images.size(); ++i) {
    PlaceRemoval removal(static_cast<uint32_t>(i + 1), result);
    searchStream(removal, pictures.images[i], result.bytes);
    removal.tell();
  }
  PlaceRemoval behind(0, result);
  for (const JpegStream& stream : pictures.others) searchStream(behind, stream, result.bytes);
  for (const ByteRange& gap : pictures.gaps) {
    const Room room = roomOf(result.bytes, gap.from, gap.to);
    behind.search(room);
    behind.searchVideo(room);
    result.kept.push_back({0, "data that is no picture", gap.to - gap.from});
  }
  behind.tell();
  return result;
}

void addTo(std::vector<PrivatePart>& all, const PrivatePart& part) {
  const auto same = std::find_if(all.begin(), all.end(), [&](const PrivatePart& other) {
    return other.image == part.image && other.what == part.what;
  });
  if (same == all.end()) {
    all.push_back(part);
  } else {
    same->bytes += part.bytes;
  }
}

}  // namespace

StrippedFile withoutPlaces(ByteView file) {
  // Data that overlaps may show more when some of it is blank.
  constexpr int mostPasses = 16;
  StrippedFile result = blanked(file);
  for (int pass = 1; pass < mostPasses; ++pass) {
    StrippedFile next = blanked(result.bytes);
    if (next.removed.empty()) return result;
    for (const PrivatePart& part : next.removed) addTo(result.removed, part);
    result.bytes = std::move(next.bytes);
  }
  throw Failure("its metadata overlaps, so that places cannot be told from the rest",
                "take everything out with --all");
}

}  // namespace fiohost

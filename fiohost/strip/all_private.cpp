// Everything taken out that a picture can be shown without.
#include <algorithm>
#include <array>

#include "fiohost/failure.h"
#include "fiohost/jpeg_segments.h"
#include "fiohost/mpo_edit/mpo_content.h"
#include "fiohost/strip/exif_places.h"
#include "fiohost/strip/picture_streams.h"
#include "fiohost/strip/private_data.h"

namespace fiohost {
namespace {

using std::uint16_t;
using std::uint32_t;
using std::uint64_t;
using std::uint8_t;

constexpr uint8_t startOfScan = 0xDA;
constexpr std::size_t jfifSize = 14;  // without a thumbnail (JFIF 1.02)
constexpr std::size_t exifIdentifier = 6;
constexpr uint16_t upright = 1;

// An EXIF segment of one value.
ByteBlock exifOfOrientation(uint16_t orientation) {
  return {'E', 'x', 'i', 'f',  0,    0, 'M', 'M', 0, 42, 0, 0, 0,
          8,   0,   1,   0x01, 0x12, 0, 3,   0,   0, 0,  1, 0, static_cast<uint8_t>(orientation),
          0,   0,   0,   0,    0,    0};
}

bool isKnown(const MpfEntry& entry) {
  const mpo::MpfTag* row = mpo::findMpfTag(entry.tag);
  return row != nullptr && row->value != mpo::MpfValue::uidList;
}

// Without identifiers and what only the maker knows. Answers whether there was any.
bool dropUnknown(MpfDirectory& directory) {
  auto& entries = directory.entries;
  const auto end = std::stable_partition(entries.begin(), entries.end(), &isKnown);
  const bool any = end != entries.end();
  entries.erase(end, entries.end());
  return any;
}

// One image, copied without what is private.
class Cleaner {
 public:
  Cleaner(uint32_t image, bool several, StrippedFile& result)
      : image_(image), several_(several), result_(result) {}

  ByteBlock clean(ByteView bytes, const JpegStream& stream) {
    out_.assign(bytes.begin() + static_cast<std::ptrdiff_t>(stream.start),
                bytes.begin() + static_cast<std::ptrdiff_t>(stream.start + startSize));
    uint64_t place = stream.start + startSize;
    for (const StreamSegment& segment : stream.segments) {
      copyBetween(withoutFill(part(bytes, place, segment.start)));
      take(bytes, segment);
      place = segment.end();
      scanned_ = scanned_ || segment.marker == startOfScan;
    }
    scanned_ = true;  // what is left ends the picture
    copyBetween(part(bytes, place, stream.end));
    return std::move(out_);
  }

 private:
  static constexpr uint64_t startSize = 2;

  static ByteView part(ByteView bytes, uint64_t from, uint64_t to) {
    return bytes.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  }

  // A marker may follow fill bytes (T.81, B.1.1.2). With its segment gone they would make one of
  // the byte behind it.
  static ByteView withoutFill(ByteView bytes) {
    while (!bytes.empty() && bytes.back() == 0xFF) bytes = bytes.first(bytes.size() - 1);
    return bytes;
  }

  // In front of the first scan nothing has its place between segments.
  void copyBetween(ByteView bytes) {
    if (scanned_) {
      appendBytes(out_, bytes);
    } else if (!isFilling(bytes, 0, bytes.size())) {
      remove("stray bytes", bytes.size());
    }
  }

  void take(ByteView bytes, const StreamSegment& segment) {
    const ByteView payload = payloadOf(bytes, segment);
    if (!isMetadata(segment)) return appendSegment(out_, segment.marker, payload);
    const JpegSegment named = {segment.marker, {payload.begin(), payload.end()}};
    const std::string name = segmentName(named);
    if (isJfif(named)) return takeJfif(named);
    if (isAdobe(named) || name == "ICC profile") {
      return appendSegment(out_, segment.marker, payload);
    }
    if (isExif(named)) return takeExif(named);
    if (isMpoIndex(named) && several_) return takeIndex(named);
    remove(name, payload.size());
  }

  void takeJfif(JpegSegment segment) {
    const std::size_t size = segment.payload.size();
    if (size > jfifSize) {
      segment.payload.resize(jfifSize);
      segment.payload[jfifSize - 1] = segment.payload[jfifSize - 2] = 0;  // the thumbnail's size
      remove("JFIF thumbnail", size - jfifSize);
    }
    appendSegment(out_, segment.marker, segment.payload);
  }

  void takeExif(const JpegSegment& segment) {
    const uint16_t orientation = orientationOf(ByteView(segment.payload).subspan(exifIdentifier));
    const ByteBlock kept = exifOfOrientation(orientation);
    const bool turned = orientation > upright && !oriented_;
    if (turned) appendSegment(out_, segment.marker, kept);
    if (!turned || segment.payload != kept) remove("EXIF", segment.payload.size());
    oriented_ = oriented_ || turned;
  }

  // The index is made anew for the whole file.
  void takeIndex(const JpegSegment& segment) {
    MpfBlock block = parseMpf(segment.payload);
    block.index.reset();
    if (!block.attributes) return;
    if (dropUnknown(*block.attributes)) {
      remove("unknown values of the multi-picture index", segment.payload.size());
    }
    appendSegment(out_, segment.marker, buildMpf(block));
  }

  void remove(const std::string& what, uint64_t bytes) {
    result_.removed.push_back({image_, what, bytes});
  }

  uint32_t image_;
  bool several_;
  StrippedFile& result_;
  ByteBlock out_;
  bool scanned_ = false;
  bool oriented_ = false;
};

void tellOthers(const PictureStreams& pictures, StrippedFile& result) {
  for (const JpegStream& stream : pictures.others) {
    result.removed.push_back({0, "a picture that no index lists", stream.size()});
  }
  for (const ByteRange& gap : pictures.gaps) {
    result.removed.push_back({0, "data that is no picture", gap.to - gap.from});
  }
}

void clean(MpoContent& content, StrippedFile& result) {
  uint32_t image = 0;
  for (MpoPicture& picture : content.pictures) {
    const ByteBlock whole = std::move(picture.stream);
    picture.stream = Cleaner(++image, true, result).clean(whole, firstStream(whole));
    picture.filling.clear();
  }
  content.trailing.clear();
  if (dropUnknown(content.index)) {
    result.removed.push_back({1, "identifiers of the multi-picture index", 0});
  }
}

// A damaged picture may hide the next one once parts of it are gone. One that was cut stays so.
void requireAllPictures(ByteView file) {
  const MpoSurvey survey = surveyMpo(file);
  if (std::all_of(survey.faults.begin(), survey.faults.end(),
                  [](const FoundFault& fault) { return fault.kind == IndexFault::cut; })) {
    return;
  }
  throw Failure("a picture of it is damaged and would hide another", "fetch the file again");
}

}  // namespace

StrippedFile withoutPrivateData(ByteView file) {
  const PictureStreams pictures = pictureStreams(file);
  StrippedFile result;
  if (pictures.several) {
    MpoContent content = takeApart(file, pictures.survey);
    clean(content, result);
    result.bytes = putTogether(content);
    requireAllPictures(result.bytes);
  } else {
    result.bytes = Cleaner(1, false, result).clean(file, pictures.images.front());
  }
  tellOthers(pictures, result);
  return result;
}

}  // namespace fiohost

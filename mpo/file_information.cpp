#include "mpo/file_information.h"

#include "jpeg/file_information.h"
#include "mpo/codec_input.h"
#include "mpo/known_host.h"
#include "mpo/mpo_errors.h"
#include "mpo/mpo_record.h"
#include "mpo/segment_intake.h"
#include "platform/open_file.h"

namespace mpo {
namespace {

using host::FileDataRecord;
using host::MpoFileData;
using host::MpoImageInfo;
using host::u32;
using host::u64;

constexpr property::CaptureRules describeRules{
    .joinExtendedXmp = false, .keepRaw = false, .keepRawBesideField = false};
constexpr u64 largeImage = 4'200'000;  // pixels

// The figures of one image as the codec announces them.
struct Figures {
  bool seen = false;
  host::ImageHeader header = {};
  bool progressive = false;

  explicit Figures(const host::ImageHeader& announced) noexcept : seen(true), header(announced) {
    if (announced.size < sizeof(host::ImageHeaderWithExtra)) return;
    const auto& whole = reinterpret_cast<const host::ImageHeaderWithExtra&>(announced);
    progressive = whole.extra.progressive != 0;
  }
  Figures() = default;
};

// Runs the codec over image after image, only as far as their headers.
class ImageDescriber {
 public:
  ImageDescriber(CodecInput& input, const MpoIndex& index,
                 property::SegmentCapture& capture) noexcept
      : input_(input), intake_(index, &capture) {}

  // False when the codec fails; an image that it stopped at counts as described.
  [[nodiscard]] bool describe(u32 position, u64 start) noexcept {
    figures_ = {};
    intake_.beginImage(position, start);
    const int result = input_.run(start, {this, &onEvent});
    intake_.dropCapture();  // places and fields are the first image's
    return result == host::codecGoOn || result == host::codecStopped;
  }

  [[nodiscard]] const Figures& figures() const noexcept { return figures_; }

 private:
  static u32 onEvent(void* context, u32 event, u64, void* block) noexcept {
    auto& self = *static_cast<ImageDescriber*>(context);
    if (block == nullptr) return host::codecGoOn;
    switch (event) {
      case host::eventHeader:
        self.figures_ = Figures(*static_cast<const host::ImageHeader*>(block));
        return host::codecHeaderOnly;
      case host::eventSegment:
        return self.intake_.take(*static_cast<const host::SegmentRecord*>(block));
      default:
        return host::codecGoOn;
    }
  }

  CodecInput& input_;
  SegmentIntake intake_;
  Figures figures_;
};

void writeInfo(MpoImageInfo& info, const Figures& figures) noexcept {
  info.decoded = figures.seen ? 1 : 0;
  info.colourSpace = figures.header.colourSpace;
  if (figures.progressive) info.markerFlags |= host::markerProgressive;
  info.resolution = defaultResolution;
  info.densityUnit = figures.header.densityUnit;
  info.width = figures.header.width;
  info.height = figures.header.height;
}

void writeRecord(FileDataRecord& record, const host::ImageHeader& image) noexcept {
  record.version = host::fileDataVersion;
  record.count572 = 1;
  record.count576 = 1;
  record.kind = mpoRecordKind;
  record.bitsPerPixel = jpeg::bitsPerPixelOf(image.components);
  record.width = image.width;
  record.height = image.height;
  record.horizontalResolution = image.horizontalResolution;
  record.verticalResolution = image.verticalResolution;
  record.colourType = jpeg::colourTypeOf(image.components);
  record.tailKind = mpoTailKind;
  record.componentCode = image.components == 4 ? -2 : -1;
}

// An index that points past the end of the file is not believed: the first image stands alone. A
// file that does not tell its size is not shorter for that.
void keepFirstUnlessAllInside(const MpoIndex& index, HANDLE file) noexcept {
  const std::optional<u64> fileSize = platform::fileSizeOf(file);
  if (!fileSize) return;
  for (u32 image = 1; image < index.list.imageCount; ++image) {
    if (index.entries[image].fileOffset < *fileSize) continue;
    index.list.imageCount = 1;
    index.list.totalFrames = 1;
  }
}

bool describeImages(MpoFileData& data, HANDLE file, ImageDescriber& describer) noexcept {
  const MpoIndex index = indexOf(data);
  if (!describer.describe(0, 0)) {
    report(describeFirstImage);
    return false;
  }
  writeRecord(data.record, describer.figures().header);
  writeInfo(data.list.firstImage, describer.figures());
  if (index.list.imageCount < 2 || index.list.entries == 0) return true;
  keepFirstUnlessAllInside(index, file);
  for (u32 image = 1; image < index.list.imageCount; ++image) {
    if (!describer.describe(image, index.entries[image].fileOffset)) {
      report(describeLaterImage);
      return false;
    }
    writeInfo(index.entries[image].image, describer.figures());
  }
  return true;
}

// The thumbnail that the file's EXIF block carries is the preview, when there is one.
bool describeThumbnail(FileDataRecord& record, const DescribeSource& source) noexcept {
  if (source.widePath != nullptr) return jpeg::describeExifThumbnail(record, source.widePath);
  return source.ansiPath != nullptr && jpeg::describeExifThumbnail(record, source.ansiPath);
}

HGLOBAL makeRecord(HANDLE file, const DescribeSource& source) noexcept {
  platform::OwnedGlobal block(platform::movableZeroed, sizeof(MpoFileData));
  platform::LockedGlobal lock(block.get());
  auto* data = lock.as<MpoFileData>();
  CodecInput input(file);
  if (data == nullptr || !input) {
    report(describeMemory);
    return nullptr;
  }
  data->tag = host::mpoTailTag;
  data->tailSize = host::tailSizeWord;
  property::SegmentCapture capture(data, lock.size(), describeRules);
  ImageDescriber describer(input, indexOf(*data), capture);
  if (!describeImages(*data, file, describer)) {
    capture.takeBack();
    return nullptr;
  }
  data->record.isMultiPicture = 1;
  data->record.imageCount = static_cast<host::u16>(data->list.imageCount);
  if (!describeThumbnail(data->record, source)) markOwnPreview(data->record, runsInKnownHost());
  lock.unlock();
  return block.release();
}

platform::OpenFile openSource(const DescribeSource& source) noexcept {
  if (source.ansiPath != nullptr) return platform::openForReading(source.ansiPath);
  if (source.widePath != nullptr) return platform::openForReading(source.widePath);
  return {};
}

}  // namespace

void markOwnPreview(FileDataRecord& record, bool knownHost) noexcept {
  if (u64{record.width} * record.height >= largeImage && !knownHost) return;
  record.previewMarker = host::previewIsImage;
  record.previewBitsPerPixel = record.bitsPerPixel;
  record.previewWidth = -1;
  record.previewHeight = -1;
  record.previewHorizontalResolution = record.horizontalResolution;
  record.previewVerticalResolution = record.verticalResolution;
  record.previewColourType = record.colourType;
}

HGLOBAL describeFile(const DescribeSource& source) noexcept {
  platform::OpenFile opened;
  if (source.file == nullptr) opened = openSource(source);
  const HANDLE file = source.file != nullptr ? source.file : opened.get();
  if (source.file == nullptr && !opened) return nullptr;
  return MpfFindSegment(file) != 0 ? makeRecord(file, source) : nullptr;
}

}  // namespace mpo

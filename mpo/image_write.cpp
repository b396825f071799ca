#include "mpo/image_write.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "exif/segment_builder.h"
#include "frame/save_options.h"
#include "jpeg/encoder.h"
#include "jpeg/thumbnail_encoder.h"
#include "jpeg/write_options.h"
#include "mpo/describe_image.h"
#include "mpo/mpo_errors.h"
#include "mpo/mpo_record.h"
#include "mpo/write_requests.h"
#include "platform/open_file.h"

namespace mpo {
namespace {

using host::FileDataRecord;
using host::MpoCountAnswer;
using host::MpoImageDesc;
using host::u32;
using host::u64;
using host::u8;
using jpeg::PictureGeometry;

constexpr u32 longestPayload = 65533;  // of an application segment
constexpr host::u16 mpfAppNumber = 2;
constexpr u32 densityPerInch = 1;

// Zeroed descriptions of all images; empty when there is no memory.
class Descriptions {
 public:
  explicit Descriptions(u32 count) noexcept
      : block_(platform::fixedZeroed, u64{count} * sizeof(MpoImageDesc)),
        images_(static_cast<MpoImageDesc*>(block_.get()), block_ ? count : 0) {}

  [[nodiscard]] std::span<MpoImageDesc> images() const noexcept { return images_; }

 private:
  platform::OwnedGlobal block_;
  std::span<MpoImageDesc> images_;
};

// The multi-picture segment of the image that is written; empty when it cannot be built.
class MpfPayload {
 public:
  MpfPayload(std::span<const MpoImageDesc> images, const MpoCountAnswer& counts) noexcept {
    // Later images do without the index, but the first could not have been written.
    if (MpfBuildIndexIfd(images, counts, {}, nullptr) > longestPayload) return;
    u32 size = 0;
    MpfBuildSegment(images, counts, {}, &size);
    if (size == 0 || size > longestPayload) return;
    block_ = platform::OwnedGlobal(platform::fixedZeroed, size);
    if (!block_) return;
    const std::span<u8> buffer(static_cast<u8*>(block_.get()), size);
    if (MpfBuildSegment(images, counts, buffer, nullptr) == 1) bytes_ = buffer;
  }

  [[nodiscard]] std::span<const u8> bytes() const noexcept { return bytes_; }

 private:
  platform::OwnedGlobal block_;
  std::span<const u8> bytes_;
};

// The picture's rows, each asked of the host.
class RequestedRows final : public jpeg::RowSupplier {
 public:
  RequestedRows(const WriteRequests& requests, u32 stride) noexcept
      : requests_(requests), stride_(stride) {}

  u32 supply(const host::RowBlock& row) noexcept override {
    host::RowRequest request =
        rowRequest(row.width, row.imageHeight, row.row, 1, row.bytesPerPixel, stride_);
    const int answer = requests_.askRows(request);
    if (answer == host::codecStopped) return static_cast<u32>(host::codecStopped);
    if (answer != 1 || request.rows == 0) return static_cast<u32>(host::codecNoRows);
    std::memcpy(row.pixels, reinterpret_cast<const void*>(request.rows), row.byteCount);
    return host::codecGoOn;
  }

 private:
  const WriteRequests& requests_;
  u32 stride_;
};

bool isMpf(const property::RawSegment& segment) noexcept {
  return segment.appNumber == mpfAppNumber && segment.payload.size() >= mpfSignatureSize &&
         std::equal(std::begin(mpfSignature), std::end(mpfSignature), segment.payload.begin());
}

// A source's own multi-picture segment describes another file.
bool isKept(const property::RawSegment& segment) noexcept { return !isMpf(segment); }

// The kept segments, and the new multi-picture segment as the last.
class ImageSegments final : public jpeg::SegmentSupplier {
 public:
  ImageSegments(HGLOBAL propertyRecord, std::span<const u8> payload) noexcept
      : kept_(propertyRecord, &isKept), payload_(payload) {}

  u32 count() noexcept override { return kept_.count() + 1; }
  std::optional<property::RawSegment> find(u32 number) noexcept override {
    const u32 last = count();
    if (number == last) return property::RawSegment{mpfAppNumber, payload_};
    return number < last ? kept_.find(number) : std::nullopt;
  }

 private:
  property::RawSegments kept_;
  std::span<const u8> payload_;
};

PictureGeometry geometryOf(const MpoRecord& record) noexcept {
  PictureGeometry geometry = jpeg::pictureGeometryOf(*record.common());
  host::ImageHeader& header = geometry.header;
  if (header.horizontalResolution == 0 && header.verticalResolution == 0) {
    header.horizontalResolution = header.verticalResolution = defaultResolution;
  }
  const host::MpoList* list = record.list();
  header.densityUnit = list != nullptr ? list->firstImage.densityUnit : densityPerInch;
  return geometry;
}

// Rows of a preview as the host keeps them, made into a thumbnail. Empty when there is none.
jpeg::Thumbnail makeThumbnail(const FileDataRecord& record,
                              const WriteRequests& requests) noexcept {
  const jpeg::PreviewGeometry geometry = jpeg::previewGeometryOf(record);
  if (!jpeg::previewWanted(geometry) || !jpeg::previewUsable(geometry)) return {};
  const u64 distance = u64{geometry.width} * geometry.bitsPerPixel / 8;
  if (distance > std::numeric_limits<u32>::max()) return {};
  host::RowRequest request = rowRequest(geometry.width, geometry.height, 0, geometry.height,
                                        geometry.bytesPerPixel(), static_cast<u32>(distance));
  if (requests.askRows(request) != 1 || request.rows == 0) return {};
  const auto* rows = reinterpret_cast<const u8*>(request.rows);
  const u64 rowBytes = jpeg::previewRowBytes(geometry);
  const platform::OwnedGlobal block(platform::fixedZeroed, rowBytes * geometry.height);
  if (!block) return {};
  auto* pixels = static_cast<u8*>(block.get());
  for (u32 row = 0; row < geometry.height; ++row) {
    std::memcpy(pixels + row * rowBytes, rows + row * distance, std::min(rowBytes, distance));
  }
  return jpeg::encodeThumbnail(geometry, pixels, jpeg::thumbnailLimit);
}

// The first image makes the file anew, a later one goes into the file that is there.
platform::OpenFile openOutput(const FileDataRecord& record, u32 position) noexcept {
  constexpr DWORD access = GENERIC_READ | GENERIC_WRITE;
  const DWORD disposition = position == 0 ? CREATE_ALWAYS : OPEN_EXISTING;
  const auto* wide = (record.pathFlags & host::pathFlagWide) != 0
                         ? reinterpret_cast<const wchar_t*>(record.widePath)
                         : nullptr;
  if (wide != nullptr && wide[0] != L'\0') {
    return platform::OpenFile(CreateFileW(wide, access, FILE_SHARE_READ, nullptr, disposition,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
  }
  char ansi[sizeof record.ansiPath + 1] = {};
  std::memcpy(ansi, record.ansiPath, sizeof record.ansiPath);
  return platform::OpenFile(CreateFileA(ansi, access, FILE_SHARE_READ, nullptr, disposition,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
}

int encode(HANDLE file, const MpoRecord& record, const WriteRequests& requests,
           std::span<const u8> payload, const host::WriteOptions& options) noexcept {
  const PictureGeometry geometry = geometryOf(record);
  const HGLOBAL properties = property::propertyRecordOf(*record.common());
  jpeg::WriteContext context = {};
  context.size = sizeof context;
  context.file = file;
  context.geometry = &geometry;
  context.propertyRecord = properties;
  RequestedRows rows(requests, geometry.stride);
  ImageSegments segments(properties, payload);
  jpeg::Encoder encoder(context, rows, segments);
  const host::CodecCallback callback = encoder.callback();
  host::OutputDescriptor output = {};
  output.size = sizeof output;
  output.file = file;
  output.write = &jpeg::writeOutput;
  return kJpgWrite(&output, &callback, &options);
}

// The stream reaches from start to the end of the file.
bool enterIntoIndex(HANDLE file, const MpoCountAnswer& counts, u64 start) noexcept {
  const std::optional<u64> end = platform::fileSizeOf(file);
  if (!end || *end < start || *end - start > std::numeric_limits<u32>::max()) return false;
  return MpfPatchEntry(file, counts.imageCount, counts.position, start,
                       static_cast<u32>(*end - start)) == 1;
}

int writeStream(const MpoRecord& record, const WriteRequests& requests,
                const MpoCountAnswer& counts, std::span<const u8> payload,
                const host::WriteOptions& options) noexcept {
  const platform::OpenFile file = openOutput(*record.common(), counts.position);
  if (!file) return 0;
  const std::optional<u64> start = platform::moveTo(file.get(), 0, FILE_END);
  if (!start) return 0;
  const int result = encode(file.get(), record, requests, payload, options);
  if (result == host::codecStopped) return -1;
  if (result != host::codecGoOn) {
    report(writeCodec);
    return 0;
  }
  if (enterIntoIndex(file.get(), counts, *start)) return 1;
  report(writeIndex);
  return 0;
}

// Bytes of a record that was written without a list: the head of one, up to what the writer fills.
constexpr std::size_t writtenRecordSize = 1009;
constexpr std::size_t listOffset = offsetof(host::MpoFileData, list);
constexpr std::size_t writtenListSize = writtenRecordSize - listOffset;

bool growToMpoRecord(HGLOBAL fileData, MpoRecord& record) noexcept {
  record.unlock();
  if (GlobalReAlloc(fileData, writtenRecordSize, platform::movableZeroed) == nullptr) return false;
  const platform::LockedGlobal lock(fileData);
  if (!lock || lock.size() < writtenRecordSize) return false;
  auto& data = *static_cast<host::MpoFileData*>(lock.address());
  std::memset(static_cast<u8*>(lock.address()) + listOffset, 0, writtenListSize);
  data.tag = host::mpoTailTag;
  data.tailSize = host::tailSizeWord;
  data.record.tailKind = mpoTailKind;
  data.list.firstImage.resolution = defaultResolution;
  data.list.firstImage.densityUnit = densityPerInch;
  return true;
}

bool recordWrite(HGLOBAL fileData, MpoRecord& record) noexcept {
  FileDataRecord& common = *record.common();
  common.count572 = 1;
  common.count576 = 1;
  common.kind = mpoRecordKind;
  return record.list() != nullptr || growToMpoRecord(fileData, record);
}

// The smallest index of that many images has to fit a segment.
bool servable(const MpoCountAnswer& counts) noexcept {
  return counts.position < counts.imageCount &&
         counts.imageCount <= longestPayload / mpfImageEntrySize;
}

}  // namespace

int writeImage(HGLOBAL fileData, host::MPORequestCallback* callback, void* context) noexcept {
  MpoRecord record(fileData);
  if (record.common() == nullptr) return 0;
  const WriteRequests requests(callback, context);
  MpoCountAnswer counts = {};
  int answer = requests.askCount(counts);
  if (answer != 1) return answer;
  if (!servable(counts)) return 0;
  const Descriptions descriptions(counts.imageCount);
  if (descriptions.images().empty()) return 0;
  answer = requests.askDescriptions(descriptions.images());
  if (answer != 1) return answer;
  const MpfPayload payload(descriptions.images(), counts);
  if (payload.bytes().empty()) return 0;

  const jpeg::Thumbnail thumbnail = makeThumbnail(*record.common(), requests);
  exif::ensureSegments(property::propertySlot(*record.common()), thumbnail.bytes());
  frame::loadSaveOptions();
  const host::WriteOptions options =
      jpeg::chooseWriteOptions(jpeg::jpegTailOf(record.address(), record.size()));
  const int result = writeStream(record, requests, counts, payload.bytes(), options);
  if (result != 1) return result;
  return recordWrite(fileData, record) ? 1 : 0;
}

int writeSingleImage(HGLOBAL fileData, void* user, host::MPORowCallback* rowCallback) noexcept {
  MpoWriteContext context = {};
  {
    const MpoRecord record(fileData);
    const FileDataRecord* common = record.common();
    if (common == nullptr) return 0;
    context.width = common->width;
    context.height = common->height;
  }
  context.rowCallback = rowCallback;
  context.user = user;
  return writeImage(fileData, &MpoDescribeImage, &context);
}

}  // namespace mpo

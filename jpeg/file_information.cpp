#include "jpeg/file_information.h"

#include <cstring>

#include "frame/save_options.h"
#include "jpeg/exif_thumbnail.h"
#include "jpeg/path_extension.h"
#include "platform/global_memory.h"

namespace jpeg {
namespace {

using host::ExtraInformation;
using host::FileDataRecord;
using host::ImageHeader;
using host::JpegFileData;
using host::u32;

constexpr u32 jpegTailKind = 62;
constexpr u32 jpegRecordKind = 5;
constexpr host::i32 thumbnailPreviewMarker = 2048;

// What differs between the two forms of a path.
template <typename Char>
struct PathForm;

template <>
struct PathForm<char> {
  static constexpr host::i32 describePosition = 184;
  static constexpr host::i32 allocationPosition = 192;
  static constexpr host::i32 colourPosition = 242;
  static int getInfo(const char* path, ImageHeader* image, ExtraInformation* extra) {
    return kJpgFileGetInfo(path, image, extra);
  }
  static u32 thumbnailColourType(u32) { return host::colourTrue; }
};

template <>
struct PathForm<wchar_t> {
  static constexpr host::i32 describePosition = 314;
  static constexpr host::i32 allocationPosition = 322;
  static constexpr host::i32 colourPosition = 371;
  static int getInfo(const wchar_t* path, ImageHeader* image, ExtraInformation* extra) {
    return kJpgFileGetInfoW(path, image, extra);
  }
  static u32 thumbnailColourType(u32 components) {
    return components == 1 ? host::colourGrey : host::colourTrue;
  }
};

HGLOBAL notServed() noexcept { return reinterpret_cast<HGLOBAL>(~std::uintptr_t{0}); }

void writeEncoding(JpegFileData& data, const ImageHeader& image,
                   const ExtraInformation& extra) noexcept {
  FileDataRecord& record = data.record;
  record.version = host::fileDataVersion;
  record.count572 = 1;
  record.count576 = 1;
  record.kind = jpegRecordKind;
  record.reserved584 = 0;
  record.reserved656 = 0;
  record.reserved664 = 0;
  record.reserved690 = 0;
  record.componentCode = image.components == 4 ? -2 : -1;
  record.reserved704 = 0;
  record.tailKind = jpegTailKind;
  data.tail.mode = extra.mode;
  data.tail.sample = extra.sample;
  data.tail.jfif = extra.jfif;
  data.tail.colourSpace = image.colourSpace;
  if (extra.progressive != 0) data.tail.markerFlags |= host::markerProgressive;
  data.tail.quality = frame::saveOptions().quality;  // the file's own is not measured
  data.tail.tag = host::jpegTailTag;
  data.tail.size = host::tailSizeWord;
}

void writeSize(FileDataRecord& record, const ImageHeader& image) noexcept {
  record.width = image.width;
  record.height = image.height;
  record.horizontalResolution = image.horizontalResolution;
  record.verticalResolution = image.verticalResolution;
  record.colourType = colourTypeOf(image.components);
}

void writeDepth(FileDataRecord& record, u32 components) noexcept {
  record.bitsPerPixel = bitsPerPixelOf(components);
  record.reserved612 = 0;
  record.reserved616 = 0;
}

// A new record says that the image is its own preview, at a size not yet known.
void writePreview(FileDataRecord& record) noexcept {
  record.previewMarker = host::previewIsImage;
  record.previewBitsPerPixel = record.bitsPerPixel;
  record.previewWidth = -1;
  record.previewHeight = -1;
  record.previewHorizontalResolution = record.horizontalResolution;
  record.previewVerticalResolution = record.verticalResolution;
  record.previewColourType = record.colourType;
}

template <typename Char>
bool probeThumbnail(FileDataRecord& record, const Char* path) noexcept {
  const ExifThumbnail thumbnail(path);
  if (!thumbnail.found()) return false;
  ImageHeader image = {};
  image.size = sizeof image;
  ExtraInformation extra = {};
  extra.size = sizeof extra;
  if (kJpgStreamGetInfo(&thumbnail.stream(), &image, &extra) != host::codecGoOn) return false;
  record.previewMarker = thumbnailPreviewMarker;
  record.previewBitsPerPixel = bitsPerPixelOf(image.components);
  record.previewWidth = static_cast<host::i32>(image.width);
  record.previewHeight = static_cast<host::i32>(image.height);
  record.previewHorizontalResolution = image.horizontalResolution;
  record.previewVerticalResolution = image.verticalResolution;
  record.previewColourType = PathForm<Char>::thumbnailColourType(image.components);
  return true;
}

template <typename Char>
HGLOBAL makeRecord(const Char* path, const ImageHeader& image,
                   const ExtraInformation& extra) noexcept {
  platform::OwnedGlobal block(platform::movableZeroed, sizeof(JpegFileData));
  platform::LockedGlobal lock(block.get());
  auto* data = lock.as<JpegFileData>();
  if (data == nullptr) {
    frame::reportError(host::errorMemoryOrOutput, frame::jpegErrors,
                       PathForm<Char>::allocationPosition);
    return nullptr;
  }
  writeEncoding(*data, image, extra);
  writeSize(data->record, image);
  if (data->record.colourType == host::colourUnserved) {
    frame::reportError(host::errorColourLayout, frame::jpegErrors, PathForm<Char>::colourPosition);
    return nullptr;
  }
  writeDepth(data->record, image.components);
  // Kept: the probe runs although the preview fields are written anew right after it, so that a
  // file with a thumbnail and one without give the same record.
  probeThumbnail(data->record, path);
  writePreview(data->record);
  lock.unlock();
  return block.release();
}

template <typename Char>
HGLOBAL describe(const Char* path) noexcept {
  if (path != nullptr && hasMpoExtension(path)) return notServed();
  ImageHeader image = {};
  image.size = sizeof image;
  ExtraInformation extra = {};
  extra.size = sizeof extra;
  if (path == nullptr || PathForm<Char>::getInfo(path, &image, &extra) != host::codecGoOn) {
    frame::reportError(host::errorDescribe, frame::jpegErrors, PathForm<Char>::describePosition);
    return notServed();
  }
  return makeRecord(path, image, extra);
}

}  // namespace

HGLOBAL describeFile(const char* path) noexcept { return describe(path); }

HGLOBAL describeFile(const wchar_t* path) noexcept { return describe(path); }

u32 colourTypeOf(u32 components) noexcept {
  switch (components) {
    case 1:
      return host::colourGrey;
    case 3:
      return host::colourTrue;
    case 4:
      return host::colourFourComponents;
    default:
      return host::colourUnserved;
  }
}

u32 bitsPerPixelOf(u32 components) noexcept { return components * 8; }

bool describeExifThumbnail(FileDataRecord& record, const char* path) noexcept {
  return probeThumbnail(record, path);
}

bool describeExifThumbnail(FileDataRecord& record, const wchar_t* path) noexcept {
  return probeThumbnail(record, path);
}

}  // namespace jpeg

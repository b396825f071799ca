#include "jpeg/thumbnail_read.h"

#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>

#include "frame/source_path.h"
#include "jpeg/exif_thumbnail.h"
#include "platform/global_memory.h"

namespace jpeg {
namespace {

using host::u32;
using host::u64;
using host::u8;

constexpr u32 streamImageUnit = 3;
constexpr host::u16 wholePicture = 2;

struct Free {
  void operator()(void* block) const noexcept { std::free(block); }
};
using Buffer = std::unique_ptr<u8, Free>;

// The preview as a picture in memory, still without pixels; none when its fields cannot be one.
std::optional<host::StreamImage> previewImage(const host::FileDataRecord& record) noexcept {
  const u32 bytesPerPixel = record.previewBitsPerPixel / 8;
  if (record.previewWidth <= 0 || record.previewHeight <= 0 || bytesPerPixel == 0) {
    return std::nullopt;
  }
  const u64 stride = u64{static_cast<u32>(record.previewWidth)} * bytesPerPixel;
  const u64 most = std::numeric_limits<u32>::max();
  if (stride > most || stride * static_cast<u32>(record.previewHeight) > most) return std::nullopt;
  host::StreamImage image = {};
  image.size = sizeof image;
  image.width = static_cast<u32>(record.previewWidth);
  image.height = static_cast<u32>(record.previewHeight);
  image.densityUnit = streamImageUnit;
  image.horizontalResolution = record.previewHorizontalResolution;
  image.verticalResolution = record.previewVerticalResolution;
  image.bytesPerPixel = bytesPerPixel;
  image.stride = static_cast<u32>(stride);
  image.bufferSize = static_cast<u32>(stride * image.height);
  return image;
}

int handToHost(const host::StreamImage& image, host::ReadRequest& request,
               host::RowCallback* rowCallback) noexcept {
  const platform::OwnedGlobal block(platform::fixedZeroed, u64{image.height} * sizeof(u8*));
  const platform::LockedGlobal lock(block.get());
  if (!lock) return 0;
  auto** rows = static_cast<u8**>(lock.address());
  for (u32 row = 0; row < image.height; ++row) {
    rows[row] = image.pixels + u64{row} * image.stride;
  }
  rowCallback(&request, 0, 0, image.width, image.height, rows, wholePicture, -1, 7);
  return 1;
}

int decodeThumbnail(const ExifThumbnail& thumbnail, const host::FileDataRecord& record,
                    host::ReadRequest& request, host::RowCallback* rowCallback) noexcept {
  if (!thumbnail.found()) return 0;
  std::optional<host::StreamImage> image = previewImage(record);
  if (!image) return 0;
  const Buffer buffer(static_cast<u8*>(std::malloc(image->bufferSize)));
  if (!buffer) return 0;
  image->pixels = buffer.get();
  const host::StreamDescriptor stream = thumbnail.stream();
  if (kJpgStreamRead(&stream, &*image, nullptr) != host::codecGoOn) return 0;
  return handToHost(*image, request, rowCallback);
}

}  // namespace

int deliverThumbnail(HGLOBAL fileData, host::ReadRequest& request,
                     host::RowCallback* rowCallback) noexcept {
  const platform::LockedGlobal lock(fileData);
  auto* record = lock.as<host::FileDataRecord>();
  if (record == nullptr) return 0;
  const frame::SourcePath path = frame::sourcePathOfLocked(record);
  if (path.wide != nullptr) {
    return decodeThumbnail(ExifThumbnail(path.wide), *record, request, rowCallback);
  }
  if (path.ansi != nullptr) {
    return decodeThumbnail(ExifThumbnail(path.ansi), *record, request, rowCallback);
  }
  return 0;
}

}  // namespace jpeg

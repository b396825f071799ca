#include "jpeg/thumbnail_encoder.h"

#include <algorithm>
#include <limits>

#include "frame/error_report.h"
#include "host/klibjpg.h"

namespace jpeg {
namespace {

using host::u32;
using host::u64;
using host::u8;

constexpr u32 firstQuality = 80;
constexpr u32 lowestQuality = 10;
constexpr u32 streamImageColour = 3;
constexpr u32 unknownSize = ~u32{0};
constexpr host::i32 encoderFailedPosition = 131;

host::StreamImage imageBlock(const PreviewGeometry& geometry, const u8* pixels) noexcept {
  host::StreamImage image = {};
  image.size = sizeof image;
  image.width = geometry.width;
  image.height = geometry.height;
  image.colourSpace = streamImageColour;
  image.horizontalResolution = geometry.horizontalResolution;
  image.verticalResolution = geometry.verticalResolution;
  image.bytesPerPixel = geometry.bytesPerPixel();
  image.stride = image.bytesPerPixel * image.width;
  image.bufferSize = image.stride * image.height;
  image.pixels = const_cast<u8*>(pixels);  // the record serves both directions
  return image;
}

}  // namespace

PreviewGeometry previewGeometryOf(const host::FileDataRecord& record) noexcept {
  return {record.previewBitsPerPixel, static_cast<u32>(record.previewWidth),
          static_cast<u32>(record.previewHeight), record.previewHorizontalResolution,
          record.previewVerticalResolution};
}

bool previewWanted(const PreviewGeometry& geometry) noexcept {
  return geometry.height != 0 && geometry.width != 0;
}

u64 previewRowBytes(const PreviewGeometry& geometry) noexcept {
  return geometry.bitsPerPixel < 8 ? geometry.width
                                   : u64{geometry.bytesPerPixel()} * geometry.width;
}

bool previewUsable(const PreviewGeometry& geometry) noexcept {
  if (geometry.width == unknownSize || geometry.height == unknownSize) return false;
  const u64 rowBytes = previewRowBytes(geometry);
  const u64 most = std::numeric_limits<u32>::max();
  return rowBytes <= most && rowBytes * geometry.height <= most;
}

Thumbnail encodeThumbnail(const PreviewGeometry& geometry, const u8* pixels, u32 limit) noexcept {
  const host::StreamImage image = imageBlock(geometry, pixels);
  const u32 capacity = image.bufferSize;
  Thumbnail thumbnail;
  thumbnail.buffer_.reset(static_cast<u8*>(std::malloc(std::max(capacity, u32{1}))));
  if (!thumbnail.buffer_) return {};

  host::StreamDescriptor output = {};
  output.length = capacity;
  output.data = thumbnail.buffer_.get();
  host::WriteOptions options = {};
  options.quality = firstQuality;
  options.sample = host::sample422;
  int result = 0;
  do {
    // Kept: the length of the try before is this one's capacity. It never grows past the buffer.
    output.length = std::min<u32>(output.length, capacity);
    result = kJpgStreamWrite(&output, &image, &options);
    --options.quality;
  } while (output.length >= limit && options.quality > lowestQuality);
  if (result != host::codecGoOn) {
    frame::reportError(host::errorWrite, frame::thumbnailEncoderErrors, encoderFailedPosition);
    return {};
  }
  thumbnail.length_ = std::min<u32>(output.length, capacity);
  return thumbnail;
}

}  // namespace jpeg

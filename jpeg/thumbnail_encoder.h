// The small JPEG that a written file carries as its thumbnail.
#pragma once

#include <cstdlib>
#include <memory>
#include <span>

#include "host/file_data.h"

namespace jpeg {

// The preview's figures, in the order that the file-data record has them.
struct PreviewGeometry {
  host::u32 bitsPerPixel;
  host::u32 width;   // pixels
  host::u32 height;  // rows
  host::u32 horizontalResolution;
  host::u32 verticalResolution;

  [[nodiscard]] host::u32 bytesPerPixel() const noexcept { return bitsPerPixel / 8; }
};

[[nodiscard]] PreviewGeometry previewGeometryOf(const host::FileDataRecord& record) noexcept;

// True for sizes that rows can be asked for: neither is zero.
[[nodiscard]] bool previewWanted(const PreviewGeometry& geometry) noexcept;

// True when the preview's bytes can be held: no size is unknown (-1) and the block fits 32 bits.
[[nodiscard]] bool previewUsable(const PreviewGeometry& geometry) noexcept;

// Bytes of one collected preview row: one for each pixel below 8 bits per pixel.
[[nodiscard]] host::u64 previewRowBytes(const PreviewGeometry& geometry) noexcept;

inline constexpr host::u32 thumbnailLimit = 35000;  // bytes; an EXIF segment holds 64 KiB in all

// An encoded thumbnail in a C-heap buffer; empty when there is none.
class Thumbnail {
 public:
  [[nodiscard]] std::span<const host::u8> bytes() const noexcept {
    return {buffer_.get(), length_};
  }

 private:
  friend Thumbnail encodeThumbnail(const PreviewGeometry&, const host::u8*, host::u32) noexcept;
  struct Free {
    void operator()(void* block) const noexcept { std::free(block); }
  };
  std::unique_ptr<host::u8, Free> buffer_;
  host::u32 length_ = 0;

 public:
  // Kept: one failure of the writer leaves the bytes allocated.
  void abandon() noexcept { static_cast<void>(buffer_.release()); }
};

// Encodes geometry.height rows of geometry.width pixels, lowering the quality until the result is
// below limit bytes. Empty without a report when there is no memory for the output, and after
// report 4021 when the codec failed.
[[nodiscard]] Thumbnail encodeThumbnail(const PreviewGeometry& geometry, const host::u8* pixels,
                                        host::u32 limit) noexcept;

}  // namespace jpeg

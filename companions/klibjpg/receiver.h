// Who is told about a picture that is being decoded.
#pragma once

#include <cstddef>

#include "host/klibjpg.h"

namespace klibjpg {

// The result of a call that failed for any reason but an answer of the host.
inline constexpr int codecFailed = 0;

// Each answer is the host's: codecGoOn, to a header also codecHeaderOnly, anything else stops. The
// functions are called from frames that an error may jump over; they must not throw.
class Receiver {
 public:
  // Bytes per pixel that the rows should have where the colours allow it; 0 = the stream's own.
  [[nodiscard]] virtual host::u32 wantedBytesPerPixel() const { return 0; }
  // Where to decode a row to, or null for the codec's own row.
  virtual host::u8* placeFor(host::u32 row, host::u32 byteCount);
  virtual host::i32 onSegment(host::SegmentRecord& segment);
  virtual host::i32 onHeader(host::ImageHeaderWithExtra& header) = 0;
  virtual host::i32 onRow(host::RowBlock& row) = 0;

 protected:
  ~Receiver() = default;
};

// Passes everything on to the host's event callback.
class EventReceiver final : public Receiver {
 public:
  explicit EventReceiver(const host::CodecCallback& callback) noexcept : callback_(callback) {}

  host::i32 onSegment(host::SegmentRecord& segment) override;
  host::i32 onHeader(host::ImageHeaderWithExtra& header) override;
  host::i32 onRow(host::RowBlock& row) override;

 private:
  host::i32 raise(host::CodecEvent event, void* block);

  const host::CodecCallback& callback_;
};

// Keeps the header and leaves out the pixels.
class HeaderReceiver final : public Receiver {
 public:
  [[nodiscard]] const host::ImageHeaderWithExtra& header() const noexcept { return header_; }

  host::i32 onHeader(host::ImageHeaderWithExtra& header) override;
  host::i32 onRow(host::RowBlock& row) override;

 private:
  host::ImageHeaderWithExtra header_ = {};
};

// Puts the rows into a caller's picture. Of a stream whose size differs from the picture's the part
// that both have is delivered; nothing outside the caller's buffer is touched.
class PictureReceiver final : public Receiver {
 public:
  explicit PictureReceiver(const host::StreamImage& picture) noexcept : picture_(picture) {}

  [[nodiscard]] host::u32 wantedBytesPerPixel() const override { return picture_.bytesPerPixel; }
  host::u8* placeFor(host::u32 row, host::u32 byteCount) override;
  host::i32 onHeader(host::ImageHeaderWithExtra& header) override;
  host::i32 onRow(host::RowBlock& row) override;

 private:
  // Bytes of the picture's row that lie in the buffer.
  [[nodiscard]] std::size_t roomIn(host::u32 row) const;

  const host::StreamImage& picture_;
};

}  // namespace klibjpg

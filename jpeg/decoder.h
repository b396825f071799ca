// From codec events to host rows: the callback of every decode, JPEG or MPO.
#pragma once

#include "host/klibjpg.h"
#include "host/requests.h"
#include "property/segment_capture.h"

namespace jpeg {

#pragma pack(push, 1)

// What the codec carries for one call. A codec may rely on nothing but the size word.
struct DecodeContext {
  host::u32 size;  // 72
  host::u16 flags;
  host::u8 gap6[2];
  HGLOBAL columnMap;  // one source column index per target column
  HGLOBAL spare;      // allocated with the column map, not otherwise used
  HGLOBAL rowBuffer;  // one target row
  host::ReadRequest* request;
  host::RowCallback* rowCallback;
  host::FileDataRecord* fileData;
  host::u64 passCount;
  host::u8 gap64[8];
};

#pragma pack(pop)

HOST_RECORD_SIZE(DecodeContext, 72);

// One decode of one image.
class Decoder {
 public:
  // All three live as long as the decoder. The capture takes the application segments.
  Decoder(host::ReadRequest& request, host::RowCallback* rowCallback,
          host::FileDataRecord& fileData, property::SegmentCapture& capture) noexcept;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  // What the codec is given; valid as long as the decoder.
  [[nodiscard]] host::CodecCallback callback() noexcept;

  // Frees the three scaling blocks. Kept: they are freed only when the record marks the image as
  // its own preview, whatever the read came to.
  void freeScalingBlocks() noexcept;

  // The answer to one codec event: 1, what the host's row callback said, or codecNoRowBuffer.
  host::u32 onEvent(host::u32 event, void* block) noexcept;

 private:
  struct Scale {
    host::u32 targetWidth = 0;
    host::u32 rowWidth = 0;
    host::u32 bytesPerPixel = 0;
    bool operator==(const Scale&) const = default;
  };

  void beginPass(host::ImageHeader& header) noexcept;
  [[nodiscard]] host::u32 deliverRow(const host::RowBlock& row) noexcept;
  [[nodiscard]] host::u32 deliverScaled(const host::RowBlock& row) noexcept;
  [[nodiscard]] host::u32 callHost(const host::RowBlock& row, host::u32 index, host::u32 width,
                                   host::u8* pixels) noexcept;
  [[nodiscard]] bool prepareScaling(const Scale& scale) noexcept;
  [[nodiscard]] bool allocateScaling(const Scale& scale) noexcept;

  DecodeContext context_ = {};
  property::SegmentCapture& capture_;
  Scale scale_;
  bool scalingRefused_ = false;
};

// The codec's callback for a context that is a Decoder's.
host::u32 decodeEvent(void* context, host::u32 event, host::u64 unused, void* block) noexcept;

}  // namespace jpeg

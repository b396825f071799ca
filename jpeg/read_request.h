// The steps of a read that the JPEG and the MPO family share.
#pragma once

#include "frame/error_report.h"
#include "jpeg/decoder.h"

namespace jpeg {

// A preview of an image that is its own preview is left to the codec, which decodes at that size.
// False when the record cannot be locked or is none.
[[nodiscard]] bool adoptPreview(HGLOBAL fileData, host::ReadRequest& request) noexcept;

// True when the pixels come from the codec, false when the EXIF thumbnail is asked for.
[[nodiscard]] bool needsCodec(const host::ReadRequest& request) noexcept;

// What a codec result means to the host: 1, -1 (stopped, not reported), or 0 after a report with
// that position. Takes the captured segments back unless the result is 1.
[[nodiscard]] int resultOfRead(int codecResult, property::SegmentCapture& capture,
                               const frame::ErrorSource& errors, host::i32 position) noexcept;

// The same, and frees the scaling blocks as described at Decoder::freeScalingBlocks.
[[nodiscard]] int finishDecode(int codecResult, const host::FileDataRecord& record,
                               Decoder& decoder, property::SegmentCapture& capture,
                               const frame::ErrorSource& errors, host::i32 position) noexcept;

}  // namespace jpeg

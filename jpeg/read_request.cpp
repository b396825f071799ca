#include "jpeg/read_request.h"

#include "platform/global_memory.h"

namespace jpeg {

bool adoptPreview(HGLOBAL fileData, host::ReadRequest& request) noexcept {
  const platform::LockedGlobal lock(fileData);
  const auto* record = lock.as<host::FileDataRecord>();
  if (record == nullptr) return false;
  if (request.preview != 0 && record->previewMarker == host::previewIsImage) {
    request.preview = host::previewByCodec;
  }
  return true;
}

bool needsCodec(const host::ReadRequest& request) noexcept {
  return request.fullImage != 0 || request.preview == host::previewByCodec;
}

int resultOfRead(int codecResult, property::SegmentCapture& capture,
                 const frame::ErrorSource& errors, host::i32 position) noexcept {
  if (codecResult == host::codecGoOn) return 1;
  capture.takeBack();
  if (codecResult == host::codecStopped) return -1;
  frame::reportError(host::errorRead, errors, position);
  return 0;
}

int finishDecode(int codecResult, const host::FileDataRecord& record, Decoder& decoder,
                 property::SegmentCapture& capture, const frame::ErrorSource& errors,
                 host::i32 position) noexcept {
  if (record.previewMarker == host::previewIsImage) decoder.freeScalingBlocks();
  return resultOfRead(codecResult, capture, errors, position);
}

}  // namespace jpeg

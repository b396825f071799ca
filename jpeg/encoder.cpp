#include "jpeg/encoder.h"

#include "host/file_data.h"

namespace jpeg {

using host::u32;

PictureGeometry pictureGeometryOf(const host::FileDataRecord& record) noexcept {
  PictureGeometry geometry = {};
  geometry.header.size = sizeof geometry.header;
  geometry.header.width = record.width;
  geometry.header.height = record.height;
  geometry.header.horizontalResolution = record.horizontalResolution;
  geometry.header.verticalResolution = record.verticalResolution;
  geometry.header.components = record.bitsPerPixel / 8;
  geometry.stride = (geometry.header.components * record.width + 3) & ~u32{3};
  return geometry;
}

host::CodecCallback Encoder::callback() noexcept { return {this, &encodeEvent}; }

u32 Encoder::onEvent(u32 event, void* block) noexcept {
  if (block == nullptr) return host::codecGoOn;
  switch (event) {
    case host::eventHeader:
      *static_cast<host::ImageHeader*>(block) = context_.geometry->header;
      return host::codecGoOn;
    case host::eventRow:
      return rows_.supply(*static_cast<const host::RowBlock*>(block));
    case host::eventCountSegments:
      static_cast<host::SegmentCountBlock*>(block)->count = segments_.count();
      return host::codecGoOn;
    case host::eventSegment:
      giveSegment(*static_cast<host::SegmentBlock*>(block));
      return host::codecGoOn;
    default:
      return host::codecGoOn;
  }
}

void Encoder::giveSegment(host::SegmentBlock& block) noexcept {
  const std::optional<property::RawSegment> segment = segments_.find(block.index);
  if (!segment) return;
  block.kind = 1;
  block.appNumber = segment->appNumber;
  block.payloadLength = static_cast<u32>(segment->payload.size());
  block.payload = segment->payload.data();
}

u32 encodeEvent(void* context, u32 event, host::u64, void* block) noexcept {
  return static_cast<Encoder*>(context)->onEvent(event, block);
}

int writeOutput(HANDLE file, u32 byteCount, const void* bytes) noexcept {
  DWORD written = 0;
  const bool whole =
      WriteFile(file, bytes, byteCount, &written, nullptr) != 0 && written == byteCount;
  return whole ? host::codecGoOn : host::codecOutputFailed;
}

}  // namespace jpeg

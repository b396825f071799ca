// From host rows to codec events: the callback of every encode, JPEG or MPO.
#pragma once

#include "host/klibjpg.h"
#include "host/requests.h"
#include "property/raw_segments.h"

namespace jpeg {

// The picture as the codec is told of it in the header event.
struct PictureGeometry {
  host::ImageHeader header;  // the last word holds the bytes per pixel
  host::u32 stride;          // bytes of a row, rounded up to a multiple of 4
};

[[nodiscard]] PictureGeometry pictureGeometryOf(const host::FileDataRecord& record) noexcept;

#pragma pack(push, 1)

// What the codec carries for one call.
struct WriteContext {
  host::u32 size;  // 56
  host::u8 gap4[4];
  HANDLE file;
  const PictureGeometry* geometry;
  void* hostContext;
  host::RowSource* rowSource;
  HGLOBAL propertyRecord;
  host::u32 flags;  // see WriteContextFlag; nothing in this module reads them
  host::u8 gap52[4];
};

#pragma pack(pop)

HOST_FIELD_AT(WriteContext, file, 8);
HOST_FIELD_AT(WriteContext, geometry, 16);
HOST_FIELD_AT(WriteContext, hostContext, 24);
HOST_FIELD_AT(WriteContext, rowSource, 32);
HOST_FIELD_AT(WriteContext, propertyRecord, 40);
HOST_FIELD_AT(WriteContext, flags, 48);
HOST_RECORD_SIZE(WriteContext, 56);

enum WriteContextFlag : host::u32 { contextHasHeap = 1, contextHasExifOrGps = 2 };

// Where the rows of a picture come from.
class RowSupplier {
 public:
  virtual ~RowSupplier() = default;
  // Fills row.pixels with row.byteCount bytes. Returns codecGoOn, or the answer that stops.
  virtual host::u32 supply(const host::RowBlock& row) noexcept = 0;
};

// The application segments of a picture, numbered from 1.
class SegmentSupplier {
 public:
  virtual ~SegmentSupplier() = default;
  [[nodiscard]] virtual host::u32 count() noexcept = 0;
  [[nodiscard]] virtual std::optional<property::RawSegment> find(host::u32 number) noexcept = 0;
};

// One encode of one picture. The parts live as long as the encoder.
class Encoder {
 public:
  Encoder(const WriteContext& context, RowSupplier& rows, SegmentSupplier& segments) noexcept
      : context_(context), rows_(rows), segments_(segments) {}
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  // What the codec is given; valid as long as the encoder.
  [[nodiscard]] host::CodecCallback callback() noexcept;

  host::u32 onEvent(host::u32 event, void* block) noexcept;

 private:
  void giveSegment(host::SegmentBlock& block) noexcept;

  WriteContext context_;
  RowSupplier& rows_;
  SegmentSupplier& segments_;
};

// The codec's callback for a context that is an Encoder's.
host::u32 encodeEvent(void* context, host::u32 event, host::u64 unused, void* block) noexcept;

// Writes the bytes to the file whole: 1, or codecOutputFailed.
int writeOutput(HANDLE file, host::u32 byteCount, const void* bytes) noexcept;

}  // namespace jpeg

#include "companions/klibjpg/supplier.h"

#include "companions/klibjpg/receiver.h"

namespace klibjpg {

using host::i32;
using host::u32;
using host::u64;
using host::u8;

i32 Supplier::onCountSegments(host::SegmentCountBlock&) { return host::codecGoOn; }

i32 Supplier::onSegment(host::SegmentBlock&) { return host::codecGoOn; }

const u8* Supplier::rowInPlace(u32) const { return nullptr; }

i32 EventSupplier::raise(host::CodecEvent event, void* block) {
  return static_cast<i32>(callback_.callback(callback_.context, event, 0, block));
}

i32 EventSupplier::onHeader(host::ImageHeader& header) { return raise(host::eventHeader, &header); }

i32 EventSupplier::onCountSegments(host::SegmentCountBlock& count) {
  return raise(host::eventCountSegments, &count);
}

i32 EventSupplier::onSegment(host::SegmentBlock& segment) {
  return raise(host::eventSegment, &segment);
}

i32 EventSupplier::onRow(host::RowBlock& row) { return raise(host::eventRow, &row); }

i32 PictureSupplier::onHeader(host::ImageHeader& header) {
  const u64 rowBytes = u64{picture_.width} * picture_.bytesPerPixel;
  if (picture_.pixels == nullptr || picture_.height == 0 || picture_.stride < rowBytes ||
      u64{picture_.height - 1} * picture_.stride + rowBytes > picture_.bufferSize) {
    return codecFailed;
  }
  header.width = picture_.width;
  header.height = picture_.height;
  header.densityUnit = picture_.densityUnit;
  header.horizontalResolution = picture_.horizontalResolution;
  header.verticalResolution = picture_.verticalResolution;
  header.components = picture_.bytesPerPixel;
  return host::codecGoOn;
}

const u8* PictureSupplier::rowInPlace(u32 row) const {
  return picture_.pixels + std::size_t{row} * picture_.stride;
}

i32 PictureSupplier::onRow(host::RowBlock&) { return host::codecGoOn; }

}  // namespace klibjpg

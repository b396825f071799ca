#include "companions/klibjpg/receiver.h"

#include <algorithm>
#include <cstring>

namespace klibjpg {

using host::i32;
using host::u32;
using host::u64;
using host::u8;

u8* Receiver::placeFor(u32, u32) { return nullptr; }

i32 Receiver::onSegment(host::SegmentRecord&) { return host::codecGoOn; }

i32 EventReceiver::raise(host::CodecEvent event, void* block) {
  return static_cast<i32>(callback_.callback(callback_.context, event, 0, block));
}

i32 EventReceiver::onSegment(host::SegmentRecord& segment) {
  return raise(host::eventSegment, &segment);
}

i32 EventReceiver::onHeader(host::ImageHeaderWithExtra& header) {
  return raise(host::eventHeader, &header);
}

i32 EventReceiver::onRow(host::RowBlock& row) { return raise(host::eventRow, &row); }

i32 HeaderReceiver::onHeader(host::ImageHeaderWithExtra& header) {
  header_ = header;
  return host::codecHeaderOnly;
}

i32 HeaderReceiver::onRow(host::RowBlock&) { return host::codecGoOn; }

std::size_t PictureReceiver::roomIn(u32 row) const {
  if (row >= picture_.height) return 0;
  const u64 start = u64{row} * picture_.stride;
  if (start >= picture_.bufferSize) return 0;
  const u64 wanted = u64{picture_.width} * picture_.bytesPerPixel;
  return static_cast<std::size_t>(
      std::min({wanted, u64{picture_.stride}, picture_.bufferSize - start}));
}

u8* PictureReceiver::placeFor(u32 row, u32 byteCount) {
  if (roomIn(row) < byteCount) return nullptr;
  return picture_.pixels + std::size_t{row} * picture_.stride;
}

i32 PictureReceiver::onHeader(host::ImageHeaderWithExtra&) { return host::codecGoOn; }

i32 PictureReceiver::onRow(host::RowBlock& row) {
  if (row.bytesPerPixel != picture_.bytesPerPixel) return codecFailed;
  const std::size_t room = std::min(roomIn(row.row), std::size_t{row.byteCount});
  if (room == 0) return host::codecGoOn;
  u8* const place = picture_.pixels + std::size_t{row.row} * picture_.stride;
  if (place != row.pixels) std::memcpy(place, row.pixels, room);
  return host::codecGoOn;
}

}  // namespace klibjpg

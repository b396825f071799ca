#include "jpeg/decoder.h"

#include "host/kfioutil.h"
#include "platform/global_memory.h"

namespace jpeg {
namespace {

using host::RowBlock;
using host::u16;
using host::u32;
using host::u64;
using host::u8;

constexpr u16 rowOrdinary = 1;
constexpr u16 rowFirst = 5;
constexpr u16 rowFirstOfLaterPass = 69;
constexpr u16 rowLast = 2;

u16 rowFlags(const RowBlock& row, u64 passCount) noexcept {
  u16 flags = rowOrdinary;
  if (row.row == 0) flags = passCount > 1 ? rowFirstOfLaterPass : rowFirst;
  if (row.row == row.imageHeight - 1) flags = static_cast<u16>(flags + rowLast);
  return flags;
}

void freeBlock(HGLOBAL& block) noexcept {
  if (block != nullptr) GlobalFree(block);
  block = nullptr;
}

}  // namespace

Decoder::Decoder(host::ReadRequest& request, host::RowCallback* rowCallback,
                 host::FileDataRecord& fileData, property::SegmentCapture& capture) noexcept
    : capture_(capture) {
  context_.size = sizeof context_;
  context_.request = &request;
  context_.rowCallback = rowCallback;
  context_.fileData = &fileData;
}

host::CodecCallback Decoder::callback() noexcept { return {this, &decodeEvent}; }

void Decoder::freeScalingBlocks() noexcept {
  HGLOBAL blocks[] = {context_.columnMap, context_.spare, context_.rowBuffer};
  for (HGLOBAL& block : blocks) freeBlock(block);
  context_.columnMap = context_.spare = context_.rowBuffer = nullptr;
}

u32 Decoder::onEvent(u32 event, void* block) noexcept {
  if (block == nullptr) return host::codecGoOn;
  switch (event) {
    case host::eventHeader:
      beginPass(*static_cast<host::ImageHeader*>(block));
      return host::codecGoOn;
    case host::eventRow:
      return deliverRow(*static_cast<const RowBlock*>(block));
    case host::eventMarker:
    case host::eventSegment:
      capture_.capture(*static_cast<const host::SegmentRecord*>(block));
      return host::codecGoOn;
    default:
      return host::codecGoOn;
  }
}

// The first pass asks the codec for the target size, every later one tells the host what it gets.
void Decoder::beginPass(host::ImageHeader& header) noexcept {
  ++context_.passCount;
  host::ReadRequest& request = *context_.request;
  if (request.preview != host::previewByCodec) return;
  if (request.targetWidth == 0 || request.targetHeight == 0) return;  // full size, no rows
  if (context_.passCount == 1) {
    header.width = request.targetWidth;
    header.height = request.targetHeight;
  } else {
    request.targetWidth = header.width;
    request.targetHeight = header.height;
  }
}

u32 Decoder::deliverRow(const RowBlock& row) noexcept {
  const host::ReadRequest& request = *context_.request;
  if (request.preview == 0 || request.targetWidth == row.width) {
    return callHost(row, row.row, row.width, row.pixels);
  }
  if (request.targetWidth == 0 || request.targetHeight == 0) return host::codecGoOn;
  return deliverScaled(row);
}

u32 Decoder::callHost(const RowBlock& row, u32 index, u32 width, u8* pixels) noexcept {
  const bool fourComponents = row.bytesPerPixel == 4;
  return static_cast<u32>(context_.rowCallback(context_.request, 0, index, width, 1, &pixels,
                                               rowFlags(row, context_.passCount),
                                               fourComponents ? -2 : -1, fourComponents ? 15 : 7));
}

// Rows are dropped with the same ratio as columns, so the aspect ratio is kept.
u32 Decoder::deliverScaled(const RowBlock& row) noexcept {
  const host::ReadRequest& request = *context_.request;
  if (!prepareScaling({request.targetWidth, row.width, row.bytesPerPixel})) {
    return static_cast<u32>(host::codecNoRowBuffer);
  }
  const float ratio = static_cast<float>(row.width) / static_cast<float>(request.targetWidth);
  const float position = static_cast<float>(row.row) / ratio;
  if (!(static_cast<double>(position) < static_cast<double>(request.targetHeight))) {
    return host::codecGoOn;
  }
  auto* buffer = static_cast<u8*>(GlobalLock(context_.rowBuffer));
  const auto* columnMap = static_cast<const u32*>(GlobalLock(context_.columnMap));
  ShrinkImage(buffer, row.pixels, 0, row.width, row.bytesPerPixel, columnMap, request.targetWidth);
  const u32 answer = callHost(row, static_cast<u32>(position), request.targetWidth, buffer);
  GlobalUnlock(context_.columnMap);
  GlobalUnlock(context_.rowBuffer);
  return answer;
}

bool Decoder::prepareScaling(const Scale& scale) noexcept {
  if (scalingRefused_) return false;
  if (context_.rowBuffer != nullptr && scale == scale_) return true;
  freeScalingBlocks();
  scale_ = scale;
  scalingRefused_ = !allocateScaling(scale);
  return !scalingRefused_;
}

bool Decoder::allocateScaling(const Scale& scale) noexcept {
  const auto allocate = [](u64 size) {
    return GlobalAlloc(platform::fixedZeroed, static_cast<SIZE_T>(size));
  };
  context_.columnMap = allocate(u64{scale.targetWidth} * sizeof(u32));
  if (context_.columnMap == nullptr) return false;
  context_.spare = allocate(u64{context_.request->targetHeight} * sizeof(u32));
  if (context_.spare == nullptr) return false;
  context_.rowBuffer = allocate(u64{scale.targetWidth} * scale.bytesPerPixel);
  if (context_.rowBuffer == nullptr) return false;

  auto* columns = static_cast<u32*>(GlobalLock(context_.columnMap));
  const double step = static_cast<double>(scale.rowWidth) / scale.targetWidth;
  for (u32 column = 0; column < scale.targetWidth; ++column) {
    const double position = column * step + 0.5;
    columns[column] = static_cast<u32>(position);
  }
  GlobalUnlock(context_.columnMap);
  return true;
}

u32 decodeEvent(void* context, u32 event, u64, void* block) noexcept {
  return static_cast<Decoder*>(context)->onEvent(event, block);
}

}  // namespace jpeg

#include "jpeg/write_options.h"

#include "frame/save_options.h"

namespace jpeg {
namespace {

constexpr host::u32 jpegTailKind = 62;

}  // namespace

host::JpegTail* jpegTailOf(void* lockedRecord, std::size_t size) noexcept {
  if (lockedRecord == nullptr || size < sizeof(host::JpegFileData)) return nullptr;
  host::JpegTail& tail = static_cast<host::JpegFileData*>(lockedRecord)->tail;
  return tail.tag == host::jpegTailTag ? &tail : nullptr;
}

host::JpegTail* addJpegTail(HGLOBAL fileData, platform::LockedGlobal& record) noexcept {
  record.unlock();
  constexpr std::size_t size = sizeof(host::JpegFileData);
  if (GlobalReAlloc(fileData, size, platform::movableZeroed) == nullptr) return nullptr;
  record = platform::LockedGlobal(fileData);
  auto* data = record.as<host::JpegFileData>();
  if (data == nullptr) return nullptr;
  data->record.tailKind = jpegTailKind;
  data->tail.tag = host::jpegTailTag;
  data->tail.size = host::tailSizeWord;
  return &data->tail;
}

host::WriteOptions chooseWriteOptions(host::JpegTail* tail) noexcept {
  const frame::SaveOptions settings = frame::saveOptions();
  host::WriteOptions options = {};
  options.size = sizeof options;
  if (tail != nullptr) {
    if (tail->quality > bestQuality) tail->quality = settings.quality;
    options.quality = tail->quality;
    options.mode = tail->mode;
    options.sample = frame::servedSample(tail->sample);
    options.jfif = tail->jfif;
  } else {
    options.quality = settings.quality;
    options.mode = settings.mode;
    options.sample = frame::servedSample(settings.sample);
    options.jfif = settings.jfif;
  }
  return options;
}

}  // namespace jpeg

#include "jpeg/write_options.h"

#include "frame/save_options.h"

namespace jpeg {
namespace {

constexpr host::u32 bestQuality = 100;

}  // namespace

host::JpegTail* jpegTailOf(void* lockedRecord, std::size_t size) noexcept {
  if (lockedRecord == nullptr || size < sizeof(host::JpegFileData)) return nullptr;
  host::JpegTail& tail = static_cast<host::JpegFileData*>(lockedRecord)->tail;
  return tail.tag == host::jpegTailTag ? &tail : nullptr;
}

host::WriteOptions chooseWriteOptions(host::JpegTail* tail) noexcept {
  const frame::SaveOptions& settings = frame::saveOptions();
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

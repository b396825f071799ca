#include "jpeg/save_options_values.h"

#include <algorithm>

#include "frame/save_options.h"
#include "jpeg/write_options.h"

namespace jpeg {
namespace {

using host::i32;
using host::i64;
using host::u32;

bool isTrueColour(const platform::LockedGlobal& record) noexcept {
  const auto* common = record.as<host::FileDataRecord>();
  return common != nullptr && common->colourType == host::colourTrue;
}

// The JFIF choice of an image is whether its file had the header. The tail's own JFIF word, which
// a writer goes by, is only written here: kept.
SaveOptionValues valuesOf(const host::JpegTail& tail) noexcept {
  const bool jfif = (tail.markerFlags & host::markerJfif) != 0;
  return {tail.quality, tail.mode, static_cast<i32>(tail.sample), jfif ? 1U : 0U};
}

SaveOptionValues valuesOf(const frame::SaveOptions settings) noexcept {
  return {settings.quality, settings.mode, static_cast<i32>(settings.sample),
          settings.jfif != 0 ? 1U : 0U};
}

}  // namespace

SaveOptionValues initialSaveOptions(const platform::LockedGlobal& record) noexcept {
  const frame::SaveOptions settings = frame::saveOptions();
  const host::JpegTail* tail = jpegTailOf(record.address(), record.size());
  SaveOptionValues values = tail != nullptr ? valuesOf(*tail) : valuesOf(settings);
  values.quality = std::min(values.quality, bestQuality);
  if (!isTrueColour(record)) {
    values.sample = sampleNotApplicable;
  } else if (static_cast<u32>(values.sample) >= frame::sampleChoices) {
    values.sample = static_cast<i32>(settings.sample);
  }
  return values;
}

void keepAsSettings(const SaveOptionValues& values) noexcept {
  frame::SaveOptions settings = frame::saveOptions();
  settings.mode = values.mode;
  settings.quality = values.quality;
  if (values.sample != sampleNotApplicable) settings.sample = static_cast<u32>(values.sample);
  settings.jfif = values.jfif;
  frame::setSaveOptions(settings);
  frame::storeSaveOptions();
}

bool storeInRecord(HGLOBAL fileData, platform::LockedGlobal& record,
                   const SaveOptionValues& values) noexcept {
  host::JpegTail* tail = jpegTailOf(record.address(), record.size());
  if (tail == nullptr) tail = addJpegTail(fileData, record);
  if (tail != nullptr) {
    tail->quality = values.quality;
    tail->mode = values.mode;
    tail->sample = static_cast<u32>(values.sample);
    tail->jfif = values.jfif;
  }
  record.unlock();
  return tail != nullptr;
}

TypedQuality typedQuality(u32 number, bool valid) noexcept {
  if (!valid) return {0, true};
  if (number > bestQuality) return {bestQuality, true};
  return {number, false};
}

u32 slidQuality(u32 quality, SliderMove move, u32 position) noexcept {
  i64 value = quality;
  switch (move) {
    case SliderMove::lineLeft:
      value -= 1;
      break;
    case SliderMove::lineRight:
      value += 1;
      break;
    case SliderMove::pageLeft:
      value -= qualityPage;
      break;
    case SliderMove::pageRight:
      value += qualityPage;
      break;
    case SliderMove::toPosition:
      value = position;
      break;
    case SliderMove::home:
      value = 0;
      break;
    case SliderMove::end:
      value = bestQuality;
      break;
    case SliderMove::none:
      break;
  }
  return static_cast<u32>(std::clamp<i64>(value, 0, bestQuality));
}

}  // namespace jpeg

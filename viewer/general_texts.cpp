#include "viewer/general_texts.h"

#include "frame/resource_text.h"
#include "frame/source_path.h"
#include "host/mpo.h"
#include "platform/global_memory.h"
#include "viewer/wide_text.h"

namespace viewer {
namespace {

using host::FileDataRecord;
using host::JpegTail;
using host::MpoList;
using host::u32;

enum TextId : UINT {
  textJpeg = 770,
  textBaseline = 781,
  textProgressive = 782,
  textFirstSampling = 785,
  textLastSampling = 788,
  textMpo = 801,
  textSize = 802,
  textBits = 803,
  textColour = 804,
  textGrey = 805,
  textFourComponents = 806,
  textResolution = 807,
  textPerInch = 808,
  textPerCentimetre = 809,
  textNoSampling = 810,
  textQuality = 811,
  textYes = 812,
  textNo = 813,
  textCount = 814,
  textFirstKind = 820,
};

enum DensityUnit : u32 { densityPerInch = 1, densityPerCentimetre = 2 };

// The locked record, and the tail of its format.
struct Described {
  HMODULE resources;
  void* address;
  const FileDataRecord* record;
  const JpegTail* jpeg;
  const MpoList* mpo;
};

Described describedOf(HMODULE resources, const platform::LockedGlobal& lock) noexcept {
  Described file = {resources, lock.address(), lock.as<FileDataRecord>(), nullptr, nullptr};
  const auto* jpeg = lock.as<host::JpegFileData>();
  if (jpeg != nullptr && jpeg->tail.tag == host::jpegTailTag) file.jpeg = &jpeg->tail;
  const auto* mpo = lock.as<host::MpoFileData>();
  if (mpo != nullptr && mpo->tag == host::mpoTailTag) file.mpo = &mpo->list;
  return file;
}

std::string load(const Described& file, UINT id) { return frame::resourceText(file.resources, id); }

template <typename... Numbers>
std::string print(const Described& file, UINT format, Numbers... numbers) {
  char text[1024] = {};  // all that wsprintf writes
  wsprintfA(text, load(file, format).c_str(), numbers...);
  return text;
}

std::wstring fileName(const Described& file) {
  const frame::SourcePath path = frame::sourcePathOfLocked(file.address);
  if (path.wide != nullptr) return fileNameOf(path.wide);
  return path.ansi != nullptr ? fileNameOf(wideText(path.ansi)) : std::wstring();
}

std::string formatText(const Described& file) {
  if (file.mpo != nullptr) return load(file, textMpo);
  return file.jpeg != nullptr ? load(file, textJpeg) : std::string();
}

std::string sizeText(const Described& file) {
  return print(file, textSize, u32{file.record->width}, u32{file.record->height});
}

std::string bitsText(const Described& file) {
  return print(file, textBits, u32{file.record->bitsPerPixel});
}

std::string colourText(const Described& file) {
  switch (file.record->colourType) {
    case host::colourTrue:
      return load(file, textColour);
    case host::colourGrey:
      return load(file, textGrey);
    case host::colourFourComponents:
      return load(file, textFourComponents);
    default:
      return {};
  }
}

// Only the record of a multi-picture file says what the resolution counts.
std::string resolutionText(const Described& file) {
  UINT format = textResolution;
  const u32 unit = file.mpo != nullptr ? u32{file.mpo->firstImage.densityUnit} : 0;
  if (unit == densityPerInch) format = textPerInch;
  if (unit == densityPerCentimetre) format = textPerCentimetre;
  return print(file, format, u32{file.record->horizontalResolution},
               u32{file.record->verticalResolution});
}

std::string modeText(const Described& file) {
  bool progressive = false;
  if (file.jpeg != nullptr) {
    progressive = file.jpeg->mode == 1;
  } else if (file.mpo != nullptr) {
    progressive = (file.mpo->firstImage.markerFlags & host::markerProgressive) != 0;
  } else {
    return {};
  }
  return load(file, progressive ? textProgressive : textBaseline);
}

std::string samplingText(const Described& file) {
  if (file.record->colourType == host::colourGrey) return load(file, textNoSampling);
  if (file.jpeg == nullptr || file.jpeg->sample > textLastSampling - textFirstSampling) return {};
  return load(file, textFirstSampling + file.jpeg->sample);
}

std::string qualityText(const Described& file) {
  return file.jpeg != nullptr ? print(file, textQuality, u32{file.jpeg->quality}) : std::string();
}

std::string jfifText(const Described& file) {
  bool jfif = false;
  if (file.jpeg != nullptr) {
    jfif = file.jpeg->jfif != 0;
  } else if (file.mpo != nullptr) {
    jfif = (file.mpo->firstImage.markerFlags & host::markerJfif) != 0;
  } else {
    return {};
  }
  return load(file, jfif ? textYes : textNo);
}

std::string imageCountText(const Described& file) {
  return file.mpo != nullptr ? print(file, textCount, u32{file.mpo->imageCount}) : std::string();
}

std::string mpoKindText(const Described& file) {
  if (file.mpo == nullptr) return {};
  const u32 kind = file.mpo->kind;
  return load(file, textFirstKind + (kind <= host::mpoBaselinePrimary ? kind : host::mpoOther));
}

struct TextRow {
  GeneralControl control;
  std::string (*text)(const Described&);
};

constexpr TextRow rows[] = {
    {controlFormat, formatText},
    {controlSize, sizeText},
    {controlBits, bitsText},
    {controlColour, colourText},
    {controlResolution, resolutionText},
    {controlMode, modeText},
    {controlSampling, samplingText},
    {controlQuality, qualityText},
    {controlJfif, jfifText},
    {controlImageCount, imageCountText},
    {controlMpoKind, mpoKindText},
};

}  // namespace

std::vector<GeneralText> generalTexts(HMODULE resources, HGLOBAL fileData) {
  const platform::LockedGlobal lock(fileData);
  const Described file = describedOf(resources, lock);
  if (file.record == nullptr) return {};
  std::vector<GeneralText> texts = {{controlFileName, fileName(file)}};
  for (const TextRow& row : rows) texts.push_back({row.control, wideText(row.text(file))});
  return texts;
}

std::wstring fileNameOf(const std::wstring& path) {
  const std::size_t separator = path.find_last_of(L"\\/");
  return separator == std::wstring::npos ? path : path.substr(separator + 1);
}

}  // namespace viewer

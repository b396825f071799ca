#include "fiohost/picture_info.h"

#include <algorithm>
#include <array>

#include "fiohost/codec_scan.h"

namespace fiohost {
namespace {

template <std::size_t count>
const char* nameIn(const std::array<const char*, count>& names, std::size_t index) {
  return index < count ? names[index] : nullptr;
}

void takeCommon(PictureInfo& info, const host::FileDataRecord& record) {
  info.width = record.width;
  info.height = record.height;
  info.bitsPerPixel = record.bitsPerPixel;
  info.components = record.bitsPerPixel / 8;
  info.horizontalResolution = record.horizontalResolution;
  info.verticalResolution = record.verticalResolution;
}

void takeHeader(PictureInfo& info, const HeaderFacts& facts) {
  info.densityUnit = facts.header.densityUnit;
  info.progressive = facts.extra.progressive != 0 || facts.extra.mode == host::modeProgressive;
  info.jfif = facts.extra.jfif != 0;
  info.adobe = facts.adobe;
  if (info.components > 1) info.sampling = facts.extra.sample;
}

void takeTail(PictureInfo& info, const host::JpegTail& tail) {
  if (tail.tag != host::jpegTailTag) return;
  info.progressive = tail.mode == host::modeProgressive;
  info.jfif = tail.jfif != 0;
  if (info.components > 1) info.sampling = tail.sample;
}

void takeImages(PictureInfo& info, const host::MpoFileData& mpo) {
  info.mpoKind = mpoKindName(mpo.list.kind);
  const host::u32 count = std::min(mpo.list.imageCount, host::mpoMostImages);
  for (host::u32 i = 0; i < count && mpo.list.entries != 0; ++i) {
    const host::MpoEntry& entry = mpo.entries[i];
    // The list keeps the first image's figures in its header.
    const host::MpoImageInfo& image = i == 0 ? mpo.list.firstImage : entry.image;
    info.images.push_back(
        {image.width, image.height, entry.size, mpoImageKind(entry), entry.representative != 0});
  }
}

}  // namespace

PictureInfo gatherInfo(const Session& session, const SourceFile& file, const Described& described) {
  PictureInfo info;
  info.file = file.name();
  info.byteCount = file.size();
  info.family = described.family;
  info.note = described.note;
  takeCommon(info, described.fileData.common());
  if (const std::optional<HeaderFacts> facts = scanHeader(session.codec, file)) {
    takeHeader(info, *facts);
  }
  takeTail(info, described.fileData.jpegTail());
  info.thumbnail = findThumbnail(session, file);
  if (const auto mpo = described.fileData.mpo()) takeImages(info, *mpo);
  return info;
}

const char* colourName(host::u32 components) {
  static constexpr std::array<const char*, 5> names = {nullptr, "grey", nullptr, "colour", "CMYK"};
  return nameIn(names, components);
}

const char* densityUnitName(host::u32 unit) {
  static constexpr std::array<const char*, 3> names = {"none", "inch", "centimetre"};
  return nameIn(names, unit);
}

const char* samplingName(host::u32 sampling) {
  static constexpr std::array<const char*, 4> names = {"4:4:4", "4:2:2", "4:2:0", "4:1:1"};
  return nameIn(names, sampling);
}

const char* mpoKindName(host::u32 kind) {
  static constexpr std::array<const char*, 7> names = {"other",
                                                       "large thumbnail (VGA)",
                                                       "large thumbnail (full HD)",
                                                       "panorama",
                                                       "disparity (stereo)",
                                                       "multi-angle",
                                                       "baseline primary image"};
  const char* name = nameIn(names, kind);
  return name != nullptr ? name : names[0];
}

// MP type codes: class and sub-code (CIPA DC-007, 5.2.3.3.1).
const char* mpoImageKind(const host::MpoEntry& entry) {
  struct Row {
    host::u32 typeClass;
    host::u32 subCode;
    const char* name;
  };
  static constexpr std::array rows = {
      Row{1, 1, "large thumbnail (VGA)"}, Row{1, 2, "large thumbnail (full HD)"},
      Row{2, 1, "panorama frame"},        Row{2, 2, "disparity (stereo)"},
      Row{2, 3, "multi-angle"},           Row{3, 0, "baseline primary image"}};
  const auto found = std::find_if(rows.begin(), rows.end(), [&entry](const Row& row) {
    return row.typeClass == entry.typeClass && row.subCode == entry.typeSubCode;
  });
  return found != rows.end() ? found->name : "other";
}

}  // namespace fiohost

#include "fiohost/picture_words.h"

#include <cstdio>

namespace fiohost {
namespace {

std::string sizeText(host::u32 width, host::u32 height) {
  return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

double megapixels(const PictureInfo& info) {
  return static_cast<double>(info.width) * info.height / 1e6;
}

std::string megapixelText(const PictureInfo& info) {
  if (megapixels(info) < 0.01) return "under 0.01 megapixels";
  char text[32];
  std::snprintf(text, sizeof text, "%.*f megapixels", megapixels(info) < 1 ? 2 : 1,
                megapixels(info));
  return text;
}

std::string resolutionText(const PictureInfo& info) {
  const std::string pair =
      std::to_string(info.horizontalResolution) + " x " + std::to_string(info.verticalResolution);
  if (!info.densityUnit) return pair + " (unit unknown)";
  if (*info.densityUnit == 0) return pair + " (no unit, only the pixels' shape)";
  const char* unit = densityUnitName(*info.densityUnit);
  return unit != nullptr ? pair + " pixels per " + unit : pair + " (unknown unit)";
}

std::string yesNo(const std::optional<bool>& fact) {
  if (!fact) return "unknown";
  return *fact ? "yes" : "no";
}

std::string samplingText(const PictureInfo& info) {
  if (info.components == 1) return "none (grey)";
  const char* name = info.sampling ? samplingName(*info.sampling) : nullptr;
  return name != nullptr ? name : "unknown";
}

std::string thumbnailText(const PictureInfo& info) {
  if (!info.thumbnail) return "none";
  return sizeText(info.thumbnail->width, info.thumbnail->height) + ", " +
         std::to_string(info.thumbnail->byteCount) + " bytes";
}

std::string encodingText(const PictureInfo& info) {
  if (!info.progressive) return "unknown";
  return *info.progressive ? "progressive" : "baseline";
}

std::string imagesInWords(const PictureInfo& info) {
  std::string text = factLine("Kind", info.mpoKind);
  text += factLine("Images", std::to_string(info.images.size()));
  for (std::size_t i = 0; i < info.images.size(); ++i) {
    const MpoImage& image = info.images[i];
    std::string line = sizeText(image.width, image.height) + ", " + image.kind;
    if (image.byteCount != 0) line += ", " + std::to_string(image.byteCount) + " bytes";
    if (image.representative) line += ", representative";
    text += factLine("  Image " + std::to_string(i + 1), line);
  }
  return text;
}

template <typename T>
Json known(const std::optional<T>& fact) {
  return fact ? Json(*fact) : Json(nullptr);
}

Json named(const char* name) { return name != nullptr ? Json(name) : Json(nullptr); }

Json imagesInJson(const PictureInfo& info) {
  Json images = Json::array();
  for (const MpoImage& image : info.images) {
    images.push_back({{"width", image.width},
                      {"height", image.height},
                      {"bytes", image.byteCount != 0 ? Json(image.byteCount) : Json(nullptr)},
                      {"kind", image.kind},
                      {"representative", image.representative}});
  }
  return images;
}

Json thumbnailInJson(const PictureInfo& info) {
  if (!info.thumbnail) return nullptr;
  return {{"width", info.thumbnail->width},
          {"height", info.thumbnail->height},
          {"components", info.thumbnail->components},
          {"bytes", info.thumbnail->byteCount}};
}

Json resolutionInJson(const PictureInfo& info) {
  return {{"horizontal", info.horizontalResolution},
          {"vertical", info.verticalResolution},
          {"unit", info.densityUnit ? named(densityUnitName(*info.densityUnit)) : nullptr}};
}

}  // namespace

std::string factLine(const std::string& name, const std::string& value) {
  constexpr std::size_t nameWidth = 14;
  std::string line = "  " + name;
  line.append(name.size() < nameWidth ? nameWidth - name.size() : 1, ' ');
  return line + value + "\n";
}

std::string describeInWords(const PictureInfo& info) {
  const char* colour = colourName(info.components);
  std::string text = info.file + "\n";
  text += factLine("Format", familyName(info.family));
  text += factLine("File size", std::to_string(info.byteCount) + " bytes");
  text += factLine("Size", sizeText(info.width, info.height) + " (" + megapixelText(info) + ")");
  text += factLine("Bits", std::to_string(info.bitsPerPixel) + " per pixel, 8 per component");
  text += factLine("Colour", std::string(colour != nullptr ? colour : "unknown") + ", " +
                                 std::to_string(info.components) +
                                 (info.components == 1 ? " component" : " components"));
  text += factLine("Resolution", resolutionText(info));
  text += factLine("Encoding", encodingText(info));
  text += factLine("Sampling", samplingText(info));
  text += factLine("JFIF header", yesNo(info.jfif));
  text += factLine("Adobe marker", yesNo(info.adobe));
  text += factLine("Thumbnail", thumbnailText(info));
  if (info.family == Family::mpo) text += imagesInWords(info);
  if (!info.note.empty()) text += factLine("Note", info.note);
  return text;
}

Json describeInJson(const PictureInfo& info) {
  Json object = {{"file", info.file},
                 {"format", familyName(info.family)},
                 {"fileSize", info.byteCount},
                 {"width", info.width},
                 {"height", info.height},
                 {"megapixels", megapixels(info)},
                 {"bitsPerPixel", info.bitsPerPixel},
                 {"components", info.components},
                 {"colour", named(colourName(info.components))},
                 {"resolution", resolutionInJson(info)},
                 {"encoding", info.progressive ? Json(encodingText(info)) : Json(nullptr)},
                 {"sampling", info.sampling ? named(samplingName(*info.sampling)) : Json(nullptr)},
                 {"jfif", known(info.jfif)},
                 {"adobe", known(info.adobe)},
                 {"thumbnail", thumbnailInJson(info)},
                 {"note", info.note.empty() ? Json(nullptr) : Json(info.note)}};
  if (info.family == Family::mpo) {
    object["kind"] = info.mpoKind;
    object["images"] = imagesInJson(info);
  }
  return object;
}

}  // namespace fiohost

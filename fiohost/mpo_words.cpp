#include "fiohost/mpo_words.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <optional>

#include "fiohost/mpo_attributes.h"
#include "fiohost/picture_info.h"
#include "fiohost/picture_words.h"

namespace fiohost {
namespace {

using host::MpoAttributes;
using host::MpoRational;

using host::u32;

// Reading gives the horizontal overlap without its flag; its denominator tells that it is there.
bool isPresent(const MpoAttribute& attribute, const host::MpoEntry& entry) {
  if (attribute.presence == host::presencePanOverlapHorizontal) {
    return entry.attributes.panOverlapHorizontal.denominator != 0;
  }
  return (entry.flags & attribute.presence) != 0;
}

std::string wordText(u32 word, bool isSigned) {
  return isSigned ? std::to_string(static_cast<host::i32>(word)) : std::to_string(word);
}

std::string fractionText(MpoRational ratio, bool isSigned) {
  const std::optional<double> value = valueOf(ratio, isSigned);
  char text[48] = "unknown";
  if (value) std::snprintf(text, sizeof text, "%.6g", *value);
  return wordText(ratio.numerator, isSigned) + "/" + wordText(ratio.denominator, isSigned) + " (" +
         text + ")";
}

Json wordInJson(u32 word, bool isSigned) {
  return isSigned ? Json(static_cast<host::i32>(word)) : Json(word);
}

Json fractionInJson(MpoRational ratio, bool isSigned) {
  const std::optional<double> value = valueOf(ratio, isSigned);
  return {{"numerator", wordInJson(ratio.numerator, isSigned)},
          {"denominator", wordInJson(ratio.denominator, isSigned)},
          {"value", value ? Json(*value) : Json(nullptr)}};
}

std::string attributeLine(const std::string& name, const std::string& value) {
  constexpr std::size_t nameWidth = 22;
  std::string line = "    " + name;
  line.resize(4 + nameWidth, ' ');
  return line + value + "\n";
}

// A packed record may lie anywhere, but a pointer to a member expects it at an even place.
struct alignas(u32) Attributes {
  explicit Attributes(const host::MpoEntry& entry) : values(entry.attributes) {}
  MpoAttributes values;
};

std::string attributesInWords(const host::MpoEntry& entry) {
  const Attributes attributes(entry);
  std::string text;
  for (const MpoAttribute& attribute : mpoAttributes()) {
    if (!isPresent(attribute, entry)) continue;
    text += attributeLine(attribute.words, attribute.number != nullptr
                                               ? std::to_string(attributes.values.*attribute.number)
                                               : fractionText(attributes.values.*attribute.ratio,
                                                              attribute.isSigned));
  }
  return text;
}

Json attributesInJson(const host::MpoEntry& entry) {
  const Attributes attributes(entry);
  Json object = Json::object();
  for (const MpoAttribute& attribute : mpoAttributes()) {
    if (!isPresent(attribute, entry)) continue;
    if (attribute.number != nullptr) {
      object[attribute.key] = u32{attributes.values.*attribute.number};
    } else {
      object[attribute.key] =
          fractionInJson(attributes.values.*attribute.ratio, attribute.isSigned);
    }
  }
  return object;
}

// The 33 bytes end with a NUL (CIPA DC-007, 5.2.3.4).
std::optional<std::string> uniqueIdOf(const host::MpoEntry& entry) {
  if ((entry.flags & host::presenceUniqueId) == 0) return std::nullopt;
  return std::string(std::begin(entry.uid),
                     std::find(std::begin(entry.uid), std::end(entry.uid), '\0'));
}

// The images that this one names, by their numbers. An independent image names its dependents by
// their places in the array, where place 0 is no dependent; a dependent image names others by their
// numbers in the file.
std::vector<host::i64> dependentsOf(const host::MpoEntry& entry) {
  const host::i64 first = entry.dependentChild != 0 ? 0 : 1;
  std::vector<host::i64> numbers;
  for (const host::i32 dependent : {entry.dependent1, entry.dependent2}) {
    if (dependent > 0) numbers.push_back(dependent + first);
  }
  return numbers;
}

std::string rolesInWords(const host::MpoEntry& entry) {
  std::string text;
  if (entry.representative != 0) text += ", representative";
  if (entry.dependentParent != 0) text += ", parent";
  if (entry.dependentChild != 0) text += ", child";
  const char* before = ", dependent images ";
  for (const host::i64 number : dependentsOf(entry)) {
    text += before + std::to_string(number);
    before = " and ";
  }
  return text;
}

std::string placeInWords(const ListedImage& image) {
  const std::string offset = "offset " + std::to_string(image.entry.fileOffset);
  if (image.entry.size == 0) return offset + ", length not told";
  return offset + ", " + std::to_string(image.entry.size) + " bytes" +
         (image.insideFile ? "" : ", not wholly in this file");
}

std::string imageInWords(const ListedImage& image) {
  const host::MpoEntry& entry = image.entry;
  std::string text = std::to_string(entry.image.width) + " x " +
                     std::to_string(entry.image.height) + " pixels, " + mpoImageKind(entry) +
                     rolesInWords(entry);
  text = factLine("Image " + std::to_string(image.number), text);
  text += attributeLine("Place", placeInWords(image));
  if (entry.imageNumber >= 0) {
    text += attributeLine("Individual number", std::to_string(host::i64{entry.imageNumber} + 1));
  }
  if (const auto id = uniqueIdOf(entry)) text += attributeLine("Unique ID", *id);
  return text + attributesInWords(entry);
}

Json imageInJson(const ListedImage& image) {
  const host::MpoEntry& entry = image.entry;
  const bool numbered = entry.imageNumber >= 0;
  const std::optional<std::string> uniqueId = uniqueIdOf(entry);
  return {{"number", image.number},
          {"width", host::u32{entry.image.width}},
          {"height", host::u32{entry.image.height}},
          {"offset", host::u32{entry.fileOffset}},
          {"bytes", host::u32{entry.size}},
          {"insideFile", image.insideFile},
          {"class", mpoImageKind(entry)},
          {"representative", entry.representative != 0},
          {"parent", entry.dependentParent != 0},
          {"child", entry.dependentChild != 0},
          {"dependents", dependentsOf(entry)},
          {"individualNumber", numbered ? Json(host::i64{entry.imageNumber} + 1) : Json(nullptr)},
          {"uniqueId", uniqueId ? Json(*uniqueId) : Json(nullptr)},
          {"attributes", attributesInJson(entry)}};
}

}  // namespace

std::string listInWords(const std::string& name, const MpoFile& file) {
  std::string text = name + "\n";
  text += factLine("Kind", mpoKindName(file.list.kind));
  text += factLine("Images", std::to_string(file.images.size()));
  text += factLine("Frames", std::to_string(file.list.totalFrames));
  for (const ListedImage& image : file.images) text += imageInWords(image);
  return text;
}

Json listInJson(const std::string& name, const MpoFile& file) {
  Json images = Json::array();
  for (const ListedImage& image : file.images) images.push_back(imageInJson(image));
  return {{"file", name},
          {"kind", mpoKindName(file.list.kind)},
          {"frames", host::u32{file.list.totalFrames}},
          {"images", images}};
}

}  // namespace fiohost

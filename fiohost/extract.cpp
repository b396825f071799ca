#include "fiohost/extract.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "fiohost/failure.h"
#include "fiohost/thumbnail.h"

namespace fiohost {
namespace {

using Block = std::vector<std::uint8_t>;
using Properties = std::vector<Property>;

constexpr std::size_t exifIdentifier = 6;
constexpr std::size_t extendedXmpHead = 40;
constexpr std::size_t guidLength = 32;
constexpr std::string_view iccIdentifier{"ICC_PROFILE\0", 12};
constexpr std::size_t iccHead = 14;  // identifier, chunk number, chunk count

bool beginsWith(const Block& bytes, std::string_view text) {
  return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

// A packet that continues the main one begins with the GUID of 32 hexadecimal digits.
bool isExtendedXmp(const Block& packet) {
  return packet.size() >= extendedXmpHead &&
         std::all_of(packet.begin(), packet.begin() + guidLength,
                     [](std::uint8_t byte) { return std::isxdigit(byte) != 0; });
}

Block xmpOf(const Properties& properties) {
  for (const Property& property : properties) {
    if (property.group == PropertyGroup::xmp && !isExtendedXmp(property.value)) {
      return property.value;
    }
  }
  return {};
}

// Chunks carry their numbers in the raw segments only (ICC.1, annex B.4); without those they are
// joined in file order.
Block iccOf(const Properties& properties) {
  std::vector<Block> chunks;
  for (const Property& property : properties) {
    const bool raw = property.group == PropertyGroup::segment &&
                     beginsWith(property.value, iccIdentifier) && property.value.size() > iccHead;
    if (raw) chunks.push_back(property.value);
  }
  std::stable_sort(chunks.begin(), chunks.end(), [](const Block& first, const Block& second) {
    return first[iccIdentifier.size()] < second[iccIdentifier.size()];
  });
  Block profile;
  for (const Block& chunk : chunks) {
    profile.insert(profile.end(), chunk.begin() + iccHead, chunk.end());
  }
  if (!profile.empty()) return profile;
  for (const Property& property : properties) {
    if (property.group != PropertyGroup::icc) continue;
    profile.insert(profile.end(), property.value.begin(), property.value.end());
  }
  return profile;
}

Block exifOf(const Properties& properties) {
  for (const Property& property : properties) {
    if (property.id != host::fieldExifSegment || property.value.size() < exifIdentifier) continue;
    return {property.value.begin() + exifIdentifier, property.value.end()};
  }
  return {};
}

Block heapOf(const Properties& properties) {
  for (const Property& property : properties) {
    if (property.id == host::fieldHeap) return property.value;
  }
  return {};
}

}  // namespace

const std::vector<std::string>& extractNames() {
  static const std::vector<std::string> names = {"xmp", "icc", "thumbnail", "exif", "heap"};
  return names;
}

Block extractBlock(const std::string& name, const Session& session, const SourceFile& file,
                   const Properties& properties) {
  Block block;
  if (name == "xmp") block = xmpOf(properties);
  if (name == "icc") block = iccOf(properties);
  if (name == "thumbnail") block = readThumbnailBytes(session, file);
  if (name == "exif") block = exifOf(properties);
  if (name == "heap") block = heapOf(properties);
  if (block.empty()) throw Failure("the file has no " + name + " block", "");
  return block;
}

}  // namespace fiohost

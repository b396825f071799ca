#include "fiohost/strip/iptc_places.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/byte_reader.h"

namespace fiohost {
namespace {

using std::uint8_t;
using namespace std::string_view_literals;

constexpr uint8_t tagMarker = 0x1C;
constexpr uint8_t applicationRecord = 2;
constexpr std::size_t datasetHead = 5;
constexpr std::size_t longestLength = 32767;  // above, the length word tells of a longer one
constexpr auto datasetResource = "8BIM\x04\x04"sv;

// Content location code and name, city, sublocation, province or state, country code and name.
constexpr std::array<uint8_t, 7> places = {26, 27, 90, 92, 95, 100, 101};

bool namesPlace(std::span<const uint8_t> dataset) {
  return dataset[1] == applicationRecord &&
         std::find(places.begin(), places.end(), dataset[2]) != places.end();
}

}  // namespace

std::uint64_t blankIptcPlaces(std::span<uint8_t> datasets) {
  const platform::ByteReader reader(datasets, platform::ByteOrder::big);
  std::size_t from = 0;
  std::size_t to = 0;
  while (reader.u8(from) == tagMarker) {
    const std::size_t length = reader.u16(from + 3).value_or(0xFFFF);
    if (length > longestLength || !reader.contains(from, datasetHead + length)) break;
    const auto dataset = datasets.subspan(from, datasetHead + length);
    from += dataset.size();
    if (namesPlace(dataset)) continue;
    std::copy(dataset.begin(), dataset.end(), datasets.begin() + static_cast<std::ptrdiff_t>(to));
    to += dataset.size();
  }
  const std::size_t removed = from - to;
  const auto rest = datasets.subspan(from);
  std::copy(rest.begin(), rest.end(), datasets.begin() + static_cast<std::ptrdiff_t>(to));
  std::fill(datasets.end() - static_cast<std::ptrdiff_t>(removed), datasets.end(), uint8_t{0});
  return removed;
}

std::uint64_t blankIptcResources(std::span<uint8_t> block) {
  const platform::ByteReader reader(block, platform::ByteOrder::big);
  std::uint64_t removed = 0;
  auto found = block.begin();
  const auto next = [&] {
    found = std::search(found, block.end(), datasetResource.begin(), datasetResource.end());
    return found != block.end();
  };
  for (; next(); ++found) {
    const auto name = static_cast<std::size_t>(found - block.begin()) + datasetResource.size();
    const std::size_t nameSize = std::size_t{1} + reader.u8(name).value_or(0);
    const std::size_t lengthAt = name + nameSize + nameSize % 2;
    const auto length = reader.u32(lengthAt);
    if (!length || !reader.contains(lengthAt + 4, *length)) continue;
    removed += blankIptcPlaces(block.subspan(lengthAt + 4, *length));
  }
  return removed;
}

}  // namespace fiohost

#include "fiohost/view/dib.h"

#include <limits>
#include <new>

namespace fiohost::view {
namespace {

constexpr std::size_t headerSize = 40;

void put(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes[at++] = static_cast<std::uint8_t>(value >> (8 * i));
}

void putHeader(std::vector<std::uint8_t>& bytes, const Extent& size) {
  put(bytes, 0, headerSize, 4);
  put(bytes, 4, static_cast<std::uint32_t>(size.width), 4);
  put(bytes, 8, static_cast<std::uint32_t>(size.height), 4);
  put(bytes, 12, 1, 2);   // planes
  put(bytes, 14, 24, 2);  // bits
  put(bytes, 20, static_cast<std::uint32_t>(bytes.size() - headerSize), 4);
}

}  // namespace

std::vector<std::uint8_t> dibOf(const Raster& raster) {
  const std::size_t rowBytes = (static_cast<std::size_t>(raster.size.width) * 3 + 3) / 4 * 4;
  const std::size_t total = headerSize + rowBytes * static_cast<std::size_t>(raster.size.height);
  if (total > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  std::vector<std::uint8_t> bytes(total);
  putHeader(bytes, raster.size);
  std::size_t row = headerSize;
  for (int y = raster.size.height - 1; y >= 0; --y, row += rowBytes) {
    std::size_t at = row;
    for (int x = 0; x < raster.size.width; ++x, at += 3) put(bytes, at, raster.at(x, y), 3);
  }
  return bytes;
}

}  // namespace fiohost::view

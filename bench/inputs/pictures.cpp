#include "bench/inputs/pictures.h"

#include <algorithm>
#include <array>
#include <vector>

#include "bench/beside/codec_loop.h"
#include "examples/scene_jpeg.h"
#include "tests/support/file_bytes.h"

namespace bench {
namespace {

using host::u32;
using host::u8;

constexpr u32 quality = 90;

// A number from 0 to 255 that belongs to a place and seems to come from nowhere.
u32 noiseAt(u32 x, u32 y, u32 layer) {
  u32 value = x * 0x9E3779B1U ^ y * 0x85EBCA77U ^ layer * 0xC2B2AE3DU;
  value = (value ^ value >> 15) * 0x2C1B3C6DU;
  return (value ^ value >> 13) >> 24;
}

struct Layer {
  u32 shift;  // the grid's cells are 2^shift pixels wide
  int weight;
};

// Coarse shapes are strong and fine ones weak, as in photographs.
constexpr std::array layers = {Layer{8, 96}, Layer{6, 48}, Layer{4, 32}, Layer{2, 20}, Layer{0, 8}};

// Between the noise of the four corners of the place's cell; from 0 to 255.
u32 cloudAt(u32 x, u32 y, const Layer& layer) {
  const u32 size = u32{1} << layer.shift;
  const u32 column = x >> layer.shift;
  const u32 line = y >> layer.shift;
  const u32 right = x & (size - 1);
  const u32 down = y & (size - 1);
  const u32 above = noiseAt(column, line, layer.shift) * (size - right) +
                    noiseAt(column + 1, line, layer.shift) * right;
  const u32 below = noiseAt(column, line + 1, layer.shift) * (size - right) +
                    noiseAt(column + 1, line + 1, layer.shift) * right;
  return (above * (size - down) + below * down) >> (2 * layer.shift);
}

int brightnessAt(u32 x, u32 y) {
  int sum = 0;
  for (const Layer& layer : layers) sum += static_cast<int>(cloudAt(x, y, layer)) * layer.weight;
  return sum / 256;
}

// Colours change more slowly than brightness.
void fillRow(u8* row, u32 width, u32 y) {
  for (u32 x = 0; x < width; ++x, row += 3) {
    const int brightness = brightnessAt(x, y);
    const int tint = static_cast<int>(cloudAt(x, y, {7, 0})) / 4 - 32;
    row[0] = static_cast<u8>(std::clamp(brightness - tint, 0, 255));
    row[1] = static_cast<u8>(std::clamp(brightness, 0, 255));
    row[2] = static_cast<u8>(std::clamp(brightness + tint, 0, 255));
  }
}

// Behind SOI and JFIF, where cameras and editors put it.
void insertExif(std::vector<u8>& jpeg, const std::vector<u8>& exif) {
  const std::size_t place = 4 + jpeg[4] * 256U + jpeg[5];
  const std::size_t length = exif.size() + 2;
  std::vector<u8> segment = {0xFF, 0xE1, static_cast<u8>(length >> 8), static_cast<u8>(length)};
  segment.insert(segment.end(), exif.begin(), exif.end());
  jpeg.insert(jpeg.begin() + static_cast<std::ptrdiff_t>(place), segment.begin(), segment.end());
}

}  // namespace

HostPicture makePicture(u32 width, u32 height, u32 distinctRows) {
  HostPicture picture = {width, height, {}};
  const u32 rows = std::min(height, distinctRows);
  picture.pixels.resize(std::size_t{width} * rows * 3);
  for (u32 y = 0; y < rows; ++y) fillRow(picture.row(y), width, y);
  return picture;
}

void ensureJpeg(const std::filesystem::path& path, u32 width, u32 height, bool progressive) {
  if (std::filesystem::exists(path)) return;
  std::filesystem::path made = path;
  made += ".part";
  const u32 mode = progressive ? host::modeProgressive : host::modeBaseline;
  encodeByLoop(made, makePicture(width, height), {quality, mode, host::sample420, 1});
  std::vector<u8> jpeg = support::readFile(made);
  insertExif(jpeg, examples::exifBlock(width, height, examples::encodeScene(160, 120, false, {})));
  support::writeFile(made, jpeg);
  std::filesystem::rename(made, path);
}

}  // namespace bench

#include "examples/scene_jpeg.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

// jpeglib.h needs what is above it.
// clang-format off
#include <cstddef>
#include <cstdio>
#include <jpeglib.h>
// clang-format on

#include "examples/scene.h"

namespace examples {
namespace {

constexpr unsigned samplesPerSide = 2;  // of each pixel, for smooth edges

std::uint8_t encoded(double intensity) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(intensity, 0.0, 1.0) * 255));
}

Colour pixelColour(unsigned x, unsigned y, unsigned height, double viewpoint) {
  Colour sum = {};
  for (unsigned i = 0; i < samplesPerSide * samplesPerSide; ++i) {
    const unsigned column = i % samplesPerSide;
    const unsigned line = i / samplesPerSide;
    const double dx = (column + 0.5) / samplesPerSide;
    const double dy = (line + 0.5) / samplesPerSide;
    const Colour sample = sceneColour((x + dx) / height, (y + dy) / height, viewpoint);
    sum = {sum.red + sample.red, sum.green + sample.green, sum.blue + sample.blue};
  }
  constexpr double count = samplesPerSide * samplesPerSide;
  return {sum.red / count, sum.green / count, sum.blue / count};
}

void writeRows(jpeg_compress_struct& encoder, double viewpoint) {
  Bytes row(std::size_t{encoder.image_width} * 3);
  while (encoder.next_scanline < encoder.image_height) {
    for (std::size_t x = 0; x < encoder.image_width; ++x) {
      const Colour colour = pixelColour(static_cast<unsigned>(x), encoder.next_scanline,
                                        encoder.image_height, viewpoint);
      row[3 * x] = encoded(colour.red);
      row[3 * x + 1] = encoded(colour.green);
      row[3 * x + 2] = encoded(colour.blue);
    }
    JSAMPROW rows[] = {row.data()};
    jpeg_write_scanlines(&encoder, rows, 1);
  }
}

void setUp(jpeg_compress_struct& encoder, unsigned width, unsigned height, bool jfif) {
  encoder.image_width = width;
  encoder.image_height = height;
  encoder.input_components = 3;
  encoder.in_color_space = JCS_RGB;
  jpeg_set_defaults(&encoder);
  jpeg_set_quality(&encoder, 90, TRUE);
  encoder.write_JFIF_header = jfif ? TRUE : FALSE;
  encoder.density_unit = 1;  // per inch
  encoder.X_density = 72;
  encoder.Y_density = 72;
}

}  // namespace

Bytes encodeScene(unsigned width, unsigned height, bool jfif, const Bytes& exif, double viewpoint) {
  // The library's own handler ends the program, which is all that a failure here calls for.
  jpeg_error_mgr errors = {};
  jpeg_compress_struct encoder = {};
  encoder.err = jpeg_std_error(&errors);
  jpeg_create_compress(&encoder);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&encoder, &buffer, &size);
  setUp(encoder, width, height, jfif);
  jpeg_start_compress(&encoder, TRUE);
  if (!exif.empty()) {
    jpeg_write_marker(&encoder, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
  }
  writeRows(encoder, viewpoint);
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  Bytes stream(buffer, buffer + size);
  std::free(buffer);
  return stream;
}

bool writeFile(const char* name, const Bytes& bytes) {
  std::ofstream file(name, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  file.close();
  return static_cast<bool>(file);
}

}  // namespace examples

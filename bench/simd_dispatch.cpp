// Times libjpeg-turbo on one 4:2:0 picture that the program makes itself, and prints the
// milliseconds of each decoding and each encoding, one pair a line. Usage: simd_dispatch
// [repetitions]
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "companions/klibjpg/jpeg_library.h"

namespace {

constexpr unsigned width = 3000;
constexpr unsigned height = 2000;
constexpr int quality = 85;

// Slopes with fine grain, about as hard to code as a photograph.
std::uint8_t sampleAt(unsigned x, unsigned y, unsigned channel) {
  std::uint32_t grain = x * 0x9E3779B1U ^ y * 0x85EBCA77U;
  grain = (grain ^ grain >> 15) * 0x2C1B3C6DU;
  return static_cast<std::uint8_t>(((x >> 4) + (y >> 3) * (channel + 1)) % 224 + (grain >> 27));
}

struct Memory {
  unsigned char* bytes = nullptr;
  unsigned long length = 0;
  ~Memory() { std::free(bytes); }
};

std::vector<std::uint8_t> makePicture() {
  std::vector<std::uint8_t> pixels(std::size_t{width} * height * 3);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    const auto pixel = static_cast<unsigned>(i / 3);
    pixels[i] = sampleAt(pixel % width, pixel / width, static_cast<unsigned>(i % 3));
  }
  return pixels;
}

void encode(const std::vector<std::uint8_t>& picture, Memory& memory) {
  jpeg_error_mgr errors;
  jpeg_compress_struct info = {};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &memory.bytes, &memory.length);
  info.image_width = width;
  info.image_height = height;
  info.input_components = 3;
  info.in_color_space = JCS_EXT_BGR;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, quality, TRUE);
  jpeg_start_compress(&info, TRUE);
  for (std::size_t y = 0; y < height; ++y) {
    JSAMPROW rows[] = {const_cast<std::uint8_t*>(picture.data() + y * width * 3)};
    jpeg_write_scanlines(&info, rows, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
}

void decode(const Memory& memory) {
  jpeg_error_mgr errors;
  jpeg_decompress_struct info = {};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, memory.bytes, memory.length);
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_EXT_BGR;
  jpeg_start_decompress(&info);
  std::vector<std::uint8_t> row(width * 3);
  while (info.output_scanline < info.output_height) {
    JSAMPROW rows[] = {row.data()};
    jpeg_read_scanlines(&info, rows, 1);
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
}

template <typename Work>
double millisecondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

}  // namespace

int main(int argc, char** argv) {
  const int repetitions = argc > 1 ? std::atoi(argv[1]) : 5;
  const std::vector<std::uint8_t> picture = makePicture();
  Memory jpeg;
  encode(picture, jpeg);
  decode(jpeg);  // the first touches the memory
  for (int i = 0; i < repetitions; ++i) {
    const double decoding = millisecondsOf([&] { decode(jpeg); });
    const double encoding = millisecondsOf([&] {
      Memory again;
      encode(picture, again);
    });
    std::printf("%.2f %.2f\n", decoding, encoding);
  }
  return 0;
}

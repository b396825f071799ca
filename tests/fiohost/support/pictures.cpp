#include "tests/fiohost/support/pictures.h"

#include <spng.h>

// jpeglib.h needs what is above it.
// clang-format off
#include <cstddef>
#include <cstdio>
#include <jpeglib.h>
// clang-format on

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace fiohostTest {
namespace {

[[noreturn]] void onError(j_common_ptr library) {
  char message[JMSG_LENGTH_MAX];
  library->err->format_message(library, message);
  throw std::runtime_error(message);
}

jpeg_error_mgr* throwingErrors(jpeg_error_mgr& errors) {
  jpeg_std_error(&errors);
  errors.error_exit = &onError;
  return &errors;
}

std::uint8_t patternAt(unsigned x, unsigned y, unsigned channel, const JpegSpec& spec) {
  const unsigned slopes[] = {x * 255 / spec.width, y * 255 / spec.height,
                             (x + y) * 255 / (spec.width + spec.height),
                             255 - x * 128 / spec.width};
  return static_cast<std::uint8_t>(slopes[channel]);
}

void setUp(jpeg_compress_struct& encoder, const JpegSpec& spec) {
  constexpr J_COLOR_SPACE spaces[] = {JCS_UNKNOWN, JCS_GRAYSCALE, JCS_UNKNOWN, JCS_RGB, JCS_CMYK};
  encoder.image_width = spec.width;
  encoder.image_height = spec.height;
  encoder.input_components = static_cast<int>(spec.components);
  encoder.in_color_space = spaces[spec.components];
  jpeg_set_defaults(&encoder);
  jpeg_set_quality(&encoder, 92, TRUE);
  encoder.write_JFIF_header = spec.jfif && spec.components < 4 ? TRUE : FALSE;
  encoder.density_unit = static_cast<UINT8>(spec.densityUnit);
  encoder.X_density = static_cast<UINT16>(spec.density);
  encoder.Y_density = static_cast<UINT16>(spec.density);
  if (spec.components == 3) {
    encoder.comp_info[0].h_samp_factor = static_cast<int>(spec.horizontalSampling);
    encoder.comp_info[0].v_samp_factor = static_cast<int>(spec.verticalSampling);
  }
  if (spec.progressive) jpeg_simple_progression(&encoder);
}

void writeRows(jpeg_compress_struct& encoder, const JpegSpec& spec) {
  Bytes row(std::size_t{spec.width} * spec.components);
  JSAMPROW rows[] = {row.data()};
  for (unsigned y = 0; y < spec.height; ++y) {
    for (unsigned x = 0; x < spec.width; ++x) {
      for (unsigned c = 0; c < spec.components; ++c) {
        row[x * spec.components + c] = patternAt(x, y, c, spec);
      }
    }
    jpeg_write_scanlines(&encoder, rows, 1);
  }
}

}  // namespace

Bytes makeJpeg(const JpegSpec& spec) {
  jpeg_error_mgr errors = {};
  jpeg_compress_struct encoder = {};
  encoder.err = throwingErrors(errors);
  jpeg_create_compress(&encoder);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&encoder, &buffer, &size);
  setUp(encoder, spec);
  jpeg_start_compress(&encoder, TRUE);
  if (!spec.exif.empty()) {
    jpeg_write_marker(&encoder, JPEG_APP0 + 1, spec.exif.data(),
                      static_cast<unsigned>(spec.exif.size()));
  }
  writeRows(encoder, spec);
  jpeg_finish_compress(&encoder);
  jpeg_destroy_compress(&encoder);
  Bytes stream(buffer, buffer + size);
  std::free(buffer);
  return stream;
}

Pixels decodeJpeg(const Bytes& stream) {
  jpeg_error_mgr errors = {};
  jpeg_decompress_struct decoder = {};
  decoder.err = throwingErrors(errors);
  jpeg_create_decompress(&decoder);
  jpeg_mem_src(&decoder, stream.data(), static_cast<unsigned long>(stream.size()));
  jpeg_read_header(&decoder, TRUE);
  jpeg_start_decompress(&decoder);
  Pixels pixels = {decoder.output_width,
                   decoder.output_height,
                   static_cast<unsigned>(decoder.output_components),
                   {}};
  const std::size_t rowBytes = std::size_t{pixels.width} * pixels.channels;
  pixels.bytes.resize(rowBytes * pixels.height);
  while (decoder.output_scanline < decoder.output_height) {
    JSAMPROW rows[] = {pixels.bytes.data() + rowBytes * decoder.output_scanline};
    jpeg_read_scanlines(&decoder, rows, 1);
  }
  jpeg_finish_decompress(&decoder);
  jpeg_destroy_decompress(&decoder);
  return pixels;
}

Bytes withoutSegments(const Bytes& stream, std::uint8_t marker) {
  constexpr std::uint8_t startOfScan = 0xDA;
  Bytes result(stream.begin(), stream.begin() + 2);
  std::size_t at = 2;
  while (stream.at(at + 1) != startOfScan) {
    const std::size_t length = 2 + stream.at(at + 2) * 256U + stream.at(at + 3);
    const auto begin = stream.begin() + static_cast<std::ptrdiff_t>(at);
    if (stream.at(at + 1) != marker) {
      result.insert(result.end(), begin, begin + static_cast<std::ptrdiff_t>(length));
    }
    at += length;
  }
  result.insert(result.end(), stream.begin() + static_cast<std::ptrdiff_t>(at), stream.end());
  return result;
}

Pixels decodePng(const Bytes& file) {
  const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context(spng_ctx_new(0), &spng_ctx_free);
  spng_set_png_buffer(context.get(), file.data(), file.size());
  spng_ihdr header = {};
  if (spng_get_ihdr(context.get(), &header) != 0) throw std::runtime_error("this is no PNG");
  const bool grey = header.color_type == SPNG_COLOR_TYPE_GRAYSCALE;
  Pixels pixels = {header.width, header.height, grey ? 1U : 3U, {}};
  std::size_t size = 0;
  spng_decoded_image_size(context.get(), SPNG_FMT_PNG, &size);
  pixels.bytes.resize(size);
  if (spng_decode_image(context.get(), pixels.bytes.data(), size, SPNG_FMT_PNG, 0) != 0) {
    throw std::runtime_error("the PNG is damaged");
  }
  return pixels;
}

std::vector<AppSegment> appSegments(const Bytes& stream) {
  constexpr int startOfScan = 0xDA;
  std::vector<AppSegment> found;
  std::size_t at = 2;
  while (at + 4 <= stream.size() && stream[at] == 0xFF && stream[at + 1] != startOfScan) {
    if (stream[at + 1] == 0xFF) {  // a fill byte
      ++at;
      continue;
    }
    const int marker = stream[at + 1];
    const std::size_t length = std::size_t{stream[at + 2]} << 8 | stream[at + 3];
    if (length < 2 || at + 2 + length > stream.size()) break;
    const auto begin = stream.begin() + static_cast<std::ptrdiff_t>(at);
    const std::string payload(begin + 4, begin + static_cast<std::ptrdiff_t>(2 + length));
    const bool codecs = payload.rfind(std::string("JFIF\0", 5), 0) == 0 ||
                        (marker == 0xEE && payload.rfind("Adobe", 0) == 0);
    if (marker >= 0xE0 && marker <= 0xEF && !codecs) found.emplace_back(marker, payload);
    at += 2 + length;
  }
  return found;
}

double meanDifference(const Pixels& a, const Pixels& b) {
  double sum = 0;
  for (std::size_t at = 0; at < a.bytes.size(); ++at) {
    sum += std::abs(int{a.bytes[at]} - int{b.bytes[at]});
  }
  return sum / static_cast<double>(a.bytes.size());
}

}  // namespace fiohostTest

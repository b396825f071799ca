#include "bench/beside/codec_loop.h"

#include <array>
#include <memory>
#include <stdexcept>
#include <vector>

#include "companions/klibjpg/jpeg_library.h"

namespace bench {
namespace {

using host::u8;

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

OwnedFile openFile(const std::filesystem::path& path, const char* mode) {
  OwnedFile file(std::fopen(path.string().c_str(), mode));
  if (file == nullptr) throw std::runtime_error(path.string() + " cannot be opened");
  return file;
}

// Of luminance against 1 x 1 of chroma, by host::ChromaSampling.
constexpr std::array<std::array<int, 2>, 4> factors = {{{1, 1}, {2, 1}, {2, 2}, {4, 1}}};

}  // namespace

// libjpeg's own error routine ends the program, which is what a benchmark wants.
void decodeByLoop(const std::filesystem::path& path, int eighths, RowSink& sink) {
  const OwnedFile file = openFile(path, "rb");
  jpeg_error_mgr errors;
  jpeg_decompress_struct info = {};
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_stdio_src(&info, file.get());
  jpeg_read_header(&info, TRUE);
  info.out_color_space = JCS_EXT_BGR;
  info.scale_num = static_cast<unsigned>(eighths);
  info.scale_denom = 8;
  jpeg_start_decompress(&info);
  std::vector<u8> row(std::size_t{info.output_width} * 3);
  while (info.output_scanline < info.output_height) {
    JSAMPROW rows[] = {row.data()};
    jpeg_read_scanlines(&info, rows, 1);
    sink.take(row.data(), row.size());
  }
  jpeg_finish_decompress(&info);
  jpeg_destroy_decompress(&info);
}

void encodeByLoop(const std::filesystem::path& path, const HostPicture& picture,
                  const fiohost::FileData::SaveOptions& options) {
  const OwnedFile file = openFile(path, "wb");
  jpeg_error_mgr errors;
  jpeg_compress_struct info = {};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  jpeg_stdio_dest(&info, file.get());
  info.image_width = picture.width;
  info.image_height = picture.height;
  info.input_components = 3;
  info.in_color_space = JCS_EXT_BGR;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, static_cast<int>(options.quality), TRUE);
  info.comp_info[0].h_samp_factor = factors.at(options.sample)[0];
  info.comp_info[0].v_samp_factor = factors.at(options.sample)[1];
  if (options.mode == host::modeProgressive) jpeg_simple_progression(&info);
  info.write_JFIF_header = options.jfif != 0 ? TRUE : FALSE;
  info.density_unit = 1;
  info.X_density = info.Y_density = 72;
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    JSAMPROW rows[] = {picture.row(info.next_scanline)};
    jpeg_write_scanlines(&info, rows, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
}

}  // namespace bench

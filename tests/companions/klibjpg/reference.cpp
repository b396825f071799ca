#include "tests/companions/klibjpg/reference.h"

#include <csetjmp>

#include "companions/klibjpg/jpeg_library.h"

namespace klibjpg_test {
namespace {

struct Failure : jpeg_error_mgr {
  std::jmp_buf jump;
};

bool decodeInto(jpeg_decompress_struct& info, Failure& failure, const support::Bytes& jpeg,
                unsigned scale, Picture& picture) {
  if (setjmp(failure.jump) != 0) return false;
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, jpeg.data(), static_cast<unsigned long>(jpeg.size()));
  jpeg_read_header(&info, TRUE);
  if (info.num_components == 3) info.out_color_space = JCS_EXT_BGR;
  info.scale_num = scale;
  info.scale_denom = 8;
  jpeg_start_decompress(&info);
  picture.width = info.output_width;
  picture.height = info.output_height;
  picture.channels = static_cast<unsigned>(info.output_components);
  const std::size_t rowBytes = std::size_t{picture.width} * picture.channels;
  picture.pixels.resize(rowBytes * picture.height);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = picture.pixels.data() + info.output_scanline * rowBytes;
    jpeg_read_scanlines(&info, &row, 1);
  }
  if (info.out_color_space == JCS_CMYK && info.saw_Adobe_marker) {
    for (auto& amount : picture.pixels) amount = static_cast<unsigned char>(255 - amount);
  }
  return true;
}

}  // namespace

Picture referenceDecode(const support::Bytes& jpeg, unsigned scale) {
  Picture picture;
  Failure failure = {};
  jpeg_decompress_struct info = {};
  info.err = jpeg_std_error(&failure);
  failure.error_exit = [](j_common_ptr common) {
    std::longjmp(static_cast<Failure*>(common->err)->jump, 1);
  };
  failure.output_message = [](j_common_ptr) {};
  const bool decoded = decodeInto(info, failure, jpeg, scale, picture);
  jpeg_destroy_decompress(&info);
  return decoded ? picture : Picture();
}

}  // namespace klibjpg_test

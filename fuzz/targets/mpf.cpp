// A multi-picture segment, read into a whole image list.
#include <memory>

#include "fuzz/input.h"
#include "mpo/mpf_segment.h"

namespace {

struct ImageList {
  host::MpoList list = {};
  host::MpoEntry entries[host::mpoMostImages] = {};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const fuzz::NothingLeft check;
  const auto images = std::make_unique<ImageList>();
  const host::u32 position = data[0] % host::mpoMostImages;
  images->list.imageCount = data[1];
  static_cast<void>(
      mpo::MpfParseSegment(position, {images->list, images->entries}, {data + 2, size - 2}, 4000));
  return 0;
}

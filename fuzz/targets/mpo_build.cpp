// A multi-picture segment built of any descriptions: its size is what is written, and reading it
// back finds as many images.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz/input.h"
#include "mpo/mpf_segment.h"

namespace {

struct ImageList {
  host::MpoList list = {};
  host::MpoEntry entries[host::mpoMostImages] = {};
};

std::vector<host::MpoImageDesc> descriptions(std::size_t count, fuzz::Bytes input) {
  std::vector<host::MpoImageDesc> images(count, host::MpoImageDesc{});
  const std::size_t bytes = std::min(input.size(), count * sizeof(host::MpoImageDesc));
  if (bytes != 0) std::memcpy(static_cast<void*>(images.data()), input.data(), bytes);
  return images;
}

void readBack(fuzz::Bytes payload, const host::MpoCountAnswer& counts) {
  const auto images = std::make_unique<ImageList>();
  static_cast<void>(
      mpo::MpfParseSegment(0, {images->list, images->entries}, payload.subspan(4), 0));
  const bool isFirst = counts.position == 0 && counts.imageCount <= host::mpoMostImages;
  if (isFirst && images->list.imageCount != counts.imageCount) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const fuzz::NothingLeft check;
  const host::MpoCountAnswer counts = {data[0], data[1]};
  const auto images = descriptions(counts.imageCount, {data + 2, size - 2});
  host::u32 length = 0;
  static_cast<void>(mpo::MpfBuildSegment(images, counts, {}, &length));
  std::vector<host::u8> payload(length);
  host::u32 written = 0;
  if (mpo::MpfBuildSegment(images, counts, payload, &written) != 1) return 0;
  if (written != length) std::abort();
  if (length > 4) readBack(payload, counts);
  return 0;
}

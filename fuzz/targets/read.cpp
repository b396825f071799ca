// Decoding every row of a picture, at its own size and at one that the plug-in scales to.
#include "fuzz/picture.h"

namespace {

struct Read {
  host::ReadRequest request = {};
  std::size_t bytesPerPixel = 0;
  unsigned sum = 0;  // so that every byte of every row is looked at
};

int takeRows(host::ReadRequest* request, host::u64, host::u32, host::u32 width, host::u32 rowCount,
             host::u8** rows, host::u16, host::i32, host::u32) {
  Read& read = *reinterpret_cast<Read*>(request);
  for (host::u32 row = 0; row < rowCount; ++row) {
    const fuzz::Bytes bytes(rows[row], width * read.bytesPerPixel);
    for (const std::uint8_t byte : bytes) read.sum += byte;
  }
  return 1;
}

void decode(const fiohost::SourceFile& file, host::i32 preview, host::u32 side) {
  const auto described = fuzz::describeInput(file);
  if (!described) return;
  Read read;
  read.bytesPerPixel = described->fileData.common().bitsPerPixel / 8;
  read.request.fullImage = 1;
  read.request.preview = preview;
  read.request.targetWidth = side;
  read.request.targetHeight = side;
  static_cast<void>(fuzz::session().plugin.read(described->family, described->fileData.handle(),
                                                &read.request, &takeRows));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(fuzz::session());
  const fuzz::NothingLeft check;
  const fiohost::SourceFile file(fuzz::writeInput("input.jpg", {data, size}).string());
  decode(file, 0, 0);
  decode(file, 1, 5);
  decode(file, host::previewByCodec, 9);
  return 0;
}

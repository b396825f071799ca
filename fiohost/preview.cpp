#include "fiohost/preview.h"

namespace fiohost {
namespace {

constexpr host::u32 colourChannels = 3;

// Keeps the rows that a receiver gives, red and blue changed places.
class PreviewWriter : public RowWriter {
 public:
  PreviewWriter(const PictureShape& shape, PreviewRows& preview) : preview_(preview) {
    preview_.shape = shape;
    preview_.pixels.clear();
  }
  void writeRow(const host::u8* row) override {
    std::vector<host::u8>& pixels = preview_.pixels;
    const std::size_t begin = pixels.size();
    pixels.insert(pixels.end(), row, row + preview_.shape.rowBytes());
    if (preview_.shape.channels != colourChannels) return;
    for (std::size_t at = begin; at < pixels.size(); at += colourChannels) {
      std::swap(pixels[at], pixels[at + 2]);
    }
  }

 private:
  PreviewRows& preview_;
};

}  // namespace

std::vector<host::u8*> PreviewRows::rows() {
  std::vector<host::u8*> rows;
  for (host::u32 row = 0; row < shape.height; ++row) {
    rows.push_back(pixels.data() + row * shape.rowBytes());
  }
  return rows;
}

PreviewRows makePreview(const Session& session, const SourceFile& file, const Size& box) {
  Described described = describeFile(session, file);
  PreviewRows preview;
  ReadOptions options;
  options.box = box;
  deliverPicture(session, file, described, options, [&](const PictureShape& shape) {
    return std::make_unique<PreviewWriter>(shape, preview);
  });
  return preview;
}

}  // namespace fiohost

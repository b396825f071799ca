// Portable pixmap (P6). Grey becomes three equal channels, because a .ppm has no other form.
#include <vector>

#include "fiohost/row_writer.h"

namespace fiohost {
namespace {

class PpmWriter : public RowWriter {
 public:
  PpmWriter(OutputFile& output, const PictureShape& shape)
      : output_(output), shape_(shape), tripled_(shape.channels == 1 ? 3 * shape.rowBytes() : 0) {
    const std::string head =
        "P6\n" + std::to_string(shape.width) + " " + std::to_string(shape.height) + "\n255\n";
    output_.write(head.data(), head.size());
  }

  void writeRow(const host::u8* row) override {
    if (shape_.channels == 3) {
      output_.write(row, shape_.rowBytes());
      return;
    }
    for (std::size_t i = 0; i < tripled_.size(); ++i) tripled_[i] = row[i / 3];
    output_.write(tripled_.data(), tripled_.size());
  }

 private:
  OutputFile& output_;
  PictureShape shape_;
  std::vector<host::u8> tripled_;
};

}  // namespace

std::unique_ptr<RowWriter> makePpmWriter(OutputFile& output, const PictureShape& shape) {
  return std::make_unique<PpmWriter>(output, shape);
}

}  // namespace fiohost

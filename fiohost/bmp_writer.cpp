// Windows bitmap, uncompressed, rows from the top (a negative height says so), so that no row
// waits.
#include <algorithm>
#include <array>
#include <vector>

#include "fiohost/failure.h"
#include "fiohost/row_writer.h"

namespace fiohost {
namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::size_t infoHeaderSize = 40;
constexpr std::size_t greyPaletteSize = std::size_t{256} * 4;

class LittleEndian {
 public:
  void put(std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) bytes_.push_back(static_cast<host::u8>(value >> (8 * i)));
  }
  [[nodiscard]] const std::vector<host::u8>& bytes() const noexcept { return bytes_; }

 private:
  std::vector<host::u8> bytes_;
};

class BmpWriter : public RowWriter {
 public:
  BmpWriter(OutputFile& output, const PictureShape& shape)
      : output_(output), shape_(shape), row_((shape.rowBytes() + 3) / 4 * 4) {
    writeHead();
  }

  void writeRow(const host::u8* row) override {
    if (shape_.channels == 1) {
      std::copy_n(row, shape_.width, row_.begin());
    } else {
      for (std::size_t x = 0; x < shape_.rowBytes(); x += 3) {
        row_[x] = row[x + 2];
        row_[x + 1] = row[x + 1];
        row_[x + 2] = row[x];
      }
    }
    output_.write(row_.data(), row_.size());
  }

 private:
  void writeHead() {
    const std::size_t palette = shape_.channels == 1 ? greyPaletteSize : 0;
    const std::uint64_t start = fileHeaderSize + infoHeaderSize + palette;
    const std::uint64_t size = start + std::uint64_t{row_.size()} * shape_.height;
    if (size > UINT32_MAX) throw Failure("the picture is too large for a BMP", "write a .png");
    LittleEndian head;
    head.put('B' | 'M' << 8, 2);
    head.put(size, 4);
    head.put(0, 4);
    head.put(start, 4);
    head.put(infoHeaderSize, 4);
    head.put(shape_.width, 4);
    head.put(std::uint64_t{0} - shape_.height, 4);
    head.put(1, 2);
    head.put(std::uint64_t{shape_.channels} * 8, 2);
    head.put(0, 4);  // not compressed
    head.put(size - start, 4);
    head.put(0, 8);            // no resolution
    head.put(palette / 4, 4);  // colours
    head.put(0, 4);
    for (std::uint64_t grey = 0; grey < palette / 4; ++grey) head.put(grey * 0x010101, 4);
    output_.write(head.bytes().data(), head.bytes().size());
  }

  OutputFile& output_;
  PictureShape shape_;
  std::vector<host::u8> row_;
};

}  // namespace

std::unique_ptr<RowWriter> makeBmpWriter(OutputFile& output, const PictureShape& shape) {
  return std::make_unique<BmpWriter>(output, shape);
}

}  // namespace fiohost

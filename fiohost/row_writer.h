// Picture files written row by row, from the top.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "fiohost/output_file.h"
#include "host/types.h"

namespace fiohost {

struct PictureShape {
  host::u32 width;     // pixels
  host::u32 height;    // pixels
  host::u32 channels;  // 1 grey, 3 red, green, blue

  [[nodiscard]] std::size_t rowBytes() const noexcept { return std::size_t{width} * channels; }
};

class RowWriter {
 public:
  RowWriter() = default;
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;
  virtual ~RowWriter() = default;

  // Exactly as many rows as the shape has, each of rowBytes(). Throws Failure.
  virtual void writeRow(const host::u8* row) = 0;
  // After the last row. Throws Failure.
  virtual void finish() {}
};

// Writes the file's head at once. The output must outlive the writer. Throws Failure.
using MakeRowWriter = std::unique_ptr<RowWriter>(OutputFile& output, const PictureShape& shape);
MakeRowWriter makePngWriter;
MakeRowWriter makeBmpWriter;
MakeRowWriter makePpmWriter;

// The writer for a file's extension in any case, or null when there is none.
[[nodiscard]] MakeRowWriter* writerFor(const std::string& fileName);

}  // namespace fiohost

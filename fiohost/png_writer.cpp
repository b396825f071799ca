// PNG (ISO/IEC 15948) through libspng's progressive encoder: one row of memory at a time.
#include <spng.h>

#include "fiohost/failure.h"
#include "fiohost/row_writer.h"

namespace fiohost {
namespace {

struct FreeContext {
  void operator()(spng_ctx* context) const noexcept { spng_ctx_free(context); }
};

// Photographs gain little from more effort, which multiplies the time.
constexpr int compressionLevel = 4;

class PngWriter : public RowWriter {
 public:
  PngWriter(OutputFile& output, const PictureShape& shape)
      : output_(output), rowBytes_(shape.rowBytes()), context_(spng_ctx_new(SPNG_CTX_ENCODER)) {
    if (context_ == nullptr) throw Failure("there is not enough memory for the PNG", "");
    check(spng_set_png_stream(context_.get(), &PngWriter::onBytes, this));
    spng_ihdr header = {};
    header.width = shape.width;
    header.height = shape.height;
    header.bit_depth = 8;
    header.color_type = shape.channels == 1 ? SPNG_COLOR_TYPE_GRAYSCALE : SPNG_COLOR_TYPE_TRUECOLOR;
    check(spng_set_ihdr(context_.get(), &header));
    check(spng_set_option(context_.get(), SPNG_IMG_COMPRESSION_LEVEL, compressionLevel));
    check(spng_encode_image(context_.get(), nullptr, 0, SPNG_FMT_PNG,
                            SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE));
  }

  void writeRow(const host::u8* row) override {
    const int result = spng_encode_row(context_.get(), row, rowBytes_);
    ended_ = result == SPNG_EOI;
    if (!ended_) check(result);
  }

  void finish() override {
    if (!ended_) throw Failure("the PNG is not complete", "");
  }

 private:
  // Nothing may be thrown through the library, so what went wrong waits for check().
  static int onBytes(spng_ctx*, void* user, void* bytes, std::size_t count) noexcept {
    auto* self = static_cast<PngWriter*>(user);
    try {
      self->output_.write(bytes, count);
      return 0;
    } catch (...) {
      self->pending_ = std::current_exception();
      return SPNG_IO_ERROR;
    }
  }

  void check(int result) const {
    if (pending_ != nullptr) std::rethrow_exception(pending_);
    if (result != 0) throw Failure(std::string("the PNG failed: ") + spng_strerror(result), "");
  }

  OutputFile& output_;
  std::size_t rowBytes_;
  std::unique_ptr<spng_ctx, FreeContext> context_;
  std::exception_ptr pending_;
  bool ended_ = false;
};

}  // namespace

std::unique_ptr<RowWriter> makePngWriter(OutputFile& output, const PictureShape& shape) {
  return std::make_unique<PngWriter>(output, shape);
}

}  // namespace fiohost

#include "fiohost/mpo_extract.h"

#include <algorithm>
#include <fstream>

#include "fiohost/colour_rows.h"
#include "fiohost/explain.h"
#include "fiohost/interrupt.h"

namespace fiohost {
namespace {

constexpr int goOn = 1;
constexpr int stop = -1;

// The answering end of one image's reading: an announcement, then rows.
class ImageReceiver {
 public:
  explicit ImageReceiver(OutputFile& output) : output_(output) {}

  static int onRequest(int action, void* record, void* context, HGLOBAL) noexcept {
    auto& self = *static_cast<ImageReceiver*>(context);
    try {
      if (action == host::requestHeader) self.begin(*static_cast<host::ImageRequest*>(record));
      if (action == host::requestRows) self.take(*static_cast<host::RowRequest*>(record));
      return goOn;
    } catch (...) {
      self.stopped_ = std::current_exception();
      return stop;
    }
  }

  void rethrow() const {
    if (stopped_ != nullptr) std::rethrow_exception(stopped_);
  }

  void finish() {
    if (writer_ == nullptr || nextRow_ != shape_.height) {
      throw Failure("its rows are not complete", "fetch the file again from where it came");
    }
    writer_->finish();
  }

 private:
  void begin(const host::ImageRequest& request) {
    if (request.width == 0 || request.height == 0) throw Failure("it has no pixels", "");
    shape_ = {request.width, request.height, 0};
  }

  void take(const host::RowRequest& request) {
    if (interrupted()) throw Failure("stopped", "");
    if (request.firstRow == 0) beginPass(request);
    if (writer_ == nullptr || request.width != shape_.width || request.firstRow != nextRow_ ||
        request.rowCount > shape_.height - nextRow_) {
      throw Failure("the plug-in delivers rows that do not belong together", "");
    }
    const auto* row = reinterpret_cast<const host::u8*>(request.rows);
    for (host::u32 i = 0; i < request.rowCount; ++i, row += request.rowDistance) {
      toDisplay(row, bytesPerPixel_, shape_.width, display_.data());
      writer_->writeRow(display_.data());
    }
    nextRow_ += request.rowCount;
  }

  // A later pass brings a better rendering of the same picture and replaces what was written.
  void beginPass(const host::RowRequest& request) {
    bytesPerPixel_ = shape_.width != 0 ? request.rowDistance / shape_.width : 0;
    if (bytesPerPixel_ != 1 && bytesPerPixel_ != 3 && bytesPerPixel_ != 4) {
      throw Failure("it has a colour layout that PNG has no place for", "take it with --jpeg");
    }
    if (writer_ != nullptr) {
      writer_.reset();
      output_.restart();
    }
    shape_.channels = displayChannels(bytesPerPixel_);
    display_.resize(shape_.rowBytes());
    writer_ = makePngWriter(output_, shape_);
    nextRow_ = 0;
  }

  OutputFile& output_;
  PictureShape shape_ = {};
  host::u32 bytesPerPixel_ = 0;
  host::u32 nextRow_ = 0;
  std::vector<host::u8> display_;
  std::unique_ptr<RowWriter> writer_;
  std::exception_ptr stopped_;
};

void decode(const Session& session, MpoFile& mpo, const ListedImage& image, OutputFile& output) {
  ImageReceiver receiver(output);
  session.reports.clear();
  const int result = session.plugin.readImage(mpo.described.fileData.handle(),
                                              &ImageReceiver::onRequest, &receiver, image.number);
  receiver.rethrow();
  if (result != 1) {
    throw explainCode(session.reports.code(), "the plug-in delivered no picture",
                      "the file may be damaged or may have changed meanwhile");
  }
  receiver.finish();
}

void copyRange(std::ifstream& input, host::u64 count, OutputFile& output) {
  std::vector<char> piece(std::size_t{64} * 1024);
  while (count > 0) {
    const auto size = static_cast<std::size_t>(std::min<host::u64>(count, piece.size()));
    if (!input.read(piece.data(), static_cast<std::streamsize>(size))) {
      throw Failure("its bytes cannot be read", "check that the file can still be opened");
    }
    output.write(piece.data(), size);
    count -= size;
  }
}

}  // namespace

TakenImage extractPng(const Session& session, MpoFile& mpo, const ListedImage& image,
                      const std::string& outputName, Existing existing) {
  OutputFile output(outputName, existing);
  decode(session, mpo, image, output);
  output.commit();
  return {image.number, outputName, std::filesystem::file_size(platform::systemPath(outputName))};
}

TakenImage extractStream(const SourceFile& file, const ListedImage& image,
                         const std::string& outputName, Existing existing) {
  if (!image.insideFile) {
    throw Failure("its bytes do not lie inside the file", "the file may have been cut short");
  }
  OutputFile output(outputName, existing);
  std::ifstream input(file.path(), std::ios::binary);
  input.seekg(static_cast<std::streamoff>(image.entry.fileOffset));
  copyRange(input, image.entry.size, output);
  output.commit();
  return {image.number, outputName, image.entry.size};
}

}  // namespace fiohost

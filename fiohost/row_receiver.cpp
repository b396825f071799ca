#include "fiohost/row_receiver.h"

#include <algorithm>
#include <utility>

#include "fiohost/colour_rows.h"
#include "fiohost/failure.h"
#include "fiohost/interrupt.h"

namespace fiohost {
namespace {

constexpr int goOn = 1;
constexpr int stop = -1;
constexpr host::u16 flagLaterPass = 64;

}  // namespace

RowReceiver::RowReceiver(Target target, host::u32 bytesPerPixel, const Size& wholeSize,
                         Progress& progress)
    : target_(std::move(target)),
      bytesPerPixel_(bytesPerPixel),
      wholeSize_(wholeSize),
      progress_(progress) {
  call_.receiver = this;
}

int RowReceiver::onRows(host::ReadRequest* request, host::u64, host::u32 firstRow, host::u32 width,
                        host::u32 rowCount, host::u8** rows, host::u16 flags, host::i32,
                        host::u32) noexcept {
  RowReceiver& self = *reinterpret_cast<Call*>(request)->receiver;
  try {
    self.take(firstRow, width, rowCount, rows, flags);
    return goOn;
  } catch (...) {
    self.stopped_ = std::current_exception();
    return stop;
  }
}

void RowReceiver::take(host::u32 firstRow, host::u32 width, host::u32 rowCount,
                       host::u8* const* rows, host::u16 flags) {
  if (interrupted()) throw Failure("stopped", "");
  if (writer_ == nullptr) beginPass(width);
  if (firstRow == 0 && (flags & flagLaterPass) != 0 && nextRow_ > 0) {
    // A better rendering of the same picture: it replaces what was written.
    writer_.reset();
    beginPass(width);
  }
  if (width != delivered_.width || firstRow != nextRow_ ||
      rowCount > delivered_.height - nextRow_) {
    throw Failure("the plug-in delivers rows that do not belong together", "");
  }
  for (host::u32 i = 0; i < rowCount; ++i) takeRow(rows[i]);
  nextRow_ += rowCount;
  progress_.update(nextRow_, delivered_.height);
}

void RowReceiver::beginPass(host::u32 width) {
  const host::ReadRequest& request = call_.request;
  delivered_ = {width, request.preview != 0 ? request.targetHeight : wholeSize_.height};
  if (width == 0 || delivered_.height == 0) throw Failure("the picture has no pixels", "");
  const host::u32 channels = displayChannels(bytesPerPixel_);
  const Size wanted = target_.box ? fitInside(wholeSize_, *target_.box) : delivered_;
  const Size written = {std::min(wanted.width, width), std::min(wanted.height, delivered_.height)};
  const bool shrink = written.width < width || written.height < delivered_.height;
  shape_ = {written.width, written.height, channels};
  display_.resize(std::size_t{width} * channels);
  shrinker_.reset();
  if (shrink) shrinker_.emplace(delivered_, written, channels);
  writer_ = target_.begin(shape_);
  nextRow_ = 0;
}

void RowReceiver::takeRow(const host::u8* row) {
  toDisplay(row, bytesPerPixel_, delivered_.width, display_.data());
  if (!shrinker_) {
    writer_->writeRow(display_.data());
    return;
  }
  shrinker_->addRow(display_.data(),
                    [this](const host::u8* reduced) { writer_->writeRow(reduced); });
}

void RowReceiver::rethrow() const {
  if (stopped_ != nullptr) std::rethrow_exception(stopped_);
}

void RowReceiver::finish() {
  rethrow();
  if (writer_ == nullptr || nextRow_ != delivered_.height) {
    throw Failure("the picture's rows are not complete", "fetch the file again from where it came");
  }
  writer_->finish();
}

}  // namespace fiohost

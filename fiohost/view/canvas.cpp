#include "fiohost/view/canvas.h"

namespace fiohost::view {

void Canvas::announce(const Extent& wholeStored, Orientation orientation) {
  const std::lock_guard guard(mutex_);
  wholeStored_ = wholeStored;
  orientation_ = orientation;
}

void Canvas::beginPass(const Extent& stored) {
  const std::lock_guard guard(mutex_);
  if (stored != stored_) raster_ = Raster(orientation_.shownSize(stored));
  stored_ = stored;
  progress_ = {0, stored.height};
}

void Canvas::putRow(int row, const std::uint8_t* bytes, unsigned channels) {
  const std::lock_guard guard(mutex_);
  if (row < 0 || row >= stored_.height) return;
  const RowPath path = rowPath(orientation_, stored_, row);
  std::ptrdiff_t at = path.start;
  for (int column = 0; column < stored_.width; ++column, bytes += channels, at += path.step) {
    raster_.pixels[static_cast<std::size_t>(at)] = channels == 1
                                                       ? pixelOf(bytes[0], bytes[0], bytes[0])
                                                       : pixelOf(bytes[0], bytes[1], bytes[2]);
  }
  progress_.done = row + 1;
}

Extent Canvas::wholeSize() const {
  const std::lock_guard guard(mutex_);
  return orientation_.shownSize(wholeStored_);
}

Canvas::Progress Canvas::progress() const {
  const std::lock_guard guard(mutex_);
  return progress_;
}

}  // namespace fiohost::view

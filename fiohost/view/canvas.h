// A picture that one thread decodes while another shows it.
#pragma once

#include <mutex>

#include "fiohost/view/orientation.h"
#include "fiohost/view/raster.h"

namespace fiohost::view {

class Canvas {
 public:
  struct Progress {
    int done = 0;   // rows of the pass under way
    int total = 0;  // 0: no row has come
  };

  // The decoding side. What the picture is, before its rows come: its size as stored.
  void announce(const Extent& wholeStored, Orientation orientation);
  // A pass begins: rows of a picture of that size, which may be reduced. The rows of the pass
  // before stay until they are replaced. Throws std::bad_alloc.
  void beginPass(const Extent& stored);
  // A row of 1 (grey) or 3 (red, green, blue) bytes per pixel, in stored order; it goes where the
  // orientation wants it.
  void putRow(int row, const std::uint8_t* bytes, unsigned channels);

  // The showing side. The whole picture's size as it is seen; empty before it was announced.
  [[nodiscard]] Extent wholeSize() const;
  [[nodiscard]] Progress progress() const;
  // Calls use(const Raster&), whose size is empty before the first pass, while no row comes.
  template <typename Use>
  auto with(Use use) const {
    const std::lock_guard guard(mutex_);
    return use(raster_);
  }

 private:
  mutable std::mutex mutex_;
  Extent wholeStored_;
  Orientation orientation_;
  Extent stored_;
  Raster raster_;
  Progress progress_;
};

}  // namespace fiohost::view

// Where the window's parts lie, among them the film strip of a multi-picture file's images.
#pragma once

#include "fiohost/view/geometry.h"

namespace fiohost::view {

struct WindowLayout {
  Box picture;
  Box strip;  // empty without one
};

// client: without the status bar's height. dpi: the screen's dots per inch.
[[nodiscard]] WindowLayout layOut(const Extent& client, bool withStrip, int dpi) noexcept;

// Cells from left to right, in the middle of the strip; when they do not fit, moved so that the
// selected one is seen.
class FilmStrip {
 public:
  // count: of images; selected: from 0.
  FilmStrip(const Box& strip, int count, int selected, int dpi) noexcept;

  [[nodiscard]] Box cell(int index) const noexcept;
  // The picture's place inside a cell; its frame is around it.
  [[nodiscard]] Box thumbnail(int index) const noexcept;
  // The image below a place, or -1.
  [[nodiscard]] int imageAt(const Place& place) const noexcept;

 private:
  Box strip_;
  int count_;
  int cellWidth_;
  int margin_;
  int left_;
};

// The largest thumbnail of a cell, both ways.
[[nodiscard]] int thumbnailSide(int dpi) noexcept;

// The largest box of the picture's shape in the middle of another; never larger than the picture.
[[nodiscard]] Box centredIn(const Box& outer, const Extent& picture) noexcept;

}  // namespace fiohost::view

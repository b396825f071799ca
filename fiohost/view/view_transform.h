// Where a picture lies in the part of the window that shows it: fitted or at a scale, moved about.
#pragma once

#include "fiohost/view/geometry.h"

namespace fiohost::view {

class ViewTransform {
 public:
  static constexpr double largestScale = 32;
  static constexpr double smallestScale = 1.0 / 64;

  // The whole picture's size. A picture that is fitted stays so.
  void setPicture(const Extent& picture);
  // The window's part. What was in its middle stays there as far as the picture reaches.
  void setWindow(const Extent& window);

  // The whole picture, never enlarged.
  void fit();
  // One pixel of the picture on one of the screen, with what is in the middle kept there.
  void showActualSize();
  // Multiplies the scale; the picture's point below the place stays below it where the picture
  // is larger than the window. Passing 1:1 stops there.
  void zoomAbout(const Place& place, double factor);
  // Moves the picture; it never leaves a gap that it could fill.
  void panBy(int right, int down);

  [[nodiscard]] bool isFitted() const noexcept { return fitted_; }
  // Screen pixels of one picture pixel.
  [[nodiscard]] double scale() const noexcept { return scale_; }
  // The whole picture in window pixels; parts of it may lie outside.
  [[nodiscard]] Box pictureBox() const noexcept;
  // Whether there is anything to pan to.
  [[nodiscard]] bool isLargerThanWindow() const noexcept;
  [[nodiscard]] const Extent& picture() const noexcept { return picture_; }
  [[nodiscard]] const Extent& window() const noexcept { return window_; }
  [[nodiscard]] Place middle() const noexcept { return {window_.width / 2, window_.height / 2}; }

 private:
  [[nodiscard]] double fittingScale() const noexcept;
  void update() noexcept;

  Extent picture_;
  Extent window_;
  bool fitted_ = true;
  double scale_ = 1;
  double centreX_ = 0;  // the picture's point in the window's middle
  double centreY_ = 0;
};

// A part of a raster and where it goes in the window.
struct VisiblePart {
  Box source;  // pixels of the raster
  Box target;  // pixels of the window
};

// The whole pixels of a raster, which holds the picture at any size, that a window shows. Empty
// boxes when there is nothing to show.
[[nodiscard]] VisiblePart visiblePart(const ViewTransform& view, const Extent& raster);

}  // namespace fiohost::view

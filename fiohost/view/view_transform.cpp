#include "fiohost/view/view_transform.h"

#include <algorithm>
#include <cmath>

namespace fiohost::view {
namespace {

// The centre that leaves no gap: the picture's own when it is smaller than the window.
double withoutGap(double centre, int picture, int window, double scale) {
  const double half = window / 2.0 / scale;
  if (picture * scale <= window) return picture / 2.0;
  return std::clamp(centre, half, picture - half);
}

struct Span {
  int begin;
  int end;
};

// The source pixels that the window's span shows of a picture drawn at [left, left + drawn).
Span sourceSpan(int left, int drawn, int window, int source) {
  const double share = static_cast<double>(source) / drawn;
  const int first = std::max(0, left);
  const int last = std::min(window, left + drawn);
  return {std::clamp(static_cast<int>(std::floor((first - left) * share)), 0, source),
          std::clamp(static_cast<int>(std::ceil((last - left) * share)), 0, source)};
}

Span targetSpan(int left, int drawn, const Span& shown, int source) {
  const double share = static_cast<double>(drawn) / source;
  return {left + static_cast<int>(std::lround(shown.begin * share)),
          left + static_cast<int>(std::lround(shown.end * share))};
}

Box boxOf(const Span& across, const Span& down) {
  return {across.begin, down.begin, across.end - across.begin, down.end - down.begin};
}

}  // namespace

void ViewTransform::setPicture(const Extent& picture) {
  if (picture == picture_) return;
  picture_ = picture;
  centreX_ = picture.width / 2.0;
  centreY_ = picture.height / 2.0;
  update();
}

void ViewTransform::setWindow(const Extent& window) {
  window_ = window;
  update();
}

void ViewTransform::fit() {
  fitted_ = true;
  update();
}

void ViewTransform::showActualSize() {
  fitted_ = false;
  scale_ = 1;
  update();
}

void ViewTransform::zoomAbout(const Place& place, double factor) {
  const double right = place.x - window_.width / 2.0;
  const double down = place.y - window_.height / 2.0;
  const double before = scale_;
  double after = std::clamp(before * factor, std::min(smallestScale, fittingScale()), largestScale);
  if ((before < 1 && after > 1) || (before > 1 && after < 1)) after = 1;
  centreX_ += right / before - right / after;
  centreY_ += down / before - down / after;
  fitted_ = false;
  scale_ = after;
  update();
}

void ViewTransform::panBy(int right, int down) {
  centreX_ -= right / scale_;
  centreY_ -= down / scale_;
  update();
}

double ViewTransform::fittingScale() const noexcept {
  if (picture_.empty() || window_.empty()) return 1;
  const double across = static_cast<double>(window_.width) / picture_.width;
  const double down = static_cast<double>(window_.height) / picture_.height;
  return std::min({1.0, across, down});
}

void ViewTransform::update() noexcept {
  if (fitted_) scale_ = fittingScale();
  centreX_ = withoutGap(centreX_, picture_.width, window_.width, scale_);
  centreY_ = withoutGap(centreY_, picture_.height, window_.height, scale_);
}

Box ViewTransform::pictureBox() const noexcept {
  const auto side = [this](int pixels) {
    return pixels == 0 ? 0 : std::max(1, static_cast<int>(std::lround(pixels * scale_)));
  };
  return {static_cast<int>(std::lround(window_.width / 2.0 - centreX_ * scale_)),
          static_cast<int>(std::lround(window_.height / 2.0 - centreY_ * scale_)),
          side(picture_.width), side(picture_.height)};
}

bool ViewTransform::isLargerThanWindow() const noexcept {
  const Box box = pictureBox();
  return box.width > window_.width || box.height > window_.height;
}

VisiblePart visiblePart(const ViewTransform& view, const Extent& raster) {
  const Box box = view.pictureBox();
  if (raster.empty() || box.extent().empty() || view.window().empty()) return {};
  const Span across = sourceSpan(box.left, box.width, view.window().width, raster.width);
  const Span down = sourceSpan(box.top, box.height, view.window().height, raster.height);
  if (across.begin >= across.end || down.begin >= down.end) return {};
  return {boxOf(across, down), boxOf(targetSpan(box.left, box.width, across, raster.width),
                                     targetSpan(box.top, box.height, down, raster.height))};
}

}  // namespace fiohost::view

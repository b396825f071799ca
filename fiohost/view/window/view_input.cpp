#include <cmath>

#include "fiohost/view/window/view_window.h"

namespace fiohost::view {
namespace {

constexpr double wheelFactor = 1.25;  // of one notch

}  // namespace

void ViewWindow::onWheel(int delta, POINT screenPlace) {
  ScreenToClient(window_, &screenPlace);
  view_.zoomAbout({static_cast<int>(screenPlace.x), static_cast<int>(screenPlace.y)},
                  std::pow(wheelFactor, static_cast<double>(delta) / WHEEL_DELTA));
  onViewChanged();
}

void ViewWindow::onPress(const Place& place) {
  if (layout_.strip.contains(place)) {
    const FilmStrip strip(layout_.strip, static_cast<int>(document_.imageCount()),
                          static_cast<int>(document_.selected()), dpi_);
    const int image = strip.imageAt(place);
    if (image >= 0) document_.select(static_cast<std::size_t>(image));
    return;
  }
  if (!view_.isLargerThanWindow()) return;
  dragged_ = place;
  SetCapture(window_);
  SetCursor(LoadCursorA(nullptr, IDC_SIZEALL));
}

void ViewWindow::onMove(const Place& place) {
  if (!dragged_) return;
  view_.panBy(place.x - dragged_->x, place.y - dragged_->y);
  dragged_ = place;
  onViewChanged();
}

void ViewWindow::onRelease() {
  if (!dragged_) return;
  dragged_.reset();
  ReleaseCapture();
}

}  // namespace fiohost::view

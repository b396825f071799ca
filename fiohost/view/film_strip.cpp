#include "fiohost/view/film_strip.h"

#include <algorithm>

namespace fiohost::view {
namespace {

constexpr int thumbnailLength = 96;  // at 96 dots per inch, as all of these
constexpr int cellMargin = 6;

int stripHeight(int dpi) { return thumbnailSide(dpi) + 4 * scaledLength(cellMargin, dpi); }

}  // namespace

int thumbnailSide(int dpi) noexcept { return scaledLength(thumbnailLength, dpi); }

WindowLayout layOut(const Extent& client, bool withStrip, int dpi) noexcept {
  const int height = std::max(0, client.height);
  const int strip = withStrip ? std::min(stripHeight(dpi), height) : 0;
  return {{0, 0, client.width, height - strip},
          {0, height - strip, withStrip ? client.width : 0, strip}};
}

FilmStrip::FilmStrip(const Box& strip, int count, int selected, int dpi) noexcept
    : strip_(strip),
      count_(count),
      cellWidth_(thumbnailSide(dpi) + 2 * scaledLength(cellMargin, dpi)),
      margin_(scaledLength(cellMargin, dpi)),
      left_(strip.left) {
  const int total = count * cellWidth_;
  if (total <= strip.width) {
    left_ += (strip.width - total) / 2;
    return;
  }
  const int wanted = selected * cellWidth_ + cellWidth_ / 2 - strip.width / 2;
  left_ -= std::clamp(wanted, 0, total - strip.width);
}

Box FilmStrip::cell(int index) const noexcept {
  return {left_ + index * cellWidth_, strip_.top + margin_, cellWidth_,
          std::max(0, strip_.height - 2 * margin_)};
}

Box FilmStrip::thumbnail(int index) const noexcept {
  const Box outer = cell(index);
  return {outer.left + margin_, outer.top + margin_, std::max(0, outer.width - 2 * margin_),
          std::max(0, outer.height - 2 * margin_)};
}

int FilmStrip::imageAt(const Place& place) const noexcept {
  if (!strip_.contains(place) || place.x < left_) return -1;
  const int index = (place.x - left_) / cellWidth_;
  return index < count_ && cell(index).contains(place) ? index : -1;
}

Box centredIn(const Box& outer, const Extent& picture) noexcept {
  if (picture.empty() || outer.extent().empty()) return {outer.left, outer.top, 0, 0};
  const double scale = std::min({1.0, static_cast<double>(outer.width) / picture.width,
                                 static_cast<double>(outer.height) / picture.height});
  const int width = std::max(1, static_cast<int>(picture.width * scale));
  const int height = std::max(1, static_cast<int>(picture.height * scale));
  return {outer.left + (outer.width - width) / 2, outer.top + (outer.height - height) / 2, width,
          height};
}

}  // namespace fiohost::view

#include "fiohost/view/renderings.h"

#include <algorithm>

namespace fiohost::view {
namespace {

bool isWanted(const Rendering& rendering) {
  return rendering.state == Rendering::State::missing ||
         rendering.state == Rendering::State::running;
}

}  // namespace

Extent Rendering::size() const {
  if (canvas == nullptr) return {};
  return canvas->with([](const Raster& raster) { return raster.size; });
}

void Renderings::setScreen(const Size& screen, int thumbnail) {
  screen_ = {std::max(screen.width, 1U), std::max(screen.height, 1U)};
  const auto side = static_cast<host::u32>(std::max(thumbnail, 1));
  for (Image& image : images_) {
    if (side > thumbnailSide_ && image.thumbnail.isComplete()) image.thumbnail = {};
  }
  thumbnailSide_ = side;
}

void Renderings::reset(const std::vector<Extent>& stored, Orientation orientation) {
  orientation_ = orientation;
  images_.clear();
  for (const Extent& size : stored) images_.push_back({size, {}, {}, {}});
}

Rendering& Renderings::of(const Task& task) {
  return const_cast<Rendering&>(std::as_const(*this).of(task));
}

const Rendering& Renderings::of(const Task& task) const {
  const Image& image = images_.at(task.image);
  if (task.quality == Quality::thumbnail) return image.thumbnail;
  return task.quality == Quality::screen ? image.screen : image.whole;
}

void Renderings::retry(const std::vector<std::size_t>& images) {
  for (const std::size_t image : images) {
    for (Rendering* rendering : {&images_.at(image).screen, &images_.at(image).whole}) {
      if (rendering->state == Rendering::State::failed) *rendering = {};
    }
  }
}

std::optional<Size> Renderings::boxOf(Quality quality) const {
  if (quality == Quality::thumbnail) return Size{thumbnailSide_, thumbnailSide_};
  if (quality == Quality::whole) return std::nullopt;
  // A picture that is turned by a quarter is reduced before it is turned.
  const host::u32 side = std::max(screen_.width, screen_.height);
  return Size{side, side};
}

std::optional<Task> Renderings::nextTask(const std::vector<std::size_t>& shown,
                                         double scale) const {
  for (const std::size_t image : shown) {
    const Task task = {image, Quality::screen};
    if (isWanted(of(task))) return task;
  }
  for (const std::size_t image : shown) {
    const Task task = {image, Quality::whole};
    if (isTooCoarse(image, scale) && isWanted(of(task))) return task;
  }
  for (std::size_t image = 0; images_.size() > 1 && image < images_.size(); ++image) {
    const Task task = {image, Quality::thumbnail};
    if (isWanted(of(task))) return task;
  }
  return std::nullopt;
}

bool Renderings::isTooCoarse(std::size_t image, double scale) const {
  constexpr double rounding = 2;  // pixels
  const Task screen = {image, Quality::screen};
  if (!of(screen).isComplete() || isWhole(screen)) return false;
  return scale * wholeSize(image).width > of(screen).size().width + rounding;
}

Extent Renderings::wholeSize(std::size_t image) const {
  const Image& one = images_.at(image);
  for (const Rendering* rendering : {&one.whole, &one.screen, &one.thumbnail}) {
    if (rendering->canvas == nullptr) continue;
    const Extent size = rendering->canvas->wholeSize();
    if (!size.empty()) return size;
  }
  return orientation_.shownSize(one.stored);
}

bool Renderings::isWhole(const Task& task) const {
  return of(task).isComplete() && of(task).size() == wholeSize(task.image);
}

std::optional<Quality> Renderings::completeIn(const std::vector<std::size_t>& images) const {
  for (const Quality quality : {Quality::whole, Quality::screen}) {
    const bool all = std::all_of(images.begin(), images.end(), [&](std::size_t image) {
      return of({image, quality}).isComplete();
    });
    if (all) return quality;
  }
  return std::nullopt;
}

const Rendering& Renderings::best(std::size_t image) const {
  const Image& one = images_.at(image);
  if (one.whole.isComplete() || one.screen.canvas == nullptr) return one.whole;
  return one.screen;
}

}  // namespace fiohost::view

// The decoded forms of a file's images: which there are, and which is wanted next.
#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "fiohost/area_shrinker.h"
#include "fiohost/view/canvas.h"

namespace fiohost::view {

enum class Quality { thumbnail, screen, whole };

struct Rendering {
  enum class State { missing, running, complete, failed };

  State state = State::missing;
  std::shared_ptr<Canvas> canvas;  // null before the first attempt; may hold a part of the picture

  [[nodiscard]] bool isComplete() const noexcept { return state == State::complete; }
  [[nodiscard]] Extent size() const;  // of the pixels that there are place for
};

// One decoding.
struct Task {
  std::size_t image;
  Quality quality;

  friend bool operator==(const Task&, const Task&) = default;
};

class Renderings {
 public:
  // The largest picture that the screen shows at once, and the side of a thumbnail; thumbnails that
  // are smaller come anew.
  void setScreen(const Size& screen, int thumbnail);

  // Forgets everything. stored: the images' sizes as far as they are known; orientation: of the
  // first, and of the others until they are read.
  void reset(const std::vector<Extent>& stored, Orientation orientation);
  [[nodiscard]] std::size_t count() const noexcept { return images_.size(); }

  [[nodiscard]] Rendering& of(const Task& task);
  [[nodiscard]] const Rendering& of(const Task& task) const;
  // Gives what failed of these images another chance.
  void retry(const std::vector<std::size_t>& images);
  // The box that a task's picture is reduced to.
  [[nodiscard]] std::optional<Size> boxOf(Quality quality) const;

  // The images that are looked at come first, at screen size, then the whole ones that the scale
  // needs, then the thumbnails of all when there are several.
  [[nodiscard]] std::optional<Task> nextTask(const std::vector<std::size_t>& shown,
                                             double scale) const;

  // The picture at 1:1 as it is seen; empty while not known.
  [[nodiscard]] Extent wholeSize(std::size_t image) const;
  // Whether the rendering has every pixel of the image.
  [[nodiscard]] bool isWhole(const Task& task) const;
  // The best quality that all the images are complete in.
  [[nodiscard]] std::optional<Quality> completeIn(const std::vector<std::size_t>& images) const;
  // The rendering to show of one image: the best complete one, or what has come of one.
  [[nodiscard]] const Rendering& best(std::size_t image) const;

 private:
  struct Image {
    Extent stored;
    Rendering thumbnail;
    Rendering screen;
    Rendering whole;
  };
  [[nodiscard]] bool isTooCoarse(std::size_t image, double scale) const;

  Size screen_ = {1, 1};
  host::u32 thumbnailSide_ = 1;
  Orientation orientation_;
  std::vector<Image> images_;
};

}  // namespace fiohost::view

#include "fiohost/mpo_edit/stream_match.h"

#include <algorithm>
#include <numeric>

namespace fiohost {
namespace {

class Matcher {
 public:
  Matcher(const std::vector<ListedPlace>& images, const std::vector<JpegStream>& streams)
      : images_(images), streams_(streams), result_(images.size()), taken_(streams.size()) {}

  std::vector<std::optional<std::size_t>> match() {
    if (!streams_.empty() && !images_.empty()) take(0, 0);
    for (const bool bySize : {false, true}) {
      for (std::size_t image = 0; image < images_.size(); ++image) {
        if (!result_[image]) takeWhere(image, bySize);
      }
    }
    takeRest();
    return std::move(result_);
  }

 private:
  void take(std::size_t image, std::size_t stream) {
    result_[image] = stream;
    taken_[stream] = true;
  }

  void takeWhere(std::size_t image, bool bySize) {
    for (std::size_t stream = 1; stream < streams_.size(); ++stream) {
      const bool same = bySize ? streams_[stream].size() == images_[image].size
                               : streams_[stream].start == images_[image].start;
      if (!same || taken_[stream]) continue;
      take(image, stream);
      return;
    }
  }

  void takeRest() {
    std::vector<std::size_t> order(images_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
      return images_[a].start < images_[b].start;
    });
    std::size_t stream = 0;
    for (const std::size_t image : order) {
      if (result_[image]) continue;
      while (stream < streams_.size() && taken_[stream]) ++stream;
      if (stream == streams_.size()) return;
      take(image, stream);
    }
  }

  const std::vector<ListedPlace>& images_;
  const std::vector<JpegStream>& streams_;
  std::vector<std::optional<std::size_t>> result_;
  std::vector<bool> taken_;
};

}  // namespace

std::vector<std::optional<std::size_t>> matchStreams(const std::vector<ListedPlace>& images,
                                                     const std::vector<JpegStream>& streams) {
  return Matcher(images, streams).match();
}

}  // namespace fiohost

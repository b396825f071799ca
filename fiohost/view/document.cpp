#include "fiohost/view/document.h"

#include <algorithm>
#include <cmath>

#include "fiohost/failure.h"

namespace fiohost::view {
namespace {

// What a job ended with; empty when it succeeded.
template <typename Work>
std::string problemOf(Work work) noexcept {
  try {
    work();
    return {};
  } catch (const Failure& failure) {
    return failure.line();
  } catch (const std::bad_alloc&) {
    return "there is not enough memory";
  } catch (const std::exception& error) {
    return error.what();
  }
}

}  // namespace

Document::Document(const Session& session, Mailbox& mailbox, std::function<void()> changed)
    : session_(session), mailbox_(mailbox), changed_(std::move(changed)) {}

Document::~Document() { cancelRunning(); }

void Document::open(const std::string& name) {
  cancelRunning();
  name_ = name;
  facts_.reset();
  renderings_.reset({}, Orientation());
  composed_.reset();
  problem_.clear();
  selected_ = 0;
  stopped_ = false;
  startDescribing();
  changed_();
}

void Document::stop() {
  if (!isBusy()) return;
  cancelRunning();
  stopped_ = true;
  changed_();
}

void Document::setScreen(const Size& screen, int thumbnail) {
  renderings_.setScreen(screen, thumbnail);
  if (!stopped_) schedule();
}

void Document::lookAtScale(double scale) {
  if (scale == scale_) return;
  scale_ = scale;
  if (!stopped_) schedule();
}

void Document::select(std::size_t image) {
  if (image >= imageCount()) return;
  selected_ = image;
  stereo_ = StereoMode::off;
  orderAgain();
}

void Document::setStereo(StereoMode mode) {
  stereo_ = mode;
  wiggle_ = 0;
  orderAgain();
}

void Document::setParallax(int pixels) {
  parallax_ = pixels;
  composed_.reset();
  changed_();
}

void Document::nextWiggle() {
  ++wiggle_;
  composed_.reset();
}

// Something else is looked at; whoever asks for it wants the work to go on.
void Document::orderAgain() {
  composed_.reset();
  problem_.clear();
  stopped_ = false;
  if (facts_) renderings_.retry(shownImages());
  schedule();
  changed_();
}

void Document::schedule() {
  if (describing_ || !facts_) return;
  const std::optional<Task> next = renderings_.nextTask(shownImages(), scale_);
  if (running_ && next == running_) return;
  cancelRunning();
  if (next) start(*next);
}

void Document::cancelRunning() {
  if (flag_ != nullptr) *flag_ = true;
  flag_ = nullptr;
  describing_ = false;
  if (!running_) return;
  renderings_.of(*running_).state = Rendering::State::missing;
  running_.reset();
}

void Document::startDescribing() {
  describing_ = true;
  flag_ = worker_.add([this, name = name_](const StopFlag& flag) {
    FileFacts facts;
    const std::string problem = problemOf([&] { facts = gatherFacts(session_, name); });
    mailbox_.post([this, flag, facts = std::move(facts), problem] {
      if (*flag) return;
      flag_ = nullptr;
      describing_ = false;
      problem_ = problem;
      if (problem.empty()) onDescribed(facts);
      changed_();
    });
  });
}

void Document::onDescribed(FileFacts facts) {
  renderings_.reset(facts.images, facts.orientation);
  facts_ = std::move(facts);
  schedule();
}

void Document::start(const Task& task) {
  Rendering& rendering = renderings_.of(task);
  rendering = {Rendering::State::running, std::make_shared<Canvas>()};
  running_ = task;
  flag_ = worker_.add([this, task, name = name_, several = facts_->isMultiPicture,
                       box = renderings_.boxOf(task.quality),
                       canvas = rendering.canvas](const StopFlag& flag) {
    const std::string problem = problemOf([&] {
      const ImageFile file(session_, name, several, task.image);
      decodeInto(*canvas, session_, file.source(), box, flag);
    });
    mailbox_.post([this, flag, task, problem] {
      if (!*flag) onDecoded(task, problem);
    });
  });
}

void Document::onDecoded(const Task& task, const std::string& problem) {
  running_.reset();
  flag_ = nullptr;
  renderings_.of(task).state =
      problem.empty() ? Rendering::State::complete : Rendering::State::failed;
  if (task.quality != Quality::thumbnail) {
    composed_.reset();
    if (!problem.empty()) problem_ = problem;
  }
  schedule();
  changed_();
}

StereoMode Document::shownStereo() const noexcept {
  return facts_ && facts_->stereo ? stereo_ : StereoMode::off;
}

std::vector<std::size_t> Document::shownImages() const {
  if (shownStereo() == StereoMode::off) return {selected_};
  return {facts_->stereo->left, facts_->stereo->right};
}

bool Document::isBusy() const noexcept {
  return describing_ || (running_ && running_->quality != Quality::thumbnail);
}

Canvas::Progress Document::progress() const {
  if (!running_) return {};
  return renderings_.of(*running_).canvas->progress();
}

Extent Document::pictureSize() const {
  if (!facts_) return {};
  const std::vector<std::size_t> shown = shownImages();
  const Extent first = renderings_.wholeSize(shown.front());
  // Until both have come the first is shown alone.
  if (shown.size() == 1 || !renderings_.completeIn(shown)) return first;
  const Extent second = renderings_.wholeSize(shown.back());
  return composedSize(shownStereo(),
                      {std::min(first.width, second.width), std::min(first.height, second.height)});
}

bool Document::isWhole() const {
  if (!facts_) return false;
  const std::vector<std::size_t> shown = shownImages();
  const std::optional<Quality> quality = renderings_.completeIn(shown);
  return quality && std::all_of(shown.begin(), shown.end(), [&](std::size_t image) {
           return renderings_.isWhole({image, *quality});
         });
}

void Document::compose(Quality quality) {
  const StereoPair pair = *facts_->stereo;
  const Rendering& left = renderings_.of({pair.left, quality});
  const Rendering& right = renderings_.of({pair.right, quality});
  const double share =
      static_cast<double>(left.size().width) / std::max(1, renderings_.wholeSize(pair.left).width);
  const int shift = static_cast<int>(std::lround(parallax_ * share));
  left.canvas->with([&](const Raster& leftRaster) {
    right.canvas->with([&](const Raster& rightRaster) {
      composed_ = composeStereo(shownStereo(), leftRaster, rightRaster, shift, wiggle_);
    });
  });
}

void Document::withPicture(const UseRaster& use) {
  if (!facts_) return;
  const std::vector<std::size_t> shown = shownImages();
  if (shown.size() > 1) {
    const std::optional<Quality> quality = renderings_.completeIn(shown);
    if (quality && !composed_) compose(*quality);
    if (composed_) {
      use(*composed_);
      return;
    }
  }
  const Rendering& best = renderings_.best(shown.front());
  if (best.canvas != nullptr) best.canvas->with(use);
}

void Document::withThumbnail(std::size_t image, const UseRaster& use) const {
  if (image >= imageCount()) return;
  const Rendering& rendering = renderings_.of({image, Quality::thumbnail});
  if (rendering.canvas != nullptr) rendering.canvas->with(use);
}

}  // namespace fiohost::view

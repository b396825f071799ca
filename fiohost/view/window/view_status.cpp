#include <algorithm>
#include <cmath>

#include "fiohost/view/window/view_window.h"
#include "platform/console/console.h"
#include "platform/wide_text.h"

namespace fiohost::view {
namespace {

constexpr UINT progressInterval = 40;  // milliseconds
constexpr UINT wiggleInterval = 180;   // slow enough for the eye to take both pictures

std::string fileName(const std::string& path) {
  return platform::displayPath(platform::systemPath(path).filename());
}

std::string percentText(double scale) { return std::to_string(std::lround(scale * 100)) + " %"; }

std::string stereoText(StereoMode mode, int parallax) {
  static constexpr const char* names[stereoModeCount] = {"", "anaglyph", "side by side",
                                                         "cross-eyed", "wiggle"};
  return std::string(names[static_cast<int>(mode)]) + ", parallax " + std::to_string(parallax);
}

}  // namespace

// Called for everything new, also while rows come in.
void ViewWindow::onDocumentChanged() {
  if (window_ == nullptr) return;
  const bool strip = settings_.filmStrip && document_.imageCount() > 1;
  if (strip == layout_.strip.extent().empty()) onSize();
  view_.setPicture(document_.pictureSize());
  copyWhenWhole();
  onViewChanged();
}

void ViewWindow::onViewChanged() {
  if (document_.facts() != nullptr) {
    document_.lookAtScale(copyPending_ ? std::max(1.0, view_.scale()) : view_.scale());
  }
  updateTimers();
  updateTexts();
  redraw();
}

void ViewWindow::updateTimers() {
  const auto run = [this](bool wanted, Timer timer, UINT interval) {
    const bool isOn = (timersOn_ & (1U << timer)) != 0;
    if (wanted && !isOn) SetTimer(window_, timer, interval, nullptr);
    if (!wanted && isOn) KillTimer(window_, timer);
    if (wanted != isOn) timersOn_ ^= 1U << timer;
  };
  run(document_.isBusy() || saving_ != nullptr, progressTimer, progressInterval);
  run(document_.shownStereo() == StereoMode::wiggle, wiggleTimer, wiggleInterval);
}

void ViewWindow::updateTexts() {
  std::string title = "fiohost";
  if (!files_.empty()) {
    title = fileName(files_.current()) + " (" + std::to_string(files_.position() + 1) + " of " +
            std::to_string(files_.count()) + ") - " + title;
  }
  if (title != title_) SetWindowTextW(window_, platform::wideText(title).c_str());
  title_ = title;
  const Extent size = document_.pictureSize();
  status_.setText(StatusBar::partMessage, messageText());
  status_.setText(
      StatusBar::partSize,
      size.empty() ? "" : std::to_string(size.width) + " x " + std::to_string(size.height));
  status_.setText(StatusBar::partScale, size.empty() ? "" : percentText(view_.scale()));
  status_.setProgress(workProgress());
}

std::string ViewWindow::messageText() const {
  if (!notice_.empty()) return notice_;
  if (saving_ != nullptr) return "Saving";
  if (!document_.problem().empty()) return document_.problem();
  if (document_.isBusy()) return "Decoding";
  if (document_.isStopped()) return "Stopped";
  const FileFacts* facts = document_.facts();
  if (facts == nullptr) return "";
  if (document_.shownStereo() != StereoMode::off) {
    return stereoText(document_.shownStereo(), document_.parallax());
  }
  if (facts->images.size() > 1) {
    return "Image " + std::to_string(document_.selected() + 1) + " of " +
           std::to_string(facts->images.size());
  }
  return facts->note;
}

std::optional<Canvas::Progress> ViewWindow::workProgress() const {
  if (document_.isBusy()) return document_.progress();
  if (saving_ != nullptr) return Canvas::Progress{saving_->done, saving_->total};
  return std::nullopt;
}

std::string ViewWindow::emptyText() const {
  if (!document_.problem().empty()) return fileName(document_.name()) + "\n" + document_.problem();
  if (document_.isBusy()) return "";
  if (!files_.empty()) return document_.isStopped() ? "Stopped. F5 reads the picture again." : "";
  return "Open a picture with Ctrl+O, or drop files here.";
}

void ViewWindow::redraw() const { InvalidateRect(window_, nullptr, FALSE); }

}  // namespace fiohost::view

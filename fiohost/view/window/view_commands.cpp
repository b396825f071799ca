#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/failure.h"
#include "fiohost/view/dib.h"
#include "fiohost/view/window/file_dialogs.h"
#include "fiohost/view/window/view_window.h"
#include "platform/console/console.h"
#include "platform/wide_text.h"

namespace fiohost::view {
namespace {

constexpr double keyZoom = 1.25;
constexpr int parallaxStep = 2;  // pixels of the picture

}  // namespace

void ViewWindow::open(const std::vector<std::string>& files) {
  if (files.empty()) return;
  FileSequence sequence(files);
  if (sequence.empty()) throw Failure("there are no pictures in " + files.front(), "");
  isFolder_ = files.size() == 1;
  files_ = std::move(sequence);
  show(true);
}

void ViewWindow::openFirst(const std::vector<std::string>& files) {
  static_cast<void>(guard([&] { open(files); }));
  updateTexts();
}

// The current file of the sequence, when it has moved to one.
void ViewWindow::show(bool moved) {
  if (!moved) return;
  notice_.clear();
  copyPending_ = false;
  if (!view_.isFitted()) view_.showActualSize();
  document_.open(files_.current());
}

ViewerState ViewWindow::state() const {
  ViewerState state;
  const FileFacts* facts = document_.facts();
  const std::size_t images = document_.imageCount();
  state.hasFile = facts != nullptr;
  state.hasNamed = !files_.empty();
  state.isSaving = saving_ != nullptr;
  state.isWorking = document_.isBusy() || state.isSaving;
  state.hasNextFile = !files_.empty() && files_.position() + 1 < files_.count();
  state.hasPreviousFile = !files_.empty() && files_.position() > 0;
  state.hasNextImage = document_.selected() + 1 < images;
  state.hasPreviousImage = document_.selected() > 0;
  state.hasPair = facts != nullptr && facts->stereo.has_value();
  state.fitted = view_.isFitted();
  state.actualSize = !view_.isFitted() && view_.scale() == 1;
  state.filmStrip = settings_.filmStrip;
  state.stereo = document_.shownStereo();
  return state;
}

void ViewWindow::obey(Action action) {
  if (!isEnabled(action, state())) return;
  notice_.clear();
  static_cast<void>(guard([&] {
    if (action <= Action::leave) return obeyFile(action);
    if (action >= Action::stereoOff) return obeyStereo(action);
    obeyView(action);
  }));
  if (window_ == nullptr) return;
  updateMenu(GetMenu(window_), state());
  onDocumentChanged();
}

void ViewWindow::obeyFile(Action action) {
  switch (action) {
    case Action::open:
      return askAndOpen();
    case Action::saveAs:
      return askAndSave();
    case Action::reload:
      return show(true);
    case Action::properties:
      return showProperties();
    case Action::nextFile:
      return show(files_.step(1));
    case Action::previousFile:
      return show(files_.step(-1));
    case Action::firstFile:
      return show(files_.toFirst());
    case Action::lastFile:
      return show(files_.toLast());
    default:
      DestroyWindow(window_);
  }
}

void ViewWindow::obeyView(Action action) {
  switch (action) {
    case Action::copy:
      return copyPicture();
    case Action::fit:
      return view_.fit();
    case Action::actualSize:
      return view_.showActualSize();
    case Action::zoomIn:
      return view_.zoomAbout(view_.middle(), keyZoom);
    case Action::zoomOut:
      return view_.zoomAbout(view_.middle(), 1 / keyZoom);
    case Action::filmStrip:
      settings_.filmStrip = !settings_.filmStrip;
      return;
    case Action::stop:
      return stopWork();
    default:
      selectImage(action == Action::nextImage ? 1 : -1);
  }
}

void ViewWindow::obeyStereo(Action action) {
  if (action <= Action::wiggle) return document_.setStereo(stereoModeOf(action));
  const int step = action == Action::moreParallax ? parallaxStep : -parallaxStep;
  const int wanted = action == Action::noParallax ? 0 : document_.parallax() + step;
  document_.setParallax(std::clamp(wanted, -mostParallax, mostParallax));
}

void ViewWindow::selectImage(int by) {
  document_.select(by > 0 ? document_.selected() + 1 : document_.selected() - 1);
}

void ViewWindow::stopWork() {
  document_.stop();
  copyPending_ = false;
  if (savingFlag_ != nullptr) *savingFlag_ = true;
}

void ViewWindow::askAndOpen() {
  const std::string folder =
      files_.empty() ? std::string()
                     : platform::displayPath(platform::systemPath(files_.current()).parent_path());
  open(askFilesToOpen(window_, folder));
}

void ViewWindow::showProperties() {
  const ImageFile file(session_, document_.name(), document_.facts()->isMultiPicture,
                       document_.selected());
  const Described described = describeFile(session_, file.source());
  session_.plugin.showProperties(described.fileData.handle(), window_);
}

// Seen in stereo, the left image stands for the file.
std::size_t ViewWindow::imageToSave() const {
  return document_.shownStereo() == StereoMode::off ? document_.selected()
                                                    : document_.facts()->stereo->left;
}

// Answers whether to go on.
bool ViewWindow::settleLosses(SaveOrder& order) {
  const LossQuestion question = lossQuestion(session_, order);
  if (question.text.empty()) return true;
  const UINT buttons = question.canBeKept ? MB_YESNOCANCEL : MB_OKCANCEL;
  const int answer = MessageBoxW(window_, platform::wideText(question.text).c_str(), L"Save As",
                                 buttons | MB_ICONWARNING);
  order.keepsOthers = answer == IDYES;
  return answer != IDCANCEL;
}

void ViewWindow::askAndSave() {
  SaveOrder order = {
      document_.name(), document_.facts()->isMultiPicture, imageToSave(), {}, {}, false};
  if (!settleLosses(order)) return;
  const std::optional<std::string> target = askNameToSave(
      window_,
      suggestedName(order.source, order.isMultiPicture && !order.keepsOthers, order.image));
  if (!target) return;
  order.target = *target;
  save(order);
}

void ViewWindow::save(SaveOrder order) {
  if (document_.facts() == nullptr || saving_ != nullptr) return;
  const std::optional<SaveSettings> settings = askSettings(session_, order, window_);
  if (!settings) return;
  order.settings = *settings;
  beginSaving(order);
}

void ViewWindow::beginSaving(const SaveOrder& order) {
  saving_ = std::make_shared<SaveProgress>();
  savingFlag_ = saver_.add([this, order, progress = saving_](const StopFlag& flag) {
    std::string problem;
    try {
      saveImage(session_, order, [&](host::u32 done, host::u32 total) {
        progress->done = static_cast<int>(done);
        progress->total = static_cast<int>(total);
        return !*flag;
      });
    } catch (const Failure& failure) {
      problem = *flag ? "stopped; nothing was written" : failure.line();
    } catch (const std::exception& error) {
      problem = error.what();
    }
    mailbox_.post([this, order, problem] { onSaved(order, problem); });
  });
  onViewChanged();
}

void ViewWindow::onSaved(const SaveOrder& order, const std::string& problem) {
  saving_.reset();
  savingFlag_.reset();
  // A file that has come to the folder is one to step to.
  if (isFolder_) files_ = FileSequence({files_.current()});
  if (problem.empty() && order.target == document_.name()) show(true);
  notice_ = problem.empty() ? "Saved " + order.target : order.target + ": " + problem;
  onViewChanged();
}

void ViewWindow::copyPicture() {
  copyPending_ = true;
  document_.lookAtScale(std::max(1.0, view_.scale()));
  copyWhenWhole();
}

// The clipboard gets every pixel, so a reduced rendering is followed by the whole one first.
void ViewWindow::copyWhenWhole() {
  if (!copyPending_) return;
  if (!document_.isWhole() && document_.isBusy()) return;
  copyPending_ = false;
  document_.withPicture([this](const Raster& raster) {
    const std::vector<std::uint8_t> dib = dibOf(raster);
    platform::OwnedGlobal block(GMEM_MOVEABLE, dib.size());
    {
      const platform::LockedGlobal lock(block.get());
      if (!lock) throw std::bad_alloc();
      std::copy(dib.begin(), dib.end(), static_cast<std::uint8_t*>(lock.address()));
    }
    const platform::OpenedClipboard clipboard(window_);
    notice_ = clipboard.put(CF_DIB, std::move(block)) ? "Copied" : "the clipboard is in use";
  });
}

}  // namespace fiohost::view

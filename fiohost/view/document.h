// The file that the window shows: what of it is decoded, what comes next, and the picture made of
// it. All calls come from one thread; the decoding is done in another.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fiohost/view/decode.h"
#include "fiohost/view/renderings.h"
#include "fiohost/view/stereo.h"
#include "fiohost/view/worker.h"

namespace fiohost::view {

using UseRaster = std::function<void(const Raster&)>;

class Document {
 public:
  // changed is called when something else than rows is new. Everything must outlive the document.
  Document(const Session& session, Mailbox& mailbox, std::function<void()> changed);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  ~Document();

  // Forgets the file before and begins with this one.
  void open(const std::string& name);
  // Ends the work under way; what has come of the picture stays.
  void stop();

  // As Renderings::setScreen().
  void setScreen(const Size& screen, int thumbnail);
  // The scale that the picture is looked at: a reduced rendering that is too coarse for it is
  // followed by the whole one.
  void lookAtScale(double scale);
  // Shows one image of several, without stereo.
  void select(std::size_t image);
  // A file without a stereo pair is shown as it is; the mode waits for the next file.
  void setStereo(StereoMode mode);
  void setParallax(int pixels);
  void nextWiggle();

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  // Null while nothing is known of the file.
  [[nodiscard]] const FileFacts* facts() const noexcept { return facts_ ? &*facts_ : nullptr; }
  [[nodiscard]] std::size_t imageCount() const noexcept { return renderings_.count(); }
  [[nodiscard]] std::size_t selected() const noexcept { return selected_; }
  [[nodiscard]] StereoMode stereo() const noexcept { return stereo_; }
  [[nodiscard]] StereoMode shownStereo() const noexcept;
  [[nodiscard]] int parallax() const noexcept { return parallax_; }

  // Whether a picture is being decoded, and how far it is. Thumbnails do not count.
  [[nodiscard]] bool isBusy() const noexcept;
  [[nodiscard]] Canvas::Progress progress() const;
  [[nodiscard]] bool isStopped() const noexcept { return stopped_; }
  // What went wrong with the file or the shown image; empty when nothing did.
  [[nodiscard]] const std::string& problem() const noexcept { return problem_; }

  // The size of the picture at 1:1, turned and composed; empty while not known.
  [[nodiscard]] Extent pictureSize() const;
  // Calls use with the best rendering of the picture there is, and not at all when there is none.
  void withPicture(const UseRaster& use);
  void withThumbnail(std::size_t image, const UseRaster& use) const;
  // Whether withPicture() gives every pixel of the picture.
  [[nodiscard]] bool isWhole() const;

 private:
  void orderAgain();
  void schedule();
  void startDescribing();
  void start(const Task& task);
  void cancelRunning();
  void onDescribed(FileFacts facts);
  void onDecoded(const Task& task, const std::string& problem);
  [[nodiscard]] std::vector<std::size_t> shownImages() const;
  void compose(Quality quality);

  const Session& session_;
  Mailbox& mailbox_;
  std::function<void()> changed_;

  std::string name_;
  std::optional<FileFacts> facts_;
  Renderings renderings_;
  double scale_ = 0;
  std::size_t selected_ = 0;
  StereoMode stereo_ = StereoMode::off;
  int parallax_ = 0;
  unsigned wiggle_ = 0;
  std::optional<Raster> composed_;

  std::string problem_;
  bool stopped_ = false;
  bool describing_ = false;
  std::optional<Task> running_;
  StopFlag flag_;  // of the job under way, or null

  Worker worker_;  // last, so that it ends before what its jobs use
};

}  // namespace fiohost::view

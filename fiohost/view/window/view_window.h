// The window that shows pictures: it turns messages into calls of the models and draws what they
// say.
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "fiohost/view/document.h"
#include "fiohost/view/file_sequence.h"
#include "fiohost/view/film_strip.h"
#include "fiohost/view/saving.h"
#include "fiohost/view/view_settings.h"
#include "fiohost/view/view_transform.h"
#include "fiohost/view/window/menu.h"
#include "fiohost/view/window/status_bar.h"

namespace fiohost::view {

class ViewWindow {
 public:
  static constexpr wchar_t className[] = L"KfPictureWindow";

  // Opens the window. settingsPath: of the settings file, empty for none. Throws Failure.
  ViewWindow(const Session& session, std::string settingsPath);
  ViewWindow(const ViewWindow&) = delete;
  ViewWindow& operator=(const ViewWindow&) = delete;
  ~ViewWindow();

  // Shows the first of the files, as FileSequence takes them. Throws Failure when there is none.
  void open(const std::vector<std::string>& files);
  // The same, but the window tells of a failure.
  void openFirst(const std::vector<std::string>& files);
  // Returns when the window has been closed.
  void run();

 private:
  enum Timer : UINT_PTR { progressTimer = 1, wiggleTimer, interruptTimer };
  static constexpr UINT mailMessage = WM_APP + 1;

  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                    LPARAM lParam) noexcept;
  LRESULT answer(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT answerInput(UINT message, WPARAM wParam, LPARAM lParam);

  // view_window.cpp: the window itself.
  void create();
  void onCreate();
  void place();
  void onSize();
  void onDpiChanged(int dpi, const RECT& suggested);
  void onPaint();
  void onTimer(UINT_PTR timer);
  void onDestroy();
  // False when the work threw, of which the status bar is to tell.
  bool guard(const std::function<void()>& work) noexcept;

  // view_input.cpp: mouse and dropped files.
  void onWheel(int delta, POINT screenPlace);
  void onPress(const Place& place);
  void onMove(const Place& place);
  void onRelease();

  // view_commands.cpp: what a user can order.
  void obey(Action action);
  void obeyFile(Action action);
  void obeyView(Action action);
  void obeyStereo(Action action);
  void show(bool moved);
  void askAndOpen();
  void askAndSave();
  bool settleLosses(SaveOrder& order);
  // Asks for the save options and saves.
  void save(SaveOrder order);
  void beginSaving(const SaveOrder& order);
  void onSaved(const SaveOrder& order, const std::string& problem);
  void showProperties();
  void stopWork();
  void selectImage(int by);
  void copyPicture();
  void copyWhenWhole();
  [[nodiscard]] ViewerState state() const;
  [[nodiscard]] std::size_t imageToSave() const;

  // view_status.cpp: what the window says.
  void onDocumentChanged();
  void onViewChanged();
  void updateTimers();
  void updateTexts();
  [[nodiscard]] std::string messageText() const;
  [[nodiscard]] std::optional<Canvas::Progress> workProgress() const;
  [[nodiscard]] std::string emptyText() const;
  void redraw() const;

  const Session& session_;
  const std::string settingsPath_;
  ViewSettings settings_;
  HWND window_ = nullptr;
  OwnedKeys keys_;
  StatusBar status_;
  OwnedFont font_;
  int dpi_ = 96;

  FileSequence files_;
  bool isFolder_ = false;
  ViewTransform view_;
  WindowLayout layout_;
  std::optional<Place> dragged_;
  bool copyPending_ = false;
  std::string notice_;  // of what was done last
  std::string title_;
  unsigned timersOn_ = 0;  // a bit each

  struct SaveProgress {
    std::atomic<int> done = 0;
    std::atomic<int> total = 0;
  };
  std::shared_ptr<SaveProgress> saving_;  // null when nothing is being saved
  StopFlag savingFlag_;

  Mailbox mailbox_;
  Document document_;
  Worker saver_;  // last: it ends before what its jobs use
};

}  // namespace fiohost::view

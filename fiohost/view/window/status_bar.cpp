#include "fiohost/view/window/status_bar.h"

#include <algorithm>

#include "platform/wide_text.h"

namespace fiohost::view {
namespace {

// At 96 dots per inch.
constexpr int sizeWidth = 110;
constexpr int scaleWidth = 70;
constexpr int progressWidth = 140;
constexpr int progressMargin = 3;
constexpr int gripWidth = 18;

constexpr int progressSteps = 1000;

}  // namespace

void StatusBar::create(HWND parent, int dpi) {
  bar_ = CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                         0, 0, parent, reinterpret_cast<HMENU>(INT_PTR{barId}), nullptr, nullptr);
  progress_ = CreateWindowExW(0, PROGRESS_CLASSW, nullptr, WS_CHILD, 0, 0, 0, 0, bar_,
                              reinterpret_cast<HMENU>(INT_PTR{progressId}), nullptr, nullptr);
  SendMessageW(progress_, PBM_SETRANGE32, 0, progressSteps);
  setDpi(dpi);
}

void StatusBar::setDpi(int dpi) {
  dpi_ = dpi;
  OwnedFont font = messageFont(dpi);
  SendMessageW(bar_, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
  font_ = std::move(font);
}

int StatusBar::layOut() {
  SendMessageW(bar_, WM_SIZE, 0, 0);
  RECT client = {};
  GetClientRect(bar_, &client);
  const int end = static_cast<int>(client.right) - scaledLength(gripWidth, dpi_);
  const int scaleEnd = end - scaledLength(progressWidth, dpi_);
  const int sizeEnd = scaleEnd - scaledLength(scaleWidth, dpi_);
  const int parts[partCount] = {std::max(0, sizeEnd - scaledLength(sizeWidth, dpi_)), sizeEnd,
                                scaleEnd, -1};
  SendMessageW(bar_, SB_SETPARTS, partCount, reinterpret_cast<LPARAM>(parts));
  const int margin = scaledLength(progressMargin, dpi_);
  const int height = static_cast<int>(client.bottom);
  MoveWindow(progress_, scaleEnd + margin, margin + 1, end - scaleEnd - 2 * margin,
             std::max(0, height - 2 * margin - 1), TRUE);
  return height;
}

void StatusBar::setText(Part part, const std::string& text) {
  if (texts_[part] == text) return;
  texts_[part] = text;
  SendMessageW(bar_, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(platform::wideText(text).c_str()));
}

void StatusBar::setProgress(const std::optional<Canvas::Progress>& progress) {
  if (progress) {
    const int total = std::max(1, progress->total);
    SendMessageW(progress_, PBM_SETPOS,
                 static_cast<WPARAM>(MulDiv(progress->done, progressSteps, total)), 0);
  }
  ShowWindow(progress_, progress ? SW_SHOWNA : SW_HIDE);
}

}  // namespace fiohost::view

#include "fiohost/view/window/view_window.h"

#include <shellapi.h>
#include <windowsx.h>

#include "fiohost/failure.h"
#include "fiohost/interrupt.h"
#include "fiohost/view/window/file_dialogs.h"
#include "fiohost/view/window/painter.h"

namespace fiohost::view {
namespace {

constexpr UINT interruptInterval = 500;  // milliseconds between looking for Ctrl+C in the console

// At 96 dots per inch.
constexpr Extent firstSize = {960, 720};
constexpr Extent smallestSize = {360, 280};

Place placeOf(LPARAM lParam) { return {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}; }

}  // namespace

ViewWindow::ViewWindow(const Session& session, std::string settingsPath)
    : session_(session),
      settingsPath_(std::move(settingsPath)),
      keys_(makeKeys()),
      mailbox_([this] { PostMessageW(window_, mailMessage, 0, 0); }),
      document_(session, mailbox_, [this] { onDocumentChanged(); }) {
  if (!settingsPath_.empty()) settings_ = loadViewSettings(settingsPath_);
  if (!settings_.fitted) view_.showActualSize();
  document_.setParallax(settings_.parallax);
  document_.setStereo(settings_.stereo);
  create();
}

ViewWindow::~ViewWindow() {
  if (window_ != nullptr) DestroyWindow(window_);
  UnregisterClassW(className, GetModuleHandleW(nullptr));
}

void ViewWindow::create() {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = &ViewWindow::procedure;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconA(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
  windowClass.lpszClassName = className;
  RegisterClassExW(&windowClass);
  HWND created = CreateWindowExW(WS_EX_ACCEPTFILES, className, L"fiohost", WS_OVERLAPPEDWINDOW,
                                 CW_USEDEFAULT, CW_USEDEFAULT, firstSize.width, firstSize.height,
                                 nullptr, makeMenuBar(), windowClass.hInstance, this);
  if (created == nullptr) {
    UnregisterClassW(className, windowClass.hInstance);
    throw Failure("the window cannot be opened", "see that there is a display");
  }
}

LRESULT CALLBACK ViewWindow::procedure(HWND window, UINT message, WPARAM wParam,
                                       LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<ViewWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<ViewWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self == nullptr) return DefWindowProcW(window, message, wParam, lParam);
  LRESULT result = 0;
  const bool done = self->guard([&] { result = self->answer(message, wParam, lParam); });
  if (!done && self->window_ != nullptr) self->guard([self] { self->updateTexts(); });
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    self->window_ = nullptr;
  }
  return result;
}

// Nothing is thrown through the system's dispatching.
bool ViewWindow::guard(const std::function<void()>& work) noexcept {
  try {
    try {
      work();
      return true;
    } catch (const Failure& failure) {
      notice_ = failure.line();
    } catch (const std::exception& error) {
      notice_ = error.what();
    }
  } catch (...) {  // there is no memory even for a text
  }
  return false;
}

LRESULT ViewWindow::answer(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      onCreate();
      return 0;
    case WM_SIZE:
      onSize();
      return 0;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {
          scaledLength(smallestSize.width, dpi_), scaledLength(smallestSize.height, dpi_)};
      return 0;
    case WM_DPICHANGED:
      onDpiChanged(HIWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT:
      onPaint();
      return 0;
    case WM_TIMER:
      onTimer(wParam);
      return 0;
    case mailMessage:
      mailbox_.deliver();
      return 0;
    case WM_INITMENU:
      updateMenu(GetMenu(window_), state());
      return 0;
    case WM_COMMAND:
      obey(static_cast<Action>(LOWORD(wParam)));
      return 0;
    case WM_DESTROY:
      onDestroy();
      return 0;
    default:
      return answerInput(message, wParam, lParam);
  }
}

LRESULT ViewWindow::answerInput(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_MOUSEWHEEL:
      onWheel(GET_WHEEL_DELTA_WPARAM(wParam), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
      return 0;
    case WM_LBUTTONDOWN:
      onPress(placeOf(lParam));
      return 0;
    case WM_MOUSEMOVE:
      onMove(placeOf(lParam));
      return 0;
    case WM_LBUTTONUP:
      onRelease();
      return 0;
    case WM_CAPTURECHANGED:
      dragged_.reset();
      return 0;
    case WM_DROPFILES:
      open(droppedFiles(wParam));
      return 0;
    default:
      return DefWindowProcW(window_, message, wParam, lParam);
  }
}

void ViewWindow::onCreate() {
  dpi_ = dpiOf(window_);
  font_ = messageFont(dpi_);
  status_.create(window_, dpi_);
  SetTimer(window_, interruptTimer, interruptInterval, nullptr);
  place();
  updateTexts();
}

// Where it was the last time, as far as there still is a screen.
void ViewWindow::place() {
  Box box = settings_.window;
  if (box.extent().empty()) {
    box = boxOf([this] {
      RECT rect = {};
      GetWindowRect(window_, &rect);
      return rect;
    }());
    box.width = scaledLength(firstSize.width, dpi_);
    box.height = scaledLength(firstSize.height, dpi_);
  }
  box = movedInside(box, workAreaNear(box));
  MoveWindow(window_, box.left, box.top, box.width, box.height, FALSE);
}

void ViewWindow::onSize() {
  if (IsIconic(window_) != FALSE) return;  // nothing is looked at
  const int statusHeight = status_.layOut();
  RECT client = {};
  GetClientRect(window_, &client);
  const bool strip = settings_.filmStrip && document_.imageCount() > 1;
  layout_ = layOut({static_cast<int>(client.right), static_cast<int>(client.bottom) - statusHeight},
                   strip, dpi_);
  view_.setWindow(layout_.picture.extent());
  const Extent screen = screenSizeOf(window_);
  document_.setScreen({static_cast<host::u32>(screen.width), static_cast<host::u32>(screen.height)},
                      thumbnailSide(dpi_));
  onViewChanged();
}

void ViewWindow::onDpiChanged(int dpi, const RECT& suggested) {
  dpi_ = dpi;
  font_ = messageFont(dpi);
  status_.setDpi(dpi);
  const Box box = boxOf(suggested);
  MoveWindow(window_, box.left, box.top, box.width, box.height, TRUE);
  onSize();
}

void ViewWindow::onPaint() {
  PAINTSTRUCT paint = {};
  HDC target = BeginPaint(window_, &paint);
  guard([&] { paintScene(target, {document_, view_, layout_, dpi_, font_.get(), emptyText()}); });
  EndPaint(window_, &paint);
}

void ViewWindow::onTimer(UINT_PTR timer) {
  if (timer == interruptTimer && interrupted()) {
    DestroyWindow(window_);
  } else if (timer == wiggleTimer) {
    document_.nextWiggle();
    redraw();
  } else if (timer == progressTimer) {
    // The picture's size comes with its first rows.
    onDocumentChanged();
  }
}

void ViewWindow::onDestroy() {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof placement;
  GetWindowPlacement(window_, &placement);
  settings_.window = boxOf(placement.rcNormalPosition);
  settings_.maximised = placement.showCmd == SW_SHOWMAXIMIZED;
  settings_.fitted = view_.isFitted();
  settings_.stereo = document_.stereo();
  settings_.parallax = document_.parallax();
  if (!settingsPath_.empty()) static_cast<void>(storeViewSettings(settingsPath_, settings_));
  document_.stop();
  if (savingFlag_ != nullptr) *savingFlag_ = true;
  PostQuitMessage(0);
}

void ViewWindow::run() {
  ShowWindow(window_, settings_.maximised ? SW_SHOWMAXIMIZED : SW_SHOW);
  MSG message = {};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (TranslateAcceleratorW(window_, keys_.get(), &message) != 0) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace fiohost::view

// A window that belongs to another thread, driven as a user would: by messages.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "platform/system.h"

namespace test {

// Every call that a window does not answer within the patience fails the test and goes on with 0.
class Window {
 public:
  Window() = default;
  explicit Window(HWND handle) : handle_(handle) {}

  [[nodiscard]] HWND handle() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }
  friend bool operator==(const Window&, const Window&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Window& window) {
    return out << window.className() << " \"" << window.text() << '"';
  }

  // A child by its id. A missing one fails the test.
  [[nodiscard]] Window control(int id) const;
  // The direct children, in their order (which is the tab order).
  [[nodiscard]] std::vector<Window> children() const;
  [[nodiscard]] int id() const { return GetDlgCtrlID(handle_); }

  [[nodiscard]] std::string text() const;
  [[nodiscard]] std::string className() const;
  [[nodiscard]] bool enabled() const { return IsWindowEnabled(handle_) != FALSE; }
  [[nodiscard]] bool visible() const { return IsWindowVisible(handle_) != FALSE; }
  [[nodiscard]] bool alive() const { return IsWindow(handle_) != FALSE; }
  [[nodiscard]] DWORD style() const;
  // In pixels of the screen; a child's placeIn in pixels of its parent's client area.
  [[nodiscard]] RECT rectangle() const;
  [[nodiscard]] RECT placeIn(const Window& parent) const;
  [[nodiscard]] RECT clientArea() const;

  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
  void post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
  // Returns when everything posted to the window's thread before this was dispatched, and the
  // characters that its key presses made too.
  void settle() const;

  // As a user types: each character replaces what is selected, and the field's owner hears of it.
  void type(const std::string& text) const;
  void selectText() const;  // all of a field's
  // A key press, posted, so that it takes the way through the dialog's keyboard handling (Enter,
  // Esc, Tab, arrows).
  void key(WPARAM virtualKey) const;
  void click() const;  // of a button, posted: it may open or end a dialog
  // The left button pressed, moved in steps and released, in client pixels. For windows that
  // follow the messages; the pointer itself stays where it is.
  void drag(POINT from, POINT to) const;
  void pressAt(POINT place) const;

  // The focus of the window's thread.
  [[nodiscard]] Window focused() const;

 private:
  HWND handle_ = nullptr;
};

// A key of the keyboard itself, which goes to the window in front. What the system makes of keys
// before a window hears of them (F1 is the call for help) comes from here only.
void pressOnKeyboard(WORD virtualKey);

// A thread's visible top-level windows of a class.
[[nodiscard]] std::vector<Window> threadWindows(DWORD thread, const std::string& className);

}  // namespace test

#include "tests/windows/support/window.h"

#include "tests/windows/support/message_mark.h"
#include "tests/windows/support/polling.h"

namespace test {
namespace {

constexpr int dragSteps = 4;

LPARAM packed(POINT place) { return MAKELPARAM(place.x, place.y); }

// Posted key messages carry the repeat count, and for a release the two state bits.
constexpr LPARAM keyPressed = 1;
constexpr LPARAM keyReleased = static_cast<LPARAM>(0xC0000001);

}  // namespace

Window Window::control(int id) const {
  HWND found = GetDlgItem(handle_, id);
  EXPECT_NE(found, nullptr) << "no control " << id;
  return Window(found);
}

std::vector<Window> Window::children() const {
  std::vector<Window> found;
  for (HWND child = GetWindow(handle_, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    found.emplace_back(child);
  }
  return found;
}

std::string Window::text() const {
  char text[1024] = {};
  send(WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
  return text;
}

std::string Window::className() const {
  char name[128] = {};
  GetClassNameA(handle_, name, sizeof name);
  return name;
}

DWORD Window::style() const { return static_cast<DWORD>(GetWindowLongPtrA(handle_, GWL_STYLE)); }

RECT Window::rectangle() const {
  RECT area = {};
  GetWindowRect(handle_, &area);
  return area;
}

RECT Window::placeIn(const Window& parent) const {
  RECT area = rectangle();
  MapWindowPoints(nullptr, parent.handle(), reinterpret_cast<POINT*>(&area), 2);
  return area;
}

RECT Window::clientArea() const {
  RECT area = {};
  GetClientRect(handle_, &area);
  return area;
}

LRESULT Window::send(UINT message, WPARAM wParam, LPARAM lParam) const {
  DWORD_PTR answer = 0;
  const auto limit = static_cast<UINT>(patience.count());
  const LRESULT answered =
      SendMessageTimeoutA(handle_, message, wParam, lParam, SMTO_NORMAL, limit, &answer);
  // A window that has closed meanwhile has nothing to answer.
  EXPECT_TRUE(answered != 0 || !IsWindow(handle_)) << "no answer to message " << message;
  return static_cast<LRESULT>(answer);
}

void Window::post(UINT message, WPARAM wParam, LPARAM lParam) const {
  const bool posted = PostMessageA(handle_, message, wParam, lParam) != FALSE;
  // Pressing a key may close the window before the key is released.
  EXPECT_TRUE(posted || !IsWindow(handle_)) << "message " << message << " could not be posted";
}

void Window::settle() const {
  for (int round = 0; round < 2; ++round) MessageMark(handle_).pass();
}

void Window::type(const std::string& text) const {
  for (const char character : text)
    send(WM_CHAR, static_cast<unsigned char>(character), keyPressed);
}

void Window::selectText() const { send(EM_SETSEL, 0, -1); }

void Window::key(WPARAM virtualKey) const {
  post(WM_KEYDOWN, virtualKey, keyPressed);
  post(WM_KEYUP, virtualKey, keyReleased);
}

void Window::click() const { post(BM_CLICK); }

void Window::drag(POINT from, POINT to) const {
  post(WM_LBUTTONDOWN, MK_LBUTTON, packed(from));
  for (int step = 1; step <= dragSteps; ++step) {
    const POINT place = {from.x + (to.x - from.x) * step / dragSteps,
                         from.y + (to.y - from.y) * step / dragSteps};
    post(WM_MOUSEMOVE, MK_LBUTTON, packed(place));
  }
  post(WM_LBUTTONUP, 0, packed(to));
}

void Window::pressAt(POINT place) const {
  post(WM_LBUTTONDOWN, MK_LBUTTON, packed(place));
  post(WM_LBUTTONUP, 0, packed(place));
}

void pressOnKeyboard(WORD virtualKey) {
  INPUT input[2] = {};
  for (INPUT& event : input) {
    event.type = INPUT_KEYBOARD;
    event.ki.wVk = virtualKey;
  }
  input[1].ki.dwFlags = KEYEVENTF_KEYUP;
  EXPECT_EQ(SendInput(2, input, sizeof *input), 2U);
}

Window Window::focused() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(handle_, nullptr), &info);
  return Window(info.hwndFocus);
}

namespace {

struct Search {
  std::string className;
  std::vector<Window> found;
};

BOOL CALLBACK noteWindow(HWND handle, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  const Window window(handle);
  if (window.visible() && window.className() == search.className) search.found.push_back(window);
  return TRUE;
}

}  // namespace

std::vector<Window> threadWindows(DWORD thread, const std::string& className) {
  Search search = {className, {}};
  EnumThreadWindows(thread, &noteWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

}  // namespace test

// The picture window in the test's own process, on a thread of its own, driven as a user would.
#pragma once

#include <memory>

#include "fiohost/view/actions.h"
#include "fiohost/view/view_run.h"
#include "fiohost/view/window/status_bar.h"
#include "platform/common_controls.h"
#include "tests/fiohost/view/viewer_files.h"
#include "tests/windows/support/dialog_thread.h"
#include "tests/windows/support/polling.h"
#include "tests/windows/support/screenshot.h"

namespace fiohostTest {

using fiohost::view::Action;
using test::eventually;
using test::Window;

class ViewWindowTest : public ViewerTest {
 protected:
  void SetUp() override { SetEnvironmentVariableA("KFIO_INI", nameOf("settings.ini").c_str()); }
  void TearDown() override { close(); }

  // Opens the window on files of the test's folder, or names as they are.
  Window open(const std::vector<std::string>& names) {
    std::vector<std::string> files;
    for (const std::string& name : names) files.push_back(nameOf(name));
    thread_ = std::make_unique<test::DialogThread>([this, files] {
      fiohost::view::runViewer(plugin_.session, files);
      return 0;
    });
    window_ = thread_->window("KfPictureWindow");
    return window_;
  }
  // Opens the window and waits until the picture is there.
  Window openDecoded(const std::vector<std::string>& names) {
    open(names);
    waitForRest();
    return window_;
  }
  void close() {
    if (thread_ == nullptr) return;
    window_.post(WM_CLOSE);
    EXPECT_EQ(thread_->result(), 0);
    thread_.reset();
  }

  void order(Action action) const {
    window_.post(WM_COMMAND, static_cast<WPARAM>(action));
    window_.settle();
  }
  void press(WPARAM key) const {
    window_.key(key);
    window_.settle();
  }
  // Nothing is being decoded or saved.
  void waitForRest() const {
    EXPECT_TRUE(eventually([this] {
      window_.settle();
      return !progressIsShown() && (!partText(1).empty() || !partText(0).empty());
    })) << partText(0);
  }

  [[nodiscard]] Window bar() const { return window_.control(fiohost::view::StatusBar::barId); }
  [[nodiscard]] bool progressIsShown() const {
    return bar().control(fiohost::view::StatusBar::progressId).visible();
  }
  // A text of the status bar: message, size, scale.
  [[nodiscard]] std::string partText(WPARAM part) const {
    char text[512] = {};
    bar().send(SB_GETTEXTA, part, reinterpret_cast<LPARAM>(text));
    return text;
  }
  // Whether a command shows that it is on, as of the time it was last looked at.
  [[nodiscard]] bool isChecked(Action action) const {
    return (menuState(action) & MF_CHECKED) != 0;
  }
  [[nodiscard]] bool isEnabled(Action action) const { return (menuState(action) & MF_GRAYED) == 0; }

  // The client area's pixels without the frame.
  [[nodiscard]] test::Picture client() const {
    const test::Picture whole = test::pictureOf(window_);
    POINT origin = {};
    ClientToScreen(window_.handle(), &origin);
    const RECT frame = window_.rectangle();
    const RECT area = window_.clientArea();
    test::Picture inner = {static_cast<int>(area.right), static_cast<int>(area.bottom), {}};
    for (int y = 0; y < inner.height; ++y) {
      const auto begin = whole.pixels.begin() +
                         ((origin.y - frame.top + y) * whole.width + origin.x - frame.left) * 3;
      inner.pixels.insert(inner.pixels.end(), begin, begin + inner.width * 3);
    }
    return inner;
  }
  struct Rgb {
    int red;
    int green;
    int blue;
    friend bool operator==(const Rgb&, const Rgb&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Rgb& c) {
      return out << c.red << ' ' << c.green << ' ' << c.blue;
    }
  };
  static Rgb at(const test::Picture& picture, int x, int y) {
    const auto place = static_cast<std::size_t>(y * picture.width + x) * 3;
    return {picture.pixels.at(place), picture.pixels.at(place + 1), picture.pixels.at(place + 2)};
  }
  static Rgb at(const Pixels& pixels, int x, int y) {
    const auto channel = [&](unsigned number) {
      return static_cast<int>(
          pixels.at(static_cast<unsigned>(x), static_cast<unsigned>(y), number));
    };
    return {channel(0), channel(1), channel(2)};
  }
  // The middle of the part that shows the picture; height is of a film strip below it.
  [[nodiscard]] POINT middle(int stripHeight = 0) const {
    const RECT all = window_.clientArea();
    const RECT status = bar().clientArea();
    return {all.right / 2, (all.bottom - status.bottom - stripHeight) / 2};
  }
  // Where the pixel 0, 0 of a picture of that size is at 1:1.
  [[nodiscard]] POINT cornerOf(int width, int height, int stripHeight = 0) const {
    const RECT all = window_.clientArea();
    const RECT status = bar().clientArea();
    const double down = (all.bottom - status.bottom - stripHeight) / 2.0 - height / 2.0;
    return {std::lround(all.right / 2.0 - width / 2.0), std::lround(down)};
  }
  // Every picture pixel looked at has its place on the screen, at 1:1 in the middle.
  void expectPicture(const Pixels& pixels, int stripHeight = 0) const {
    const test::Picture seen = client();
    const int width = static_cast<int>(pixels.width);
    const int height = static_cast<int>(pixels.height);
    const POINT corner = cornerOf(width, height, stripHeight);
    for (const auto& [x, y] : {std::pair{0, 0}, std::pair{width - 1, 0}, std::pair{width / 3, 7},
                               std::pair{5, height - 1}, std::pair{width / 2, height / 2}}) {
      EXPECT_EQ(at(seen, static_cast<int>(corner.x) + x, static_cast<int>(corner.y) + y),
                at(pixels, x, y))
          << x << ", " << y;
    }
  }
  [[nodiscard]] Pixels decoded(const std::string& name) const {
    return decodeJpeg(readBytes(file(name)));
  }

  BuiltPlugin plugin_;
  std::unique_ptr<test::DialogThread> thread_;
  Window window_;

 private:
  [[nodiscard]] UINT menuState(Action action) const {
    HMENU menu = GetMenu(window_.handle());
    window_.send(WM_INITMENU, reinterpret_cast<WPARAM>(menu));
    return GetMenuState(menu, static_cast<UINT>(action), MF_BYCOMMAND);
  }
};

}  // namespace fiohostTest

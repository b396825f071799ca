// The bar below the picture: a message, the picture's size, the scale, and how far the work is.
#pragma once

#include <optional>
#include <string>

#include "fiohost/view/canvas.h"
#include "fiohost/view/window/screen.h"

namespace fiohost::view {

class StatusBar {
 public:
  static constexpr int barId = 200;
  static constexpr int progressId = 201;  // a child of the bar
  enum Part : WPARAM { partMessage, partSize, partScale, partProgress };

  void create(HWND parent, int dpi);
  void setDpi(int dpi);
  // Fits itself to the parent; answers its height.
  int layOut();

  // An unchanged text is not drawn anew.
  void setText(Part part, const std::string& text);
  // Nothing hides the progress; a total of 0 is a beginning.
  void setProgress(const std::optional<Canvas::Progress>& progress);

 private:
  static constexpr int partCount = 4;

  HWND bar_ = nullptr;
  HWND progress_ = nullptr;
  int dpi_ = 96;
  OwnedFont font_;
  std::string texts_[partCount];
};

}  // namespace fiohost::view

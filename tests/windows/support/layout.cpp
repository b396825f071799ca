#include "tests/windows/support/layout.h"

#include <cstring>
#include <sstream>

namespace test {
namespace {

class FontContext {
 public:
  explicit FontContext(const Window& window) : window_(window.handle()), dc_(GetDC(window_)) {
    const auto font = reinterpret_cast<HFONT>(window.send(WM_GETFONT));
    if (font != nullptr) previous_ = SelectObject(dc_, font);
  }
  FontContext(const FontContext&) = delete;
  FontContext& operator=(const FontContext&) = delete;
  ~FontContext() {
    if (previous_ != nullptr) SelectObject(dc_, previous_);
    ReleaseDC(window_, dc_);
  }

  // The mark of an access key takes no room.
  [[nodiscard]] SIZE extent(const std::string& text) const {
    RECT area = {};
    DrawTextA(dc_, text.c_str(), -1, &area, DT_CALCRECT | DT_SINGLELINE);
    return {area.right, area.bottom};
  }

 private:
  HWND window_;
  HDC dc_;
  HGDIOBJ previous_ = nullptr;
};

bool isButton(const Window& control) { return control.className() == "Button"; }

bool isBox(const Window& control) {
  const DWORD kind = control.style() & BS_TYPEMASK;
  return isButton(control) && (kind == BS_AUTOCHECKBOX || kind == BS_AUTORADIOBUTTON);
}

// What of a control's width its text cannot use.
LONG sideRoom(const Window& control, LONG lineHeight) {
  if (isBox(control)) return GetSystemMetrics(SM_CXMENUCHECK) + lineHeight / 3;
  return isButton(control) ? lineHeight / 2 : 0;
}

std::vector<std::string> textsOf(const Window& control) {
  if (control.className() != "ComboBox") return {control.text()};
  std::vector<std::string> texts;
  for (LRESULT index = 0; index < control.send(CB_GETCOUNT); ++index) {
    char text[260] = {};
    control.send(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    texts.emplace_back(text);
  }
  return texts;
}

LONG textWidthOf(const Window& control, LONG lineHeight) {
  const RECT area = control.clientArea();
  if (control.className() != "ComboBox") return area.right - sideRoom(control, lineHeight);
  return area.right - GetSystemMetrics(SM_CXVSCROLL) - 2 * GetSystemMetrics(SM_CXEDGE);
}

void noteCutTexts(const Window& control, std::ostream& faults) {
  const FontContext font(control);
  for (const std::string& text : textsOf(control)) {
    const SIZE needed = font.extent(text);
    const LONG width = textWidthOf(control, needed.cy);
    const LONG height = control.clientArea().bottom;
    if (needed.cx > width) faults << text << ": needs " << needed.cx << " of " << width << '\n';
    if (needed.cy > height) faults << text << ": is " << needed.cy << " high in " << height << '\n';
  }
}

bool overlap(const RECT& one, const RECT& other) {
  RECT common = {};
  return IntersectRect(&common, &one, &other) != FALSE;
}

// A spin control lies inside the frame of the field that it belongs to.
bool isSpin(const Window& control) { return control.className() == "msctls_updown32"; }

void noteMisplaced(const Window& dialog, const std::vector<Window>& controls, std::size_t index,
                   std::ostream& faults) {
  const RECT place = controls[index].placeIn(dialog);
  const RECT room = dialog.clientArea();
  if (place.left < 0 || place.top < 0 || place.right > room.right || place.bottom > room.bottom) {
    faults << controls[index] << " leaves the dialog\n";
  }
  for (std::size_t other = 0; other < index; ++other) {
    if (isSpin(controls[index]) || isSpin(controls[other])) continue;
    if (!overlap(place, controls[other].placeIn(dialog))) continue;
    faults << controls[index] << " overlaps " << controls[other] << '\n';
  }
}

}  // namespace

std::vector<std::string> layoutFaults(const Window& dialog) {
  std::ostringstream faults;
  const std::vector<Window> controls = dialog.children();
  for (std::size_t index = 0; index < controls.size(); ++index) {
    noteMisplaced(dialog, controls, index, faults);
    noteCutTexts(controls[index], faults);
  }
  std::vector<std::string> lines;
  std::istringstream rest(faults.str());
  for (std::string line; std::getline(rest, line);) lines.push_back(line);
  return lines;
}

// DLGTEMPLATEEX: 26 bytes, then menu, class and title, each a word 0, FFFF with an ordinal, or a
// text; then the point size.
std::vector<unsigned char> scaledTemplate(HMODULE resources, int id, int percent) {
  HRSRC found = FindResourceA(resources, MAKEINTRESOURCEA(id), MAKEINTRESOURCEA(5));  // RT_DIALOG
  if (found == nullptr) return {};
  const auto* bytes =
      static_cast<const unsigned char*>(LockResource(LoadResource(resources, found)));
  std::vector<unsigned char> scaled(bytes, bytes + SizeofResource(resources, found));
  const auto wordAt = [&](std::size_t offset) {
    WORD word = 0;
    std::memcpy(&word, &scaled.at(offset), sizeof word);
    return word;
  };
  std::size_t offset = 26;
  for (int text = 0; text < 3; ++text) {
    if (wordAt(offset) == 0xFFFF) offset += 2;
    while (wordAt(offset) != 0 && wordAt(offset - 2) != 0xFFFF) offset += 2;
    offset += 2;
  }
  const auto points = static_cast<WORD>(wordAt(offset) * percent / 100);
  std::memcpy(&scaled.at(offset), &points, sizeof points);
  return scaled;
}

}  // namespace test

// Everything that the picture window can be told to do: one table, from which its menu and its keys
// are made, and which the README shows.
#pragma once

#include <span>
#include <string>

namespace fiohost::view {

enum class Action : unsigned short {
  open = 100,
  saveAs,
  reload,
  properties,
  nextFile,
  previousFile,
  firstFile,
  lastFile,
  leave,
  copy,
  fit,
  actualSize,
  zoomIn,
  zoomOut,
  filmStrip,
  stop,
  nextImage,
  previousImage,
  stereoOff,  // this and the next four in the order of StereoMode
  anaglyph,
  sideBySide,
  crossEyed,
  wiggle,
  moreParallax,
  lessParallax,
  noParallax,
};

// A key with its modifiers; codes are those of Win32 virtual keys, of which letters and digits are
// their own characters.
struct Key {
  unsigned short code = 0;  // 0: none
  bool control = false;
  bool shift = false;
  bool alt = false;

  friend bool operator==(const Key&, const Key&) = default;
};

enum KeyCode : unsigned short {
  keyReturn = 0x0D,
  keyEscape = 0x1B,
  keyPageUp = 0x21,
  keyPageDown = 0x22,
  keyEnd = 0x23,
  keyHome = 0x24,
  keyLeft = 0x25,
  keyRight = 0x27,
  keyNumpadPlus = 0x6B,
  keyNumpadMinus = 0x6D,
  keyF5 = 0x74,
  keyPlus = 0xBB,
  keyMinus = 0xBD,
};

enum class Menu { file, edit, view, image, stereo };
inline constexpr int menuCount = 5;
[[nodiscard]] const char* menuTitle(Menu menu);

struct ActionRow {
  Action action;
  Menu menu;
  const char* text;  // with the access key's "&"
  Key key;
  Key second = {};               // of another place on the keyboard
  bool separatorBefore = false;  // in the menu
};
[[nodiscard]] std::span<const ActionRow> actionRows();

// "Ctrl+Shift+S".
[[nodiscard]] std::string keyName(const Key& key);
// What the menu shows: the text, a tab, and the key.
[[nodiscard]] std::string menuText(const ActionRow& row);
// The table as the README shows it, a line for each menu.
[[nodiscard]] std::string actionsAsMarkdown();

}  // namespace fiohost::view

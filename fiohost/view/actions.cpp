#include "fiohost/view/actions.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace fiohost::view {
namespace {

constexpr Key plain(unsigned short code) { return {code}; }
constexpr Key control(unsigned short code) { return {code, true}; }
constexpr Key alt(unsigned short code) { return {code, false, false, true}; }

constexpr std::array rows = {
    ActionRow{Action::open, Menu::file, "&Open...", control('O')},
    ActionRow{Action::saveAs, Menu::file, "Save &As...", control('S')},
    ActionRow{Action::reload, Menu::file, "&Reload", plain(keyF5)},
    ActionRow{Action::properties, Menu::file, "Proper&ties...", alt(keyReturn)},
    ActionRow{Action::nextFile, Menu::file, "&Next File", plain(keyPageDown), {}, true},
    ActionRow{Action::previousFile, Menu::file, "&Previous File", plain(keyPageUp)},
    ActionRow{Action::firstFile, Menu::file, "&First File", plain(keyHome)},
    ActionRow{Action::lastFile, Menu::file, "&Last File", plain(keyEnd)},
    ActionRow{Action::leave, Menu::file, "E&xit", control('Q'), {}, true},
    ActionRow{Action::copy, Menu::edit, "&Copy", control('C')},
    ActionRow{Action::fit, Menu::view, "&Fit to Window", plain('F')},
    ActionRow{Action::actualSize, Menu::view, "&Actual Size", plain('1')},
    ActionRow{Action::zoomIn, Menu::view, "Zoom &In", plain(keyNumpadPlus), plain(keyPlus)},
    ActionRow{Action::zoomOut, Menu::view, "Zoom &Out", plain(keyNumpadMinus), plain(keyMinus)},
    ActionRow{Action::filmStrip, Menu::view, "Film &Strip", plain('T'), {}, true},
    ActionRow{Action::stop, Menu::view, "S&top", plain(keyEscape), {}, true},
    ActionRow{Action::nextImage, Menu::image, "&Next Image", plain(keyRight)},
    ActionRow{Action::previousImage, Menu::image, "&Previous Image", plain(keyLeft)},
    ActionRow{Action::stereoOff, Menu::stereo, "&One Image", plain('O')},
    ActionRow{Action::anaglyph, Menu::stereo, "&Anaglyph (red-cyan)", plain('A')},
    ActionRow{Action::sideBySide, Menu::stereo, "&Side by Side", plain('S')},
    ActionRow{Action::crossEyed, Menu::stereo, "&Cross-eyed", plain('X')},
    ActionRow{Action::wiggle, Menu::stereo, "&Wiggle", plain('W')},
    ActionRow{Action::moreParallax, Menu::stereo, "&More Parallax", control(keyRight), {}, true},
    ActionRow{Action::lessParallax, Menu::stereo, "&Less Parallax", control(keyLeft)},
    ActionRow{Action::noParallax, Menu::stereo, "&No Parallax", control(keyHome)},
};

struct KeyWord {
  unsigned short code;
  const char* word;
};
constexpr std::array keyWords = {
    KeyWord{keyReturn, "Enter"},   KeyWord{keyEscape, "Esc"},
    KeyWord{keyPageUp, "Page Up"}, KeyWord{keyPageDown, "Page Down"},
    KeyWord{keyEnd, "End"},        KeyWord{keyHome, "Home"},
    KeyWord{keyLeft, "Left"},      KeyWord{keyRight, "Right"},
    KeyWord{keyNumpadPlus, "+"},   KeyWord{keyNumpadMinus, "-"},
    KeyWord{keyPlus, "+"},         KeyWord{keyMinus, "-"},
    KeyWord{keyF5, "F5"},
};

std::string withoutMark(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '&'), text.end());
  return text;
}

}  // namespace

const char* menuTitle(Menu menu) {
  static constexpr std::array<const char*, menuCount> titles = {"&File", "&Edit", "&View", "&Image",
                                                                "&Stereo"};
  return titles[static_cast<std::size_t>(menu)];
}

std::span<const ActionRow> actionRows() { return rows; }

std::string keyName(const Key& key) {
  std::string name;
  if (key.control) name += "Ctrl+";
  if (key.shift) name += "Shift+";
  if (key.alt) name += "Alt+";
  const auto word = std::find_if(keyWords.begin(), keyWords.end(),
                                 [&key](const KeyWord& each) { return each.code == key.code; });
  return word != keyWords.end() ? name + word->word : name + static_cast<char>(key.code);
}

std::string menuText(const ActionRow& row) {
  return std::string(row.text) + "\t" + keyName(row.key);
}

std::string actionsAsMarkdown() {
  std::string text = "| menu | commands and their keys |\n|---|---|\n";
  for (int menu = 0; menu < menuCount; ++menu) {
    const auto title = static_cast<Menu>(menu);
    std::string line = "| " + withoutMark(menuTitle(title)) + " |";
    const char* separator = " ";
    for (const ActionRow& row : rows) {
      if (row.menu != title) continue;
      line += separator + withoutMark(row.text) + " `" + keyName(row.key) + "`";
      separator = ", ";
    }
    text += line + " |\n";
  }
  return text;
}

}  // namespace fiohost::view

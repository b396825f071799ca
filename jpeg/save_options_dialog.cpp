// The save-options dialog: a view over the values in jpeg/save_options_values.h. It is modal and
// single, so what it works on is module-wide while it is open.
#include <iterator>

#include "frame/module.h"
#include "frame/save_options.h"
#include "host/k32misc.h"
#include "host/kfioutil.h"
#include "host/plugin_entries.h"
#include "jpeg/save_options_values.h"
#include "jpeg/write_options.h"
#include "platform/common_controls.h"

namespace jpeg {
namespace {

using host::u32;

constexpr int dialogTemplate = 800;
constexpr INT_PTR notHandled = 0;
constexpr INT_PTR handled = 1;

enum ControlId : int {
  sampleList = 767,
  jfifBox = 768,
  qualityField = 3051,
  helpButton = 3101,
  qualitySlider = 3122,
  qualitySpin = 3123,
  modeList = 3124,
};

constexpr UINT modeStrings[] = {781};  // progressive is for the settings file alone: kept
constexpr UINT sampleStrings[] = {785, 786, 787, 788};

constexpr int helpShow = 1;
constexpr int helpClose = 2;
constexpr host::u64 helpTopic = 1203;

SaveOptionValues* openValues = nullptr;
bool helpOpened = false;

LRESULT tell(HWND dialog, int control, UINT message, WPARAM wParam = 0,
             LPARAM lParam = 0) noexcept {
  return SendDlgItemMessageA(dialog, control, message, wParam, lParam);
}

void moveSlider(HWND dialog, u32 quality) noexcept {
  tell(dialog, qualitySlider, TBM_SETPOS, TRUE, static_cast<LPARAM>(quality));
}

void rewriteField(HWND dialog, u32 quality) noexcept {
  SetDlgItemInt(dialog, qualityField, quality, FALSE);
}

void setUpQuality(HWND dialog, u32 quality) noexcept {
  tell(dialog, qualitySlider, TBM_SETRANGE, FALSE, MAKELPARAM(0, bestQuality));
  tell(dialog, qualitySlider, TBM_SETPAGESIZE, 0, qualityPage);
  moveSlider(dialog, quality);
  for (u32 tick = qualityPage; tick < bestQuality; tick += qualityPage) {
    tell(dialog, qualitySlider, TBM_SETTIC, 0, static_cast<LPARAM>(tick));
  }
  tell(dialog, qualitySpin, UDM_SETRANGE, 0, MAKELPARAM(bestQuality, 0));
  tell(dialog, qualitySpin, UDM_SETPOS, 0, MAKELPARAM(quality, 0));
  rewriteField(dialog, quality);
}

template <std::size_t count>
void fillList(HWND dialog, int list, const UINT (&strings)[count], u32 selection) noexcept {
  for (const UINT id : strings) {
    char text[260] = {};
    LoadStringA(frame::resourceLibrary(), id, text, sizeof text);
    tell(dialog, list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
  }
  tell(dialog, list, CB_SETCURSEL, selection);
}

// Nothing selected is -1, which is stored as it stands.
host::i32 selectionOf(HWND dialog, int list) noexcept {
  return static_cast<host::i32>(tell(dialog, list, CB_GETCURSEL));
}

void initialise(HWND dialog, WPARAM wParam, LPARAM lParam) noexcept {
  openValues = reinterpret_cast<SaveOptionValues*>(lParam);
  helpOpened = false;
  k32MiscDialogStart(dialog, 1, wParam, lParam);
  const SaveOptionValues& values = *openValues;
  setUpQuality(dialog, values.quality);
  fillList(dialog, modeList, modeStrings, values.mode);
  if (values.sample >= 0) {
    fillList(dialog, sampleList, sampleStrings, static_cast<u32>(values.sample));
  } else {
    EnableWindow(GetDlgItem(dialog, sampleList), FALSE);
  }
  CheckDlgButton(dialog, jfifBox, values.jfif != 0 ? BST_CHECKED : BST_UNCHECKED);
}

void takeValues(HWND dialog) noexcept {
  if (openValues == nullptr) return;
  openValues->mode = static_cast<u32>(selectionOf(dialog, modeList));
  openValues->sample = selectionOf(dialog, sampleList);
  openValues->quality = GetDlgItemInt(dialog, qualityField, nullptr, FALSE);
  openValues->jfif = IsDlgButtonChecked(dialog, jfifBox);
}

void close(HWND dialog, int button) noexcept {
  EndDialog(dialog, button);
  openValues = nullptr;
  if (!helpOpened) return;
  kFioWinHelp(dialog, helpClose, 0);
  helpOpened = false;
}

void showHelp(HWND dialog) noexcept {
  kFioWinHelp(dialog, helpShow, helpTopic);
  helpOpened = true;
}

void followField(HWND dialog) noexcept {
  BOOL valid = FALSE;
  const u32 number = GetDlgItemInt(dialog, qualityField, &valid, FALSE);
  const TypedQuality typed = typedQuality(number, valid != FALSE);
  if (typed.corrected) {
    rewriteField(dialog, typed.quality);
    PostMessageA(GetDlgItem(dialog, qualityField), EM_SETSEL, 0, -1);
  }
  moveSlider(dialog, typed.quality);
}

SliderMove sliderMoveOf(WORD notification) noexcept {
  static constexpr SliderMove moves[] = {
      SliderMove::lineLeft,   SliderMove::lineRight,  SliderMove::pageLeft, SliderMove::pageRight,
      SliderMove::toPosition, SliderMove::toPosition, SliderMove::home,     SliderMove::end};
  static_assert(SB_LINELEFT == 0 && SB_PAGELEFT == 2 && SB_THUMBPOSITION == 4 && SB_LEFT == 6);
  return notification < std::size(moves) ? moves[notification] : SliderMove::none;
}

void followSlider(HWND dialog, WPARAM wParam) noexcept {
  const u32 shown = GetDlgItemInt(dialog, qualityField, nullptr, FALSE);
  const u32 quality = slidQuality(shown, sliderMoveOf(LOWORD(wParam)), HIWORD(wParam));
  moveSlider(dialog, quality);
  rewriteField(dialog, quality);
}

INT_PTR obey(HWND dialog, int control, WORD notification) noexcept {
  switch (control) {
    case IDOK:
      takeValues(dialog);
      close(dialog, IDOK);
      break;
    case IDCANCEL:
      close(dialog, IDCANCEL);
      break;
    case helpButton:
      showHelp(dialog);
      break;
    case qualityField:
      if (notification == EN_UPDATE) followField(dialog);
      break;
    default:
      break;
  }
  return handled;
}

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  switch (message) {
    case WM_INITDIALOG:
      initialise(dialog, wParam, lParam);
      return notHandled;  // the focus is left to the dialog's activation
    case WM_COMMAND:
      return obey(dialog, LOWORD(wParam), HIWORD(wParam));
    case WM_HELP:
      showHelp(dialog);
      return handled;
    case WM_HSCROLL:
      followSlider(dialog, wParam);
      return handled;
    default:
      return notHandled;
  }
}

bool confirmed(HWND owner, SaveOptionValues& values) noexcept {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_BAR_CLASSES | ICC_UPDOWN_CLASS};
  InitCommonControlsEx(&controls);
  return DialogBoxParamA(frame::resourceLibrary(), MAKEINTRESOURCEA(dialogTemplate), owner,
                         &dialogProcedure, reinterpret_cast<LPARAM>(&values)) == IDOK;
}

int showSaveOptions(HWND owner, HGLOBAL fileData) noexcept {
  platform::LockedGlobal record(fileData);
  if (!record) return 0;
  frame::loadSaveOptions();
  SaveOptionValues values = initialSaveOptions(record);
  if (!confirmed(owner, values)) return 0;
  keepAsSettings(values);
  return storeInRecord(fileData, record, values) ? 1 : 0;
}

}  // namespace
}  // namespace jpeg

extern "C" int kfJpgShowDlgSaveOption(host::u64, HWND owner, HGLOBAL fileData) noexcept {
  return jpeg::showSaveOptions(owner, fileData);
}

// The page that tells what is known about the file as a picture.
#include <new>

#include "frame/module.h"
#include "viewer/clipboard.h"
#include "viewer/general_texts.h"
#include "viewer/page_procedures.h"
#include "viewer/value_field.h"
#include "viewer/wide_text.h"

namespace viewer {
namespace {

std::wstring textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
  GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
  return text;
}

// A label as it is read: without its access key and colon.
std::wstring labelText(HWND label) {
  std::wstring text = textOf(label);
  std::erase(text, L'&');
  if (!text.empty() && text.back() == L':') text.pop_back();
  return text;
}

void copyGeneralPage(HWND page) {
  std::wstring all;
  for (int id = controlFileName; id <= controlMpoKind; ++id) {
    const HWND value = GetDlgItem(page, id);
    if (value == nullptr || GetWindowTextLengthW(value) == 0) continue;
    all += labelText(GetDlgItem(page, id + labelOfControl)) + L"\t" + textOf(value) + L"\r\n";
  }
  copyText(page, std::wstring_view(all));
}

// What is not known is not shown, its label neither.
void showText(HWND page, const GeneralText& text) noexcept {
  const HWND value = GetDlgItem(page, text.control);
  if (value == nullptr) return;
  SetWindowTextW(value, text.text.c_str());
  makeValueField(value, copyGeneralPage);
  if (!text.text.empty()) return;
  ShowWindow(value, SW_HIDE);
  if (const HWND label = GetDlgItem(page, text.control + labelOfControl); label != nullptr) {
    ShowWindow(label, SW_HIDE);
  }
}

void showTexts(HWND page, HGLOBAL fileData) noexcept {
  try {
    for (const GeneralText& text : generalTexts(frame::resourceLibrary(), fileData)) {
      showText(page, text);
    }
  } catch (const std::bad_alloc&) {
    // The texts that there was memory for are shown.
  }
}

}  // namespace

INT_PTR CALLBACK generalPage(HWND page, UINT message, WPARAM, LPARAM lParam) noexcept {
  if (message != WM_INITDIALOG) return FALSE;
  showTexts(page, reinterpret_cast<HGLOBAL>(lParam));
  return TRUE;
}

}  // namespace viewer

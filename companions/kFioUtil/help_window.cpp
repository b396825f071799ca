// Help: a text of the resource library in a window beside the dialog that asked for it.
#include <algorithm>
#include <iterator>
#include <new>
#include <string>

#include "host/kfioutil.h"
#include "platform/common_controls.h"

namespace kFioUtil {
namespace {

constexpr int helpTemplate = 810;
constexpr int textBox = 3051;

enum HelpCommand : int { helpTopic = 1, helpClose = 2 };

// A topic's title and paragraphs, strings of the resource library.
struct Topic {
  host::u64 number;
  UINT title;
  UINT firstParagraph;
  UINT lastParagraph;
};
constexpr Topic topics[] = {{1203, 3700, 3701, 3705}};

// One window for the process, as long as it is open, with the library that it is made of.
HWND helpWindow = nullptr;

std::wstring loadText(HMODULE resources, UINT id) {
  const wchar_t* text = nullptr;
  const int length = LoadStringW(resources, id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

std::wstring topicText(HMODULE resources, const Topic& topic) {
  std::wstring text;
  for (UINT id = topic.firstParagraph; id <= topic.lastParagraph; ++id) {
    if (!text.empty()) text += L"\r\n\r\n";
    text += loadText(resources, id);
  }
  return text;
}

// Nobody reads the keys for this window's dialog, so the text itself closes it.
LRESULT CALLBACK boxProcedure(HWND box, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                              DWORD_PTR) noexcept {
  if (message == WM_NCDESTROY) RemoveWindowSubclass(box, boxProcedure, id);
  if (message == WM_KEYDOWN && (wParam == VK_ESCAPE || wParam == VK_RETURN)) {
    PostMessageW(GetParent(box), WM_CLOSE, 0, 0);
    return 0;
  }
  return DefSubclassProc(box, message, wParam, lParam);
}

INT_PTR CALLBACK helpProcedure(HWND window, UINT message, WPARAM wParam, LPARAM) noexcept {
  switch (message) {
    case WM_INITDIALOG:
      SetWindowSubclass(GetDlgItem(window, textBox), boxProcedure, 1, 0);
      SetFocus(GetDlgItem(window, textBox));
      return FALSE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDCANCEL || LOWORD(wParam) == IDOK) DestroyWindow(window);
      return TRUE;
    case WM_CLOSE:
      DestroyWindow(window);
      return TRUE;
    case WM_DESTROY:
      helpWindow = nullptr;
      return TRUE;
    default:
      return FALSE;
  }
}

void closeHelp() noexcept {
  if (helpWindow != nullptr) DestroyWindow(helpWindow);
}

bool fillHelp(HWND window, HMODULE resources, const Topic& topic) noexcept {
  try {
    SetWindowTextW(window, loadText(resources, topic.title).c_str());
    SetDlgItemTextW(window, textBox, topicText(resources, topic).c_str());
    SendDlgItemMessageW(window, textBox, EM_SETSEL, 0, 0);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// The resource library is needed only until the window is filled.
int openHelp(HWND dialog, host::u64 number) noexcept {
  const auto* topic = std::find_if(std::begin(topics), std::end(topics),
                                   [=](const Topic& row) { return row.number == number; });
  if (topic == std::end(topics)) return 0;
  closeHelp();
  const HMODULE resources = LoadLibraryA("KFRES.DLL");
  if (resources == nullptr) return 0;
  helpWindow =
      CreateDialogParamW(resources, MAKEINTRESOURCEW(helpTemplate), dialog, helpProcedure, 0);
  if (helpWindow != nullptr && fillHelp(helpWindow, resources, *topic)) {
    ShowWindow(helpWindow, SW_SHOW);
  } else {
    closeHelp();
  }
  FreeLibrary(resources);
  return helpWindow != nullptr ? 1 : 0;
}

}  // namespace
}  // namespace kFioUtil

// Command 1 shows a topic's text, 2 closes it. 1 = done, 0 = no such topic or command.
extern "C" int kFioWinHelp(HWND dialog, int command, host::u64 data) {
  if (command == kFioUtil::helpTopic) return kFioUtil::openHelp(dialog, data);
  if (command != kFioUtil::helpClose) return 0;
  kFioUtil::closeHelp();
  return 1;
}

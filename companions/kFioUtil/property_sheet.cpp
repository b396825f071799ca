// The tabbed frame of the property dialog: a property sheet of the system.
#include <algorithm>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "host/kfioutil.h"
#include "host/property_pages.h"
#include "platform/common_controls.h"

namespace kFioUtil {
namespace {

using host::PropertyDialogHeader;
using host::PropertyPage;
using host::u32;

constexpr int failed = -1;
constexpr int mostPages = 100;  // of a property sheet
constexpr wchar_t pageProperty[] = L"kfioPropertyPage";

// What a page's window needs to know. Lives as long as the sheet.
struct FramedPage {
  DLGPROC procedure;
  LPARAM fileData;
  u32 number;
  u32* lastPage;
};

std::wstring wideTitle(const char* title, int capacity) {
  if (title == nullptr) return {};
  const int length = static_cast<int>(strnlen(title, static_cast<std::size_t>(capacity)));
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  const int written = MultiByteToWideChar(CP_ACP, 0, title, length, wide.data(), length);
  wide.resize(static_cast<std::size_t>(written));
  return wide;
}

INT_PTR callPage(const FramedPage& framed, HWND page, UINT message, WPARAM wParam,
                 LPARAM lParam) noexcept {
  return framed.procedure != nullptr ? framed.procedure(page, message, wParam, lParam) : FALSE;
}

// Pages get the file-data handle where the system gives its own record.
INT_PTR openPage(HWND page, WPARAM wParam, LPARAM lParam) noexcept {
  const LPARAM own = reinterpret_cast<const PROPSHEETPAGEW*>(lParam)->lParam;
  SetPropW(page, pageProperty, reinterpret_cast<HANDLE>(own));
  const auto& framed = *reinterpret_cast<const FramedPage*>(own);
  return callPage(framed, page, WM_INITDIALOG, wParam, framed.fileData);
}

INT_PTR CALLBACK framePage(HWND page, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_INITDIALOG) return openPage(page, wParam, lParam);
  const auto* framed = static_cast<const FramedPage*>(GetPropW(page, pageProperty));
  if (framed == nullptr) return FALSE;
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == PSN_SETACTIVE) {
    *framed->lastPage = framed->number;
  }
  const INT_PTR answer = callPage(*framed, page, message, wParam, lParam);
  if (message == WM_NCDESTROY) RemovePropW(page, pageProperty);
  return answer;
}

// The sheet's records, and what they point to.
class Sheet {
 public:
  Sheet(HWND owner, PropertyDialogHeader& header, std::span<const PropertyPage> pages)
      : caption_(wideTitle(header.caption, sizeof header.caption)) {
    // Reserved, so that the addresses that are handed out stay.
    framed_.reserve(pages.size());
    titles_.reserve(pages.size());
    for (const PropertyPage& page : pages) addPage(page, header);
    header_.dwSize = sizeof header_;
    header_.dwFlags = PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW | PSH_NOCONTEXTHELP;
    header_.hwndParent = owner;
    header_.pszCaption = caption_.c_str();
    header_.nPages = static_cast<UINT>(pages_.size());
    header_.nStartPage = std::min(header.lastPage, header_.nPages - 1);
    header_.ppsp = pages_.data();
  }

  // 1 for OK, 0 for Cancel, negative when it cannot be shown.
  [[nodiscard]] int show() const noexcept { return static_cast<int>(PropertySheetW(&header_)); }

 private:
  void addPage(const PropertyPage& page, PropertyDialogHeader& header) {
    framed_.push_back({reinterpret_cast<DLGPROC>(page.procedure),
                       static_cast<LPARAM>(header.fileData), static_cast<u32>(framed_.size()),
                       &header.lastPage});
    titles_.push_back(wideTitle(reinterpret_cast<const char*>(page.title),
                                static_cast<int>(host::propertyTitleLength)));
    PROPSHEETPAGEW record = {};
    record.dwSize = sizeof record;
    record.dwFlags = PSP_USETITLE;
    record.hInstance = reinterpret_cast<HINSTANCE>(page.resources);
    record.pszTemplate = MAKEINTRESOURCEW(page.templateId);
    record.pszTitle = titles_.back().c_str();
    record.pfnDlgProc = framePage;
    record.lParam = reinterpret_cast<LPARAM>(&framed_.back());
    pages_.push_back(record);
  }

  std::wstring caption_;
  std::vector<FramedPage> framed_;
  std::vector<std::wstring> titles_;
  std::vector<PROPSHEETPAGEW> pages_;
  PROPSHEETHEADERW header_ = {};
};

int showSheet(HWND owner, PropertyDialogHeader& header, std::span<const PropertyPage> pages) {
  const int result = Sheet(owner, header, pages).show();
  return result < 0 ? failed : result;
}

}  // namespace
}  // namespace kFioUtil

// Opens on the page that the header's last word tells and leaves the last one shown there.
// 1 = OK, 0 = Cancel, -1 = failed.
extern "C" int kFioShowProperty(HWND owner, void* header, int pageCount, void* pages, int) {
  if (header == nullptr || pages == nullptr || pageCount < 1 || pageCount > kFioUtil::mostPages) {
    return kFioUtil::failed;
  }
  try {
    return kFioUtil::showSheet(
        owner, *static_cast<host::PropertyDialogHeader*>(header),
        {static_cast<const host::PropertyPage*>(pages), static_cast<std::size_t>(pageCount)});
  } catch (const std::bad_alloc&) {
    return kFioUtil::failed;
  }
}

#include "viewer/field_page.h"

#include <new>

#include "viewer/clipboard.h"
#include "viewer/value_field.h"
#include "viewer/wide_text.h"

namespace viewer {
namespace {

constexpr int valueBoxId = 3051;

// From WM_INITDIALOG to WM_DESTROY of each page.
std::unique_ptr<FieldPage>& openPage(PageKind kind) noexcept {
  static std::unique_ptr<FieldPage> pages[pageKinds];
  return pages[static_cast<std::size_t>(kind)];
}

// Ctrl+C in the value box, which knows only the window of its page.
void copyOpenPage(HWND page) {
  for (const PageKind kind : {PageKind::exif, PageKind::gps, PageKind::iptc}) {
    if (openPage(kind) && openPage(kind)->window() == page) openPage(kind)->copyAll();
  }
}

}  // namespace

FieldPage::FieldPage(HWND page, HGLOBAL fileData, const FieldListLayout& layout) noexcept
    : page_(page), list_(page, layout), fileData_(fileData), properties_(propertiesOf(fileData_)) {}

void FieldPage::fill() {
  if (!list_.addColumns()) return;
  rows_ = loadRows();
  list_.addRows(rows_);
}

bool FieldPage::isRow(int row) const noexcept {
  return row >= 0 && static_cast<std::size_t>(row) < rows_.size();
}

void FieldPage::showValue() const {
  const int row = list_.selectedRow();
  if (!isRow(row)) return;
  const std::string text = boxText(rawText(static_cast<std::size_t>(row)));
  SetDlgItemTextW(page_, valueBoxId, wideText(text).c_str());
}

void FieldPage::copyRow() const {
  const int row = list_.selectedRow();
  if (isRow(row)) {
    copyText(page_, rows_[static_cast<std::size_t>(row)].value);
  } else {
    copyAll();
  }
}

void FieldPage::copyAll() const { copyText(page_, rowsAsText(rows_)); }

void FieldPage::answer(const NMHDR& notification) const {
  switch (list_.requestOf(notification)) {
    case FieldList::Request::showValue:
      return showValue();
    case FieldList::Request::copyRow:
      return copyRow();
    case FieldList::Request::copyPage:
      return copyAll();
    case FieldList::Request::none:
      return;
  }
}

INT_PTR answerFieldPage(PageKind kind, MakeFieldPage* make, HWND page, UINT message,
                        LPARAM lParam) noexcept {
  std::unique_ptr<FieldPage>& open = openPage(kind);
  try {
    switch (message) {
      case WM_INITDIALOG:
        makeValueField(GetDlgItem(page, valueBoxId), copyOpenPage);
        open = make(page, reinterpret_cast<HGLOBAL>(lParam));
        open->fill();
        return TRUE;
      case WM_NOTIFY:
        if (open) open->answer(*reinterpret_cast<const NMHDR*>(lParam));
        return FALSE;
      case WM_DESTROY:
        open.reset();
        return TRUE;
      default:
        return FALSE;
    }
  } catch (const std::bad_alloc&) {
    return FALSE;  // what there was memory for is shown
  }
}

}  // namespace viewer

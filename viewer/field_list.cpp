#include "viewer/field_list.h"

#include "viewer/clipboard.h"
#include "viewer/list_view.h"
#include "viewer/window_handles.h"

namespace viewer {
namespace {

enum ColumnTitle : UINT { nameTitle = 750, valueTitle = 751 };
constexpr int defaultDpi = 96;

int scaled(HWND window, int pixels) noexcept {
  const WindowContext context(window);
  return MulDiv(pixels, GetDeviceCaps(context.get(), LOGPIXELSX), defaultDpi);
}

// The arrow keys select only after their own notification, so the selection's is heard too.
bool isNewSelection(const NMHDR& notification) noexcept {
  if (notification.code != LVN_ITEMCHANGED) return false;
  const auto& change = reinterpret_cast<const NMLISTVIEW&>(notification);
  return (change.uChanged & LVIF_STATE) != 0 &&
         ((change.uNewState & ~change.uOldState) & LVIS_SELECTED) != 0;
}

}  // namespace

bool FieldList::addColumns() const {
  SendMessageW(window_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
               LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP | LVS_EX_DOUBLEBUFFER);
  return addListColumn(window_, 0, nameTitle, scaled(window_, layout_.nameWidth)) &&
         addListColumn(window_, 1, valueTitle, scaled(window_, layout_.valueWidth));
}

void FieldList::addRows(const std::vector<FieldRow>& rows) const {
  int index = 0;
  for (const FieldRow& row : rows) {
    addListRow(window_, index++, row.name, lineText(row.value));
  }
}

int FieldList::selectedRow() const noexcept {
  if (ListView_GetSelectedCount(window_) == 0) return noRow;
  const int rows = ListView_GetItemCount(window_);
  for (int row = 0; row < rows; ++row) {
    if (ListView_GetItemState(window_, row, LVIS_SELECTED) == LVIS_SELECTED) return row;
  }
  return noRow;
}

FieldList::Request FieldList::requestOf(const NMHDR& notification) const noexcept {
  if (notification.idFrom != static_cast<UINT_PTR>(layout_.controlId)) return Request::none;
  if (isNewSelection(notification)) return Request::showValue;
  switch (notification.code) {
    case NM_CLICK:
    case NM_DBLCLK:
      return Request::showValue;
    case LVN_KEYDOWN:
      if (!isCopyKey(reinterpret_cast<const NMLVKEYDOWN&>(notification).wVKey)) {
        return Request::showValue;
      }
      return GetKeyState(VK_SHIFT) < 0 ? Request::copyPage : Request::copyRow;
    default:
      return Request::none;
  }
}

}  // namespace viewer

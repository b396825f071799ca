#include "tests/windows/sheet.h"

namespace test {

std::string ListView::text(int row, int column) const {
  char text[512] = {};
  LVITEMA item = {};
  item.iSubItem = column;
  item.pszText = text;
  item.cchTextMax = sizeof text;
  window_.send(LVM_GETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return text;
}

std::string ListView::title(int column) const {
  char text[128] = {};
  LVCOLUMNA record = {};
  record.mask = LVCF_TEXT;
  record.pszText = text;
  record.cchTextMax = sizeof text;
  window_.send(LVM_GETCOLUMNA, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&record));
  return text;
}

int ListView::columnWidth(int column) const {
  return static_cast<int>(window_.send(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)));
}

int ListView::icon(int row) const {
  LVITEMA item = {};
  item.mask = LVIF_IMAGE;
  item.iItem = row;
  window_.send(LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
  return item.iImage;
}

void ListView::clickRow(int row) const {
  RECT area = {};
  area.left = LVIR_LABEL;
  window_.send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
  window_.pressAt({area.left + 4, (area.top + area.bottom) / 2});
  window_.settle();
}

HTREEITEM TreeView::next(HTREEITEM item, WPARAM relation) const {
  return reinterpret_cast<HTREEITEM>(
      window_.send(TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

std::string TreeView::text(HTREEITEM item) const {
  char text[256] = {};
  TVITEMA record = {};
  record.mask = TVIF_TEXT;
  record.hItem = item;
  record.pszText = text;
  record.cchTextMax = sizeof text;
  window_.send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&record));
  return text;
}

LPARAM TreeView::parameter(HTREEITEM item) const {
  TVITEMA record = {};
  record.mask = TVIF_PARAM;
  record.hItem = item;
  window_.send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&record));
  return record.lParam;
}

HTREEITEM TreeView::findBelow(HTREEITEM item, const std::string& name) const {
  for (; item != nullptr; item = next(item, TVGN_NEXT)) {
    if (text(item) == name) return item;
    if (HTREEITEM found = findBelow(next(item, TVGN_CHILD), name); found != nullptr) return found;
  }
  return nullptr;
}

void TreeView::select(HTREEITEM item) const {
  window_.send(TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

Window Sheet::tabs() const {
  return Window(reinterpret_cast<HWND>(window_.send(PSM_GETTABCONTROL)));
}

std::vector<std::string> Sheet::titles() const {
  std::vector<std::string> titles;
  const auto count = static_cast<int>(tabs().send(TCM_GETITEMCOUNT));
  for (int index = 0; index < count; ++index) {
    char text[128] = {};
    TCITEMA item = {};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = sizeof text;
    tabs().send(TCM_GETITEMA, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
    titles.emplace_back(text);
  }
  return titles;
}

Window Sheet::page(int index) const {
  window_.send(PSM_SETCURSEL, static_cast<WPARAM>(index));
  window_.settle();
  return currentPage();
}

Window Sheet::currentPage() const {
  return Window(reinterpret_cast<HWND>(window_.send(PSM_GETCURRENTPAGEHWND)));
}

int Sheet::currentIndex() const { return static_cast<int>(tabs().send(TCM_GETCURSEL)); }

}  // namespace test

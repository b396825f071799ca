#include "viewer/list_view.h"

#include "frame/module.h"
#include "frame/resource_text.h"
#include "platform/common_controls.h"
#include "viewer/wide_text.h"

namespace viewer {
namespace {

constexpr int textLimit = 128;

}  // namespace

bool addListColumn(HWND list, int index, UINT titleString, int width) {
  std::wstring title = wideText(frame::resourceText(frame::resourceLibrary(), titleString));
  LVCOLUMNW column = {};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.pszText = title.data();
  column.cchTextMax = textLimit;
  column.cx = width;
  column.iSubItem = index;
  return SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index),
                      reinterpret_cast<LPARAM>(&column)) == index;
}

void addListRow(HWND list, int index, const std::string& name, const std::string& value,
                std::optional<int> icon) {
  std::wstring nameText = wideText(name);
  std::wstring valueText = wideText(value);
  LVITEMW item = {};
  item.mask = LVIF_TEXT | (icon ? LVIF_IMAGE : 0U);
  item.iItem = index;
  item.iImage = icon.value_or(0);
  item.pszText = nameText.data();
  SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  item.iSubItem = 1;
  item.pszText = valueText.data();
  SendMessageW(list, LVM_SETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

}  // namespace viewer

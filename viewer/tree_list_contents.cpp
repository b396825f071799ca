#include <new>

#include "frame/module.h"
#include "property/heap_errors.h"
#include "property/heap_parser.h"
#include "viewer/clipboard.h"
#include "viewer/heap_tree.h"
#include "viewer/list_view.h"
#include "viewer/tree_list_state.h"
#include "viewer/wide_text.h"

namespace viewer {
namespace {

using host::i32;

constexpr COLORREF transparent = RGB(255, 0, 255);

// Places in the tree's image list.
enum FolderImage : int { folderOpen = 0, folderClosed = 1 };

enum ColumnTitle : UINT { nameTitle = 2620, dataTitle = 2621 };

OwnedImageList loadImages(SIZE size, std::initializer_list<const wchar_t*> bitmaps) noexcept {
  OwnedImageList images(ImageList_Create(size.cx, size.cy, ILC_COLOR24 | ILC_MASK,
                                         static_cast<int>(bitmaps.size()), 0));
  if (!images) return {};
  for (const wchar_t* name : bitmaps) {
    const OwnedBitmap bitmap(LoadBitmapW(frame::moduleHandle(), name));
    if (!bitmap || ImageList_AddMasked(images.get(), bitmap.get(), transparent) < 0) return {};
  }
  return images;
}

// The list view destroys its image list, the tree view leaves it to the control.
bool attachImages(TreeListState& state) noexcept {
  state.treeImages = loadImages({18, 14}, {L"TLIDB_FOLDER_OPEN", L"TLIDB_FOLDER_CLOSE"});
  OwnedImageList listImages = loadImages({18, 16}, {L"TLIDB_STR", L"TLIDB_BIN", L"TLIDB_TIME"});
  if (!state.treeImages || !listImages) return false;
  TreeView_SetImageList(state.tree, state.treeImages.get(), TVSIL_NORMAL);
  ListView_SetImageList(state.list, listImages.release(), LVSIL_SMALL);
  return true;
}

bool addColumns(HWND list) {
  const ColumnWidths widths = listColumnWidths(clientSize(list).width);
  return addListColumn(list, 0, nameTitle, widths.name) &&
         addListColumn(list, 1, dataTitle, widths.data);
}

HTREEITEM addNode(HWND tree, HTREEITEM parent, const TreeNode& node) {
  std::wstring name = wideText(node.name);
  TVINSERTSTRUCTW item = {};
  item.hParent = parent;
  item.hInsertAfter = TVI_LAST;
  item.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
  item.item.pszText = name.data();
  item.item.lParam = node.record;
  item.item.iImage = folderClosed;
  item.item.iSelectedImage = folderOpen;
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

bool addNodes(const TreeListState& state) {
  std::vector<HTREEITEM> items;
  for (const TreeNode& node : heapTree(*state.heap)) {
    const HTREEITEM parent = items.empty() ? TVI_ROOT : items[node.parent];
    items.push_back(addNode(state.tree, parent, node));
    if (items.back() != nullptr) continue;
    property::reportHeapMemory(property::HeapMemory::treeItems);
    return false;
  }
  TreeView_Expand(state.tree, items.front(), TVE_EXPAND);
  TreeView_SelectItem(state.tree, items.front());
  return true;
}

i32 selectedRecord(HWND tree) noexcept {
  const HTREEITEM selected = TreeView_GetSelection(tree);
  if (selected == nullptr) return property::noHeapRecord;
  TVITEMW item = {};
  item.mask = TVIF_PARAM;
  item.hItem = selected;
  if (SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) == FALSE) {
    return property::noHeapRecord;
  }
  return static_cast<i32>(item.lParam);
}

void listRecord(const TreeListState& state, i32 record) {
  int index = 0;
  for (const ListRow& row : heapListRows(*state.heap, record)) {
    addListRow(state.list, index++, row.name, row.value, static_cast<int>(row.icon));
  }
}

std::string copyOf(const TreeListState& state, HWND view) {
  const int row = ListView_GetNextItem(state.list, -1, LVNI_SELECTED);
  const i32 record = selectedRecord(state.tree);
  if (view != state.list || row < 0 || record < 0) return heapAsText(*state.heap);
  return heapListRows(*state.heap, record).at(static_cast<std::size_t>(row)).value;
}

}  // namespace

bool fillTreeList(TreeListState& state, std::span<const host::u8> heap) noexcept {
  try {
    if (!attachImages(state) || !addColumns(state.list)) return false;
    auto parsed = property::parseHeap(frame::resourceLibrary(), heap);
    if (!parsed) return false;
    state.heap.emplace(std::move(*parsed));
    return addNodes(state);
  } catch (const std::bad_alloc&) {
    property::reportHeapMemory(property::HeapMemory::treeItems);
    return false;
  }
}

void listSelectedRecord(TreeListState& state) noexcept {
  SendMessageW(state.list, WM_SETREDRAW, FALSE, 0);
  ListView_DeleteAllItems(state.list);
  const i32 record = selectedRecord(state.tree);
  try {
    if (state.heap && record >= 0) listRecord(state, record);
  } catch (const std::bad_alloc&) {
    // The rows that there was memory for are shown.
  }
  SendMessageW(state.list, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(state.list, nullptr, TRUE);
}

void copyFromTreeList(const TreeListState& state, HWND view) noexcept {
  try {
    if (state.heap) copyText(state.main, copyOf(state, view));
  } catch (const std::exception&) {
    // The clipboard stays as it is.
  }
}

}  // namespace viewer

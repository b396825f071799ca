#include "viewer/tree_list_state.h"

namespace viewer {
namespace {

// Alternating pixels: inverting with it shows on every background, and again takes it away.
OwnedBrush patternBrush() noexcept {
  static constexpr WORD rows[8] = {0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55};
  const OwnedBitmap pattern(CreateBitmap(8, 8, 1, 1, rows));
  return OwnedBrush(pattern ? CreatePatternBrush(pattern.get()) : nullptr);
}

// Draws the bar over the views, or takes it away where it is drawn.
void invertBar(const TreeListState& state) noexcept {
  const Area bar = splitterArea(state.arrangement, clientSize(state.main), state.dragged);
  const OwnedBrush brush = patternBrush();
  const WindowContext context(state.main);
  if (!brush || context.get() == nullptr) return;
  const HGDIOBJ previous = SelectObject(context.get(), brush.get());
  PatBlt(context.get(), bar.left, bar.top, bar.width, bar.height, PATINVERT);
  SelectObject(context.get(), previous);
}

void place(HDWP& positions, HWND window, const Area& area) noexcept {
  if (positions == nullptr) return;
  positions = DeferWindowPos(positions, window, nullptr, area.left, area.top, area.width,
                             area.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void beginDrag(TreeListState& state) noexcept {
  if (state.isDragging) return;
  state.isDragging = true;
  state.dragged = state.splitter;
  invertBar(state);
  SetCapture(state.main);
}

void dragTo(TreeListState& state, LPARAM pointer) noexcept {
  if (!state.isDragging) return;
  const bool stacked = state.arrangement == Arrangement::stacked;
  const unsigned coordinate = stacked ? HIWORD(pointer) : LOWORD(pointer);
  invertBar(state);
  state.dragged = clampSplitter(coordinate, extentAlong(state.arrangement, clientSize(state.main)));
  invertBar(state);
}

void endDrag(TreeListState& state) noexcept {
  if (!state.isDragging) return;
  invertBar(state);
  state.isDragging = false;
  ReleaseCapture();
  state.splitter = state.dragged;
  layOutViews(state);
}

void cancelDrag(TreeListState& state) noexcept {
  if (!state.isDragging) return;
  invertBar(state);
  state.isDragging = false;
}

// Both at once, so that neither is drawn where the other still is.
void layOutViews(const TreeListState& state) noexcept {
  const Size client = clientSize(state.main);
  HDWP positions = BeginDeferWindowPos(2);
  place(positions, state.tree, treeArea(state.arrangement, client, state.splitter));
  place(positions, state.list, listArea(state.arrangement, client, state.splitter));
  if (positions != nullptr) EndDeferWindowPos(positions);
}

}  // namespace viewer

// The tree-list as a window: what it shows, its splitter, its place in the tab order.
#include "viewer/tree_list.h"

#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <stdexcept>

#include "frame/module.h"
#include "tests/windows/property_files.h"
#include "tests/windows/sheet.h"
#include "tests/windows/support/screenshot.h"

namespace {

using namespace test;
using testing::ElementsAre;

constexpr int mainId = 1;
constexpr int before = 100;
constexpr int behind = 101;
constexpr RECT area = {10, 40, 310, 250};

struct Made {
  Bytes heap;
  bool stacked;
  HWND window;
};

// The control lies between both fields in the tab order, as its creation puts it last.
INT_PTR CALLBACK hostProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    auto& made = *reinterpret_cast<Made*>(lParam);
    made.window = viewer::createTreeList(
        {frame::moduleHandle(), dialog, area, mainId, made.stacked, made.heap});
    SetWindowPos(GetDlgItem(dialog, behind), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    return TRUE;
  }
  if (message != WM_COMMAND || LOWORD(wParam) != IDCANCEL) return FALSE;
  EndDialog(dialog, 7);
  return TRUE;
}

class TreeList : public testing::Test {
 protected:
  void open(bool stacked, Bytes heap = cameraHeap()) {
    made_ = {std::move(heap), stacked, nullptr};
    thread_ = std::make_unique<DialogThread>([this] {
      return static_cast<int>(DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1),
                                              nullptr, hostProcedure,
                                              reinterpret_cast<LPARAM>(&made_)));
    });
    dialog_ = thread_->dialog();
    if (!dialog_) throw std::runtime_error("the dialog does not open");
  }
  void TearDown() override {
    if (!thread_) return;
    dialog_.post(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(thread_->result(), 7);
    viewer::unregisterTreeListClasses();
  }
  [[nodiscard]] Window main() const { return Window(made_.window); }
  [[nodiscard]] Window child(const std::string& className) const {
    for (const Window& window : main().children()) {
      if (window.className() == className) return window;
    }
    ADD_FAILURE() << "no " << className;
    return Window();
  }
  [[nodiscard]] TreeView tree() const { return TreeView(child("SysTreeView32")); }
  [[nodiscard]] ListView list() const { return ListView(child("SysListView32")); }
  [[nodiscard]] std::vector<std::string> values() const {
    std::vector<std::string> all;
    for (int row = 0; row < list().rows(); ++row) all.push_back(list().text(row, 1));
    return all;
  }
  void select(const std::string& name) const {
    const HTREEITEM item = tree().find(name);
    ASSERT_NE(item, nullptr) << name;
    tree().select(item);
  }
  // Where the tree ends, along the axis.
  [[nodiscard]] int splitter() const {
    const RECT place = tree().window().placeIn(main());
    return made_.stacked ? place.bottom : place.right;
  }
  void dragTo(int coordinate) const {
    const int from = splitter() + 1;
    const POINT start = made_.stacked ? POINT{50, from} : POINT{from, 50};
    const POINT end = made_.stacked ? POINT{50, coordinate} : POINT{coordinate, 50};
    main().drag(start, end);
    main().settle();
  }

  Made made_;
  std::unique_ptr<DialogThread> thread_;
  Window dialog_;
};

TEST_F(TreeList, ConsistsOfTheDescribedWindows) {
  open(true);
  std::vector<std::string> classes;
  for (const Window& window : dialog_.children()) classes.push_back(window.className());
  EXPECT_THAT(classes, ElementsAre("Edit", "CiffTreeRef", "Ciff_TreeList", "CiffListRef", "Edit"));
  EXPECT_EQ(main().id(), mainId);
  const RECT place = main().placeIn(dialog_);
  EXPECT_EQ(place.left, area.left);
  EXPECT_EQ(place.bottom, area.bottom);
  EXPECT_EQ(main().style() & (WS_CHILD | WS_TABSTOP), WS_CHILD | WS_TABSTOP);
  EXPECT_EQ(tree().window().style() & 0xFFFF,
            DWORD{TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS});
  EXPECT_EQ(list().window().style() & 0xFFFF, DWORD{LVS_REPORT | LVS_SINGLESEL | LVS_NOSORTHEADER});
  for (const Window& window : {dialog_.children()[1], dialog_.children()[3]}) {
    const RECT proxy = window.placeIn(dialog_);
    EXPECT_EQ(proxy.right - proxy.left, 1);
    EXPECT_EQ(proxy.bottom - proxy.top, 1);
    EXPECT_EQ(proxy.top, 0);
  }
  EXPECT_EQ(dialog_.children()[1].placeIn(dialog_).left, 0);
  EXPECT_EQ(dialog_.children()[3].placeIn(dialog_).left, 2);
}

TEST_F(TreeList, TheTreeShowsEveryRecord) {
  open(true);
  EXPECT_EQ(tree().text(tree().root()), "Camera data");
  EXPECT_EQ(tree().parameter(tree().root()), 0);
  EXPECT_EQ(tree().window().send(TVM_GETCOUNT), 10);
  const HTREEITEM owner = tree().find("Owner name");
  ASSERT_NE(owner, nullptr);
  EXPECT_EQ(tree().text(tree().next(owner, TVGN_PARENT)), "Camera");
  EXPECT_EQ(tree().parameter(owner), 5);
  EXPECT_NE(tree().find("Unknown record"), nullptr);
}

TEST_F(TreeList, ASelectionFillsTheListAndASubHeapEmptiesIt) {
  open(true);
  select("Model name");
  EXPECT_THAT(values(), ElementsAre("Maker", "Model"));
  EXPECT_EQ(list().text(0, 0), "Manufacturer");
  EXPECT_EQ(list().icon(0), 0);
  select("Camera");
  EXPECT_EQ(list().rows(), 0);
  select("Unknown record");
  EXPECT_THAT(values(), ElementsAre("7", "65535"));
  EXPECT_EQ(list().icon(0), 1);
  select("Captured time");
  EXPECT_EQ(list().icon(0), 2);
  select("Release method");
  EXPECT_THAT(values(), ElementsAre("1 (continuous shooting)"));
}

TEST_F(TreeList, TheColumnsShareTheListsWidth) {
  open(true);
  EXPECT_EQ(list().title(0), "Name");
  EXPECT_EQ(list().title(1), "Data");
  select("Camera");  // no rows, so no scroll bar takes room
  const int width = list().window().clientArea().right;
  EXPECT_EQ(list().columnWidth(0), 2 * width / 5 - 2);
  EXPECT_EQ(list().columnWidth(1), 3 * width / 5 - 2);
}

TEST_F(TreeList, TheImageListsHaveTheirSizes) {
  open(true);
  int width = 0;
  int height = 0;
  auto* folders = reinterpret_cast<HIMAGELIST>(tree().window().send(TVM_GETIMAGELIST));
  ASSERT_TRUE(ImageList_GetIconSize(folders, &width, &height));
  EXPECT_EQ(std::pair(width, height), std::pair(18, 14));
  EXPECT_EQ(ImageList_GetImageCount(folders), 2);
  auto* icons = reinterpret_cast<HIMAGELIST>(list().window().send(LVM_GETIMAGELIST, LVSIL_SMALL));
  ASSERT_TRUE(ImageList_GetIconSize(icons, &width, &height));
  EXPECT_EQ(std::pair(width, height), std::pair(18, 16));
  EXPECT_EQ(ImageList_GetImageCount(icons), 3);
}

TEST_F(TreeList, ANewSplitterHalvesTheControl) {
  for (const bool stacked : {true, false}) {
    open(stacked);
    const RECT client = main().clientArea();
    const int extent = stacked ? client.bottom : client.right;
    EXPECT_EQ(splitter(), (extent - 4) / 2);
    const RECT place = list().window().placeIn(main());
    EXPECT_EQ(stacked ? place.top : place.left, splitter() + 2);
    EXPECT_GT(saveScreenshot(dialog_, stacked ? "tree_list_stacked" : "tree_list_side_by_side"),
              8U);
    TearDown();
    thread_.reset();
  }
}

TEST_F(TreeList, TheSplitterFollowsTheMouseAndStopsAtBothEnds) {
  for (const bool stacked : {true, false}) {
    open(stacked);
    const RECT client = main().clientArea();
    const int extent = stacked ? client.bottom : client.right;
    dragTo(60);
    EXPECT_EQ(splitter(), 60);
    const RECT place = list().window().placeIn(main());
    EXPECT_EQ(stacked ? place.top : place.left, 62);
    dragTo(9);
    EXPECT_EQ(splitter(), 10);
    dragTo(-50);
    EXPECT_EQ(splitter(), 10) << "a place before the control";
    dragTo(extent - 13);
    EXPECT_EQ(splitter(), extent - 14);
    dragTo(extent + 100);
    EXPECT_EQ(splitter(), extent - 14);
    TearDown();
    thread_.reset();
  }
}

TEST_F(TreeList, OnlyADragThatBeganOnTheBarMovesIt) {
  open(true);
  const int place = splitter();
  main().post(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(50, 30));
  main().post(WM_LBUTTONUP, 0, MAKELPARAM(50, 30));
  main().settle();
  EXPECT_EQ(splitter(), place);
  main().post(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, place + 1));
  main().post(WM_MOUSEMOVE, 0, MAKELPARAM(50, 30));
  main().post(WM_LBUTTONUP, 0, MAKELPARAM(50, 30));
  main().settle();
  EXPECT_EQ(splitter(), place) << "a move without the button";
}

TEST_F(TreeList, TheBarRestoresWhatWasUnderIt) {
  open(true);
  select("Model name");
  main().settle();
  const Picture clean = pictureOf(main());
  const int place = splitter();
  main().post(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, place + 1));
  main().post(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(50, 30));
  main().settle();
  const Picture dragging = pictureOf(main());
  EXPECT_TRUE(dragging.pixels != clean.pixels) << "the bar is seen";
  main().post(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(50, place));
  main().post(WM_LBUTTONUP, 0, MAKELPARAM(50, place));
  main().settle();
  EXPECT_TRUE(pictureOf(main()).pixels == clean.pixels);
}

// Counts how often a window of this process is painted.
class PaintCount {
 public:
  explicit PaintCount(HWND window)
      : window_(window),
        original_(reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC))) {
    SetPropW(window, L"count", this);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure));
  }
  PaintCount(const PaintCount&) = delete;
  PaintCount& operator=(const PaintCount&) = delete;
  ~PaintCount() {
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_));
    RemovePropW(window_, L"count");
  }
  // Since the last call.
  int take() { return count_.exchange(0); }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = static_cast<PaintCount*>(GetPropW(window, L"count"));
    if (message == WM_PAINT) ++self->count_;
    return CallWindowProcW(self->original_, window, message, wParam, lParam);
  }

  HWND window_;
  WNDPROC original_;
  std::atomic<int> count_ = 0;
};

TEST_F(TreeList, NothingFlickersWhenTheBarIsMoved) {
  open(true);
  select("Model name");
  main().settle();
  PaintCount treeCount(tree().window().handle());
  PaintCount listCount(list().window().handle());
  const int place = splitter();
  main().post(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, place + 1));
  for (int y = place; y > 30; --y) main().post(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(50, y));
  main().settle();
  EXPECT_EQ(treeCount.take(), 0) << "the bar alone moves";
  EXPECT_EQ(listCount.take(), 0);
  main().post(WM_LBUTTONUP, 0, MAKELPARAM(50, 31));
  main().settle();
  EXPECT_EQ(splitter(), 31);
  EXPECT_LE(treeCount.take(), 1) << "both views take their places at once";
  EXPECT_LE(listCount.take(), 1);
  EXPECT_NE(list().window().send(LVM_GETEXTENDEDLISTVIEWSTYLE) & LVS_EX_DOUBLEBUFFER, 0);
}

TEST_F(TreeList, TheTabKeyGoesThroughTreeAndListBothWays) {
  open(true);
  const Window first = dialog_.control(before);
  const Window last = dialog_.control(behind);
  const auto step = [&](bool backward) {
    const Window from = dialog_.focused();
    dialog_.send(WM_NEXTDLGCTL, backward ? 1 : 0, FALSE);
    EXPECT_NE(dialog_.focused(), from);
    return dialog_.focused();
  };
  EXPECT_EQ(dialog_.focused(), first);
  EXPECT_EQ(step(false), tree().window());
  EXPECT_EQ(step(false), list().window());
  EXPECT_EQ(step(false), last);
  EXPECT_EQ(step(false), first);
  EXPECT_EQ(step(true), last);
  EXPECT_EQ(step(true), list().window());
  EXPECT_EQ(step(true), tree().window());
  EXPECT_EQ(step(true), first);
}

TEST_F(TreeList, TabKeysTakeTheSameWay) {
  open(true);
  dialog_.focused().key(VK_TAB);
  dialog_.settle();
  EXPECT_EQ(dialog_.focused(), tree().window());
  dialog_.focused().key(VK_TAB);
  dialog_.settle();
  EXPECT_EQ(dialog_.focused(), list().window());
  dialog_.focused().key(VK_TAB);
  dialog_.settle();
  EXPECT_EQ(dialog_.focused(), dialog_.control(behind));
}

TEST_F(TreeList, ItsCursorsAreTheSplittersOwn) {
  open(true);
  const HMODULE module = frame::moduleHandle();
  EXPECT_NE(LoadCursorA(module, "TLIDC_SPLITV"), nullptr);
  EXPECT_NE(LoadCursorA(module, "TLIDC_SPLITH"), nullptr);
  EXPECT_NE(LoadCursorA(module, "TLIDC_SPLITV"), LoadCursorA(module, "TLIDC_SPLITH"));
  const auto hit = MAKELPARAM(HTCLIENT, WM_MOUSEMOVE);
  const auto over = reinterpret_cast<WPARAM>(main().handle());
  EXPECT_EQ(main().send(WM_SETCURSOR, over, hit), TRUE);
}

TEST_F(TreeList, AHeapThatCannotBeParsedLeavesNoWindow) {
  open(true, {'I', 'I', 1, 2, 3});
  EXPECT_EQ(main().handle(), nullptr);
  EXPECT_EQ(dialog_.children().size(), 2U) << "only the fields";
}

TEST_F(TreeList, ItsClassesGoWhenTheyAreTakenBack) {
  open(true);
  WNDCLASSA found = {};
  const HINSTANCE module = frame::moduleHandle();
  for (const char* name : {"Ciff_TreeList", "CiffTreeRef", "CiffListRef"}) {
    ASSERT_TRUE(GetClassInfoA(module, name, &found)) << name;
    EXPECT_EQ(found.cbWndExtra, 8);
  }
  TearDown();
  thread_.reset();
  for (const char* name : {"Ciff_TreeList", "CiffTreeRef", "CiffListRef"}) {
    EXPECT_FALSE(GetClassInfoA(module, name, &found)) << name;
  }
}

TEST_F(TreeList, AnUnchangedHeapIsNotHandedOut) {
  open(true);
  HGLOBAL heap = reinterpret_cast<HGLOBAL>(std::uintptr_t{7});
  host::u32 length = 7;
  viewer::fetchEditedHeap(main().handle(), &heap, &length);
  EXPECT_EQ(heap, nullptr);
  EXPECT_EQ(length, 0U);
}

}  // namespace

// The property dialog of the built plug-in, in the frame of the built kFioUtil.
#include <gmock/gmock.h>

#include "host/property_pages.h"
#include "tests/windows/property_dialog_fixture.h"
#include "tests/windows/support/screenshot.h"

namespace {

using namespace test;
using testing::ElementsAre;

constexpr int valueBox = 3051;
constexpr int tagList = 3081;
constexpr int iptcList = 3082;

// Pixels of a display with 96 dots per inch on this one.
int scaled(int pixels) {
  const HDC screen = GetDC(nullptr);
  const int dots = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return pixels * dots / 96;
}

class PropertyDialog : public PropertyDialogTest {
 protected:
  // Without a release: the window is gone by then.
  static void pressEscape(const Window& window) { window.post(WM_KEYDOWN, VK_ESCAPE, 1); }
};

TEST_F(PropertyDialog, ShowsThePagesThatTheRecordHasSomethingFor) {
  open({.exif = true});
  EXPECT_THAT(sheet().titles(), ElementsAre("General", "EXIF"));
  EXPECT_EQ(sheet().window().text(), "JPEG");
  EXPECT_EQ(close(), 0);
  open(everything);
  EXPECT_THAT(sheet().titles(), ElementsAre("General", "Camera data", "EXIF", "GPS", "IPTC"));
  EXPECT_EQ(close(), 0);
  open({});
  EXPECT_THAT(sheet().titles(), ElementsAre("General"));
  EXPECT_EQ(close(), 0);
}

TEST_F(PropertyDialog, TheGeneralPageTellsThePicture) {
  open(everything);
  close();
  wchar_t path[] = L"Z:\\pictures\\B\x00FCro im Herbst.jpg";
  setPath(path);
  show();
  const Window page = sheet().page(0);
  EXPECT_EQ(page.control(3202).text(), "JPEG");
  EXPECT_EQ(page.control(3203).text(), "24 x 16 pixels");
  EXPECT_EQ(page.control(3206).text(), "72 x 72");
  EXPECT_EQ(page.control(3207).text(), "Baseline");
  EXPECT_TRUE(page.control(3208).visible());
  EXPECT_FALSE(page.control(3211).visible()) << "no number of images in a JPEG file";
  EXPECT_FALSE(page.control(3261).visible()) << "and no label for it";
  EXPECT_GT(saveScreenshot(sheet().window(), "property_general"), 8U);
  close();
}

TEST_F(PropertyDialog, TheExifPageListsFormattedValuesAndShowsTheRawOne) {
  open(everything);
  const Window page = sheet().page(2);
  const ListView list(page.control(tagList));
  EXPECT_EQ(list.title(0), "Name");
  EXPECT_EQ(list.title(1), "Value");
  EXPECT_EQ(list.columnWidth(0), scaled(140));
  EXPECT_EQ(list.columnWidth(1), scaled(250));
  ASSERT_EQ(list.rows(), 8);
  EXPECT_EQ(list.text(2, 0), "F-number");
  EXPECT_EQ(list.text(2, 1), "F/2.8");
  EXPECT_NE(page.control(valueBox).style() & ES_READONLY, 0U);
  EXPECT_EQ(page.control(valueBox).text(), "");
  list.clickRow(2);
  EXPECT_EQ(page.control(valueBox).text(), "28/10");
  list.clickRow(1);
  EXPECT_EQ(page.control(valueBox).text(), "1/250");
  EXPECT_GT(saveScreenshot(sheet().window(), "property_exif"), 8U);
  close();
}

TEST_F(PropertyDialog, TheGpsPageListsItsFields) {
  open(everything);
  const Window page = sheet().page(3);
  const ListView list(page.control(tagList));
  EXPECT_EQ(list.columnWidth(0), scaled(140));
  EXPECT_EQ(list.columnWidth(1), scaled(140));
  ASSERT_EQ(list.rows(), 5);
  EXPECT_EQ(list.text(0, 1), "2,2,0,0");
  list.clickRow(0);
  EXPECT_EQ(page.control(valueBox).text(), "02 02 00 00 ");
  EXPECT_GT(saveScreenshot(sheet().window(), "property_gps"), 8U);
  close();
}

TEST_F(PropertyDialog, TheIptcBoxShowsTheDescriptorOfTheRowsNumber) {
  open(everything);
  const Window page = sheet().page(4);
  const ListView list(page.control(iptcList));
  ASSERT_EQ(list.rows(), 4);
  EXPECT_EQ(list.columnWidth(0), scaled(140));
  EXPECT_EQ(list.columnWidth(1), scaled(140));
  EXPECT_EQ(list.text(0, 0), "Record version");
  EXPECT_EQ(list.text(0, 1), "2.0");
  EXPECT_EQ(list.text(1, 1), "Wien");
  list.clickRow(0);
  EXPECT_EQ(page.control(valueBox).text(), "") << "the record's first descriptor is no text";
  EXPECT_GT(saveScreenshot(sheet().window(), "property_iptc"), 8U);
  close();
}

TEST_F(PropertyDialog, TheCameraPageHoldsTheTreeListFivePixelsInside) {
  open(everything);
  const Window page = sheet().page(1);
  const Window main = page.control(1);
  EXPECT_EQ(main.className(), "Ciff_TreeList");
  const RECT area = main.placeIn(page);
  const RECT client = page.clientArea();
  EXPECT_EQ(area.left, 5);
  EXPECT_EQ(area.top, 5);
  EXPECT_EQ(area.right, client.right - 5);
  EXPECT_EQ(area.bottom, client.bottom - 5);
  EXPECT_GT(saveScreenshot(sheet().window(), "property_camera_data"), 8U);
  close();
}

TEST_F(PropertyDialog, ThePagesHoldTheirLocksAsLongAsTheyLive) {
  open(everything);
  EXPECT_EQ(locks(), 0U) << "the general page holds none";
  sheet().page(2);
  EXPECT_EQ(locks(), 2U);
  sheet().page(3);
  EXPECT_EQ(locks(), 4U);
  sheet().page(4);
  EXPECT_EQ(locks(), 6U);
  close();
  EXPECT_EQ(locks(), 0U);
}

TEST_F(PropertyDialog, OkIsOneAndEscapeIsNothing) {
  open(everything);
  sheet().ok();
  EXPECT_EQ(result(), 1);
  show();
  pressEscape(sheet().window().focused());
  EXPECT_EQ(result(), 0);
}

// Whatever has the focus: the views of the tree-list and the value boxes must let Esc pass.
TEST_F(PropertyDialog, EscapeClosesFromEveryControl) {
  open(everything);
  close();
  constexpr struct {
    int page;
    int control;
  } places[] = {{0, 3201}, {1, 1}, {2, tagList}, {2, valueBox}, {4, iptcList}, {4, valueBox}};
  for (const auto& place : places) {
    show();
    const Window page = sheet().page(place.page);
    sheet().window().send(WM_NEXTDLGCTL,
                          reinterpret_cast<WPARAM>(page.control(place.control).handle()), TRUE);
    const Window focused = sheet().window().focused();
    EXPECT_TRUE(IsChild(page.handle(), focused.handle())) << place.control;
    pressEscape(focused);
    EXPECT_EQ(result(), 0) << place.page << ' ' << place.control;
  }
}

TEST_F(PropertyDialog, ReopensOnThePageShownLast) {
  open(everything);
  sheet().page(3);
  close();
  show();
  EXPECT_EQ(sheet().currentIndex(), 3);
  sheet().page(1);
  sheet().ok();
  EXPECT_EQ(result(), 1);
  show();
  EXPECT_EQ(sheet().currentIndex(), 1);
  sheet().page(0);
  close();
}

TEST_F(PropertyDialog, AFileWithFewerPagesOpensOnItsLast) {
  open(everything);
  sheet().page(4);
  close();
  open({.exif = true});
  EXPECT_EQ(sheet().currentIndex(), 1);
  sheet().page(0);
  close();
}

HGLOBAL extraPageFile = nullptr;

INT_PTR CALLBACK extraPage(HWND, UINT message, WPARAM, LPARAM lParam) {
  if (message == WM_INITDIALOG) extraPageFile = reinterpret_cast<HGLOBAL>(lParam);
  return FALSE;
}

TEST_F(PropertyDialog, PagesOfTheCallerComeBehindThoseOfTheModule) {
  open({.exif = true});
  close();
  char title[260] = "A page of the host";
  host::PropertyPage extra = {};
  extra.size = host::propertyPageSizeWord;
  extra.resources = reinterpret_cast<host::u64>(plugin().resources.handle());
  extra.templateId = 797;
  extra.title = reinterpret_cast<host::u64>(title);
  extra.procedure = reinterpret_cast<host::u64>(&extraPage);
  show(0, 1, &extra);
  EXPECT_THAT(sheet().titles(), ElementsAre("General", "EXIF", "A page of the host"));
  sheet().page(2);
  EXPECT_EQ(extraPageFile, file_->handle());
  sheet().page(0);
  close();
}

TEST_F(PropertyDialog, TheArrowKeysMoveTheValueBoxAlong) {
  open(everything);
  const Window page = sheet().page(2);
  const ListView list(page.control(tagList));
  list.clickRow(0);
  EXPECT_EQ(page.control(valueBox).text(), "0231");
  list.window().key(VK_DOWN);
  list.window().settle();
  EXPECT_EQ(page.control(valueBox).text(), "1/250");
  close();
}

TEST_F(PropertyDialog, TheTabKeyReachesEveryControlOfThePages) {
  open(everything);
  const Window window = sheet().window();
  const Window page = sheet().page(2);
  window.send(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(page.control(tagList).handle()), TRUE);
  window.send(WM_NEXTDLGCTL, 0, FALSE);
  EXPECT_EQ(window.focused(), page.control(valueBox));
  window.send(WM_NEXTDLGCTL, 0, FALSE);
  EXPECT_EQ(window.focused(), window.control(IDOK));
  close();
}

TEST_F(PropertyDialog, TheTreeListStandsBetweenTheTabsAndTheButtons) {
  open(everything);
  const Window window = sheet().window();
  const Window main = sheet().page(1).control(1);
  const auto next = [&](WPARAM backward) {
    window.send(WM_NEXTDLGCTL, backward, FALSE);
    return window.focused();
  };
  window.send(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(sheet().tabs().handle()), TRUE);
  EXPECT_EQ(next(0).className(), "SysTreeView32");
  const Window list = next(0);
  EXPECT_EQ(list.className(), "SysListView32");
  EXPECT_TRUE(IsChild(main.handle(), list.handle()));
  EXPECT_EQ(next(0), window.control(IDOK));
  EXPECT_EQ(next(1), list);
  EXPECT_EQ(next(1).className(), "SysTreeView32");
  EXPECT_EQ(next(1), sheet().tabs());
  close();
}

TEST_F(PropertyDialog, TheFlagsChooseTheArrangement) {
  for (const int flags : {0, 1}) {
    open({.cameraData = true}, flags);
    const Window main = sheet().page(1).control(1);
    const Window tree = main.children().at(0);
    const RECT place = tree.placeIn(main);
    const RECT client = main.clientArea();
    EXPECT_EQ(place.right >= client.right, flags == 0) << "stacked views have the whole width";
    sheet().page(0);
    close();
  }
}

TEST_F(PropertyDialog, NoWindowClassOfTheModuleStays) {
  open({.cameraData = true});
  sheet().page(1);
  WNDCLASSA found = {};
  const HMODULE module = plugin().module.handle();
  EXPECT_TRUE(GetClassInfoA(module, "Ciff_TreeList", &found));
  sheet().page(0);
  close();
  for (const char* name : {"Ciff_TreeList", "CiffTreeRef", "CiffListRef"}) {
    EXPECT_FALSE(GetClassInfoA(module, name, &found)) << name;
  }
}

TEST_F(PropertyDialog, AUnicodeFileNameIsShown) {
  wchar_t path[] = L"Z:\\pictures\\B\x00FCro \x5199\x771F.jpg";
  open({});
  close();
  setPath(path);
  show();
  wchar_t text[64] = {};
  GetDlgItemTextW(sheet().page(0).handle(), 3201, text, 64);
  EXPECT_STREQ(text, L"B\x00FCro \x5199\x771F.jpg");
  close();
}

// As a user at a screen runs it.
TEST(PropertiesCommand, ShowsTheDialogAndWaitsForItsEnd) {
  const ScratchFile scratch(jpegWith({.exif = true}));
  std::string command = '"' + distributed("fiohost.exe").string() + "\" properties --window \"" +
                        scratch.path() + '"';
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  ASSERT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                             &startup, &process));
  std::vector<Window> found;
  EXPECT_TRUE(eventually([&] {
    found = threadWindows(process.dwThreadId, "#32770");
    return !found.empty();
  }));
  for (const Window& window : found) window.post(WM_COMMAND, IDCANCEL);
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 20000), WAIT_OBJECT_0);
  DWORD code = 77;
  GetExitCodeProcess(process.hProcess, &code);
  EXPECT_EQ(code, 0U);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
}

}  // namespace

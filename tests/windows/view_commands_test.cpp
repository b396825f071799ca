// The picture window's dialogs, the clipboard, what it remembers and what it gives back.
#include "tests/windows/support/handle_count.h"
#include "tests/windows/view_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;

TEST_F(ViewWindowTest, EveryCommandIsInTheMenuWithItsKey) {
  open({});
  HMENU bar = GetMenu(window_.handle());
  EXPECT_EQ(GetMenuItemCount(bar), fiohost::view::menuCount);
  for (const fiohost::view::ActionRow& row : fiohost::view::actionRows()) {
    char text[100] = {};
    GetMenuStringA(bar, static_cast<UINT>(row.action), text, sizeof text, MF_BYCOMMAND);
    EXPECT_EQ(std::string(text), fiohost::view::menuText(row));
  }
}

TEST_F(ViewWindowTest, PropertiesOpenOverTheWindow) {
  addJpeg("a.jpg", {});
  openDecoded({"a.jpg"});
  window_.post(WM_COMMAND, static_cast<WPARAM>(Action::properties));
  const Window dialog = thread_->dialog();
  EXPECT_EQ(GetWindow(dialog.handle(), GW_OWNER), window_.handle());
  EXPECT_FALSE(window_.enabled());
  dialog.post(PSM_PRESSBUTTON, PSBTN_CANCEL);
  EXPECT_TRUE(eventually([&] { return window_.enabled(); }));
}

TEST_F(ViewWindowTest, TheOpenDialogOpensAFile) {
  addJpeg("a.jpg", {.width = 90, .height = 30});
  addJpeg("b.jpg", {.width = 80, .height = 30});
  openDecoded({"a.jpg"});
  window_.post(WM_COMMAND, static_cast<WPARAM>(Action::open));
  const Window dialog = thread_->dialog();
  EXPECT_THAT(dialog.text(), HasSubstr("Open"));
  constexpr int nameField = 0x480;  // edt1 and its combo box of the system's dialog
  constexpr int nameList = 0x47C;
  HWND field = GetDlgItem(dialog.handle(), nameField);
  if (field == nullptr) field = GetDlgItem(dialog.handle(), nameList);
  ASSERT_NE(field, nullptr);
  const std::string name = nameOf("b.jpg");
  Window(field).send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
  dialog.post(WM_COMMAND, IDOK);
  EXPECT_TRUE(eventually([this] { return partText(1) == "80 x 30"; }));
}

TEST_F(ViewWindowTest, SavingAsksForTheNameAndTheOptions) {
  addJpeg("a.jpg", {.width = 90, .height = 30});
  openDecoded({"a.jpg"});
  window_.post(WM_COMMAND, static_cast<WPARAM>(Action::saveAs));
  Window dialog = thread_->dialog();
  EXPECT_THAT(dialog.text(), HasSubstr("Save"));
  constexpr int nameField = 0x480;
  constexpr int nameList = 0x47C;
  HWND field = GetDlgItem(dialog.handle(), nameField);
  if (field == nullptr) field = GetDlgItem(dialog.handle(), nameList);
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(Window(field).text(), "a.jpg");
  const std::string name = nameOf("saved.jpg");
  Window(field).send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name.c_str()));
  dialog.post(WM_COMMAND, IDOK);
  ASSERT_TRUE(eventually([&] {
    dialog = thread_->dialog();
    return dialog.text() == "JPEG Options";
  }));
  constexpr int qualityField = 3051;
  dialog.control(qualityField).send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>("42"));
  dialog.control(IDOK).click();
  EXPECT_TRUE(eventually([this] { return partText(0).starts_with("Saved "); })) << partText(0);
  EXPECT_EQ(decodeJpeg(readBytes(file("saved.jpg"))).width, 90U);
  EXPECT_EQ(
      run({"convert", "a.jpg", "-o", "same.jpg", "--keep-settings", "--quality", "42"}).exitCode,
      0);
  EXPECT_EQ(readBytes(file("saved.jpg")), readBytes(file("same.jpg")));
  EXPECT_THAT(window_.text(), HasSubstr("a.jpg (1 of 2)")) << "the new file is one to step to";
}

TEST_F(ViewWindowTest, SavingTellsWhatItWouldLoseAndOffersToKeepIt) {
  addStereo();
  const std::vector<std::string> before = namesIn(folder());
  openDecoded({"pair.mpo"});
  window_.post(WM_COMMAND, static_cast<WPARAM>(Action::saveAs));
  Window question = thread_->dialog();
  EXPECT_EQ(question.text(), "Save As");
  std::string words;
  for (const Window& child : question.children()) words += child.text() + "|";
  EXPECT_THAT(words, HasSubstr("loses 1 other image"));
  EXPECT_NE(GetDlgItem(question.handle(), IDYES), nullptr);
  question.post(WM_COMMAND, IDCANCEL);
  EXPECT_TRUE(eventually([&] { return window_.enabled(); }));
  EXPECT_EQ(namesIn(folder()), before);
}

TEST_F(ViewWindowTest, CancellingTheOptionsSavesNothing) {
  addJpeg("a.jpg", {});
  openDecoded({"a.jpg"});
  window_.post(WM_COMMAND, static_cast<WPARAM>(Action::saveAs));
  thread_->dialog().post(WM_COMMAND, IDCANCEL);
  EXPECT_TRUE(eventually([&] { return window_.enabled(); }));
  EXPECT_FALSE(progressIsShown());
  EXPECT_THAT(namesIn(folder()), testing::ElementsAre("a.jpg"));
}

// What lies on the clipboard as pixels in rows from the top.
Pixels clipboardPicture() {
  Pixels pixels;
  if (OpenClipboard(nullptr) == FALSE) return pixels;
  HANDLE block = GetClipboardData(CF_DIB);
  const auto* header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(block));
  if (header != nullptr) {
    EXPECT_EQ(header->biBitCount, 24);
    pixels = {
        static_cast<unsigned>(header->biWidth), static_cast<unsigned>(header->biHeight), 3, {}};
    const auto* rows = reinterpret_cast<const std::uint8_t*>(header + 1);
    const std::size_t rowBytes = (pixels.width * 3U + 3U) / 4U * 4U;
    for (unsigned y = pixels.height; y-- > 0;) {
      for (unsigned x = 0; x < pixels.width; ++x) {
        const std::uint8_t* pixel = rows + y * rowBytes + x * 3U;
        pixels.bytes.insert(pixels.bytes.end(), {pixel[2], pixel[1], pixel[0]});
      }
    }
    GlobalUnlock(block);
  }
  CloseClipboard();
  return pixels;
}

TEST_F(ViewWindowTest, CopyTakesEveryPixelOfAFittedPicture) {
  addJpeg("large.jpg", {.width = 1901, .height = 1500});
  openDecoded({"large.jpg"});
  order(Action::copy);
  EXPECT_TRUE(eventually([this] { return partText(0) == "Copied"; })) << partText(0);
  EXPECT_TRUE(clipboardPicture() == decoded("large.jpg"));
}

TEST_F(ViewWindowTest, ThePlaceAndTheOptionsAreRemembered) {
  addJpeg("large.jpg", {.width = 2000, .height = 1600});
  openDecoded({"large.jpg"});
  MoveWindow(window_.handle(), 60, 50, 700, 520, TRUE);
  press('1');
  press('T');
  close();
  openDecoded({"large.jpg"});
  const RECT place = window_.rectangle();
  EXPECT_EQ(place.left, 60);
  EXPECT_EQ(place.top, 50);
  EXPECT_EQ(place.right, 760);
  EXPECT_EQ(place.bottom, 570);
  EXPECT_TRUE(isChecked(Action::actualSize));
  EXPECT_FALSE(isChecked(Action::filmStrip));
}

TEST_F(ViewWindowTest, APlaceOutsideEveryScreenIsMovedIn) {
  writeBytes(file("settings.ini"), {});
  const std::string ini = nameOf("settings.ini");
  for (const auto& [key, value] : {std::pair{"Left", "9000"}, std::pair{"Top", "-7000"},
                                   std::pair{"Width", "500"}, std::pair{"Height", "400"}}) {
    WritePrivateProfileStringA("KF_VIEW", key, value, ini.c_str());
  }
  open({});
  const RECT place = window_.rectangle();
  EXPECT_GE(place.left, 0);
  EXPECT_GE(place.top, 0);
  EXPECT_LE(place.right, GetSystemMetrics(SM_CXSCREEN));
  EXPECT_EQ(place.right - place.left, 500);
}

class ViewDpiTest : public ViewWindowTest, public testing::WithParamInterface<int> {};

// The system tells a window of its screen's resolution with the size to take there.
TEST_P(ViewDpiTest, EverythingGrowsWithTheScreen) {
  const int dpi = GetParam();
  addStereo();
  openDecoded({"pair.mpo"});
  order(Action::stereoOff);
  RECT wanted = {0, 0, 1200, 900};
  const int before = static_cast<int>(bar().clientArea().bottom);
  window_.send(WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&wanted));
  EXPECT_EQ(window_.rectangle().right, 1200);
  const int after = static_cast<int>(bar().clientArea().bottom);
  EXPECT_GE(after, before * dpi / 96 * 3 / 4) << "the text, though not the frame";
  expectPicture(imageOfPair(1), 120 * dpi / 96);
  const Window progress = bar().control(fiohost::view::StatusBar::progressId);
  const RECT place = progress.placeIn(bar());
  EXPECT_GT(place.right - place.left, 120 * dpi / 96);
  EXPECT_LE(place.right, bar().clientArea().right);
  EXPECT_GE(place.top, 0);
  EXPECT_LE(place.bottom, after);
  MINMAXINFO limits = {};
  window_.send(WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
  EXPECT_EQ(limits.ptMinTrackSize.x, 360 * dpi / 96);
  test::saveScreenshot(window_, "view_" + std::to_string(dpi));
}

INSTANTIATE_TEST_SUITE_P(Resolutions, ViewDpiTest, testing::Values(96, 144, 192));

TEST_F(ViewWindowTest, NoHandlesAreLeft) {
  addStereo();
  const auto useOnce = [this] {
    openDecoded({"pair.mpo"});
    for (const WPARAM key :
         {WPARAM{'A'}, WPARAM{'S'}, WPARAM{'1'}, WPARAM{'O'}, WPARAM{VK_RIGHT}}) {
      press(key);
    }
    waitForRest();
    static_cast<void>(client());
    close();
  };
  for (int warm = 0; warm < 3; ++warm) useOnce();
  const test::HandleCount before = test::countHandles();
  for (int time = 0; time < 10; ++time) useOnce();
  EXPECT_EQ(test::countHandles(), before);
}

}  // namespace
}  // namespace fiohostTest

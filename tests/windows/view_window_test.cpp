// The picture window: what it shows of a file, and what keys, wheel and drag do to it.
#include "tests/windows/view_fixture.h"
// These need what stands above.
#include <shellapi.h>
#include <shlobj.h>

namespace fiohostTest {
namespace {

using testing::HasSubstr;

TEST_F(ViewWindowTest, ShowsThePixelsOfAPicture) {
  addJpeg("a.jpg", {.width = 320, .height = 200});
  openDecoded({"a.jpg"});
  EXPECT_THAT(window_.text(), HasSubstr("a.jpg (1 of 1)"));
  EXPECT_EQ(partText(1), "320 x 200");
  EXPECT_EQ(partText(2), "100 %");
  expectPicture(decoded("a.jpg"));
}

TEST_F(ViewWindowTest, AnEmptyWindowSaysWhatToDo) {
  open({});
  EXPECT_EQ(window_.text(), "fiohost");
  EXPECT_TRUE(isEnabled(Action::open));
  EXPECT_FALSE(isEnabled(Action::saveAs));
  EXPECT_GT(test::saveScreenshot(window_, "view_empty"), 4U);
}

TEST_F(ViewWindowTest, ABrokenFileIsNamedWithItsProblem) {
  writeBytes(file("bad.jpg"), {1, 2, 3});
  openDecoded({"bad.jpg"});
  EXPECT_THAT(partText(0), HasSubstr("the header cannot be read"));
  EXPECT_FALSE(isEnabled(Action::properties));
  EXPECT_TRUE(isEnabled(Action::reload));
}

TEST_F(ViewWindowTest, ALargePictureIsFittedAndShownAtActualSizeByAKey) {
  addJpeg("large.jpg", {.width = 2000, .height = 1600});
  openDecoded({"large.jpg"});
  EXPECT_TRUE(isChecked(Action::fit));
  EXPECT_NE(partText(2), "100 %");
  press('1');
  EXPECT_EQ(partText(2), "100 %");
  EXPECT_TRUE(isChecked(Action::actualSize));
  EXPECT_FALSE(isChecked(Action::fit));
  waitForRest();
  const Pixels pixels = decoded("large.jpg");
  const POINT corner = cornerOf(2000, 1600);
  const POINT place = middle();
  EXPECT_EQ(at(client(), place.x, place.y), at(pixels, place.x - corner.x, place.y - corner.y));
  press('F');
  EXPECT_TRUE(isChecked(Action::fit));
}

TEST_F(ViewWindowTest, TheWheelZoomsAboutThePointer) {
  addJpeg("a.jpg", {.width = 1600, .height = 1200});
  openDecoded({"a.jpg"});
  press('1');
  waitForRest();
  const POINT corner = cornerOf(1600, 1200);
  const POINT pointer = {200, 150};
  POINT screen = pointer;
  ClientToScreen(window_.handle(), &screen);
  for (int notch = 0; notch < 7; ++notch) {
    window_.send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(screen.x, screen.y));
  }
  EXPECT_EQ(partText(2), "477 %");
  EXPECT_EQ(at(client(), pointer.x, pointer.y),
            at(decoded("a.jpg"), 200 - corner.x, 150 - corner.y));
  window_.send(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)),
               MAKELPARAM(screen.x, screen.y));
  EXPECT_EQ(partText(2), "381 %");
}

TEST_F(ViewWindowTest, KeysZoomAboutTheMiddle) {
  addJpeg("a.jpg", {.width = 100, .height = 80});
  openDecoded({"a.jpg"});
  press(VK_ADD);
  EXPECT_EQ(partText(2), "125 %");
  press(VK_OEM_PLUS);
  EXPECT_EQ(partText(2), "156 %");
  press(VK_SUBTRACT);
  press(VK_OEM_MINUS);
  press(VK_OEM_MINUS);
  EXPECT_EQ(partText(2), "80 %");
}

TEST_F(ViewWindowTest, DraggingMovesThePicture) {
  addJpeg("large.jpg", {.width = 2000, .height = 1600});
  openDecoded({"large.jpg"});
  press('1');
  waitForRest();
  const Pixels pixels = decoded("large.jpg");
  const POINT corner = cornerOf(2000, 1600);
  window_.drag({300, 300}, {380, 250});
  window_.settle();
  EXPECT_EQ(at(client(), 380, 250), at(pixels, 300 - corner.x, 300 - corner.y));
  window_.drag({10, 10}, {3000, 3000});
  window_.settle();
  EXPECT_EQ(at(client(), 0, 0), at(pixels, 0, 0)) << "it stops at its corner";
}

TEST_F(ViewWindowTest, KeysStepThroughTheFolder) {
  for (const char* name : {"b10.jpg", "b9.jpg", "c.jpg"}) addJpeg(name, {});
  addJpeg("a.jpg", {.width = 90, .height = 30});
  openDecoded({"b9.jpg"});
  EXPECT_THAT(window_.text(), HasSubstr("b9.jpg (2 of 4)"));
  press(VK_NEXT);
  EXPECT_THAT(window_.text(), HasSubstr("b10.jpg (3 of 4)"));
  press(VK_END);
  EXPECT_THAT(window_.text(), HasSubstr("c.jpg (4 of 4)"));
  EXPECT_FALSE(isEnabled(Action::nextFile));
  press(VK_NEXT);
  EXPECT_THAT(window_.text(), HasSubstr("c.jpg (4 of 4)"));
  press(VK_PRIOR);
  press(VK_HOME);
  EXPECT_THAT(window_.text(), HasSubstr("a.jpg (1 of 4)"));
  EXPECT_TRUE(eventually([this] { return partText(1) == "90 x 30"; }));
  waitForRest();
  expectPicture(decoded("a.jpg"));
}

TEST_F(ViewWindowTest, ThePictureIsTurnedAsItsExifSays) {
  addJpeg("turned.jpg", {.width = 300, .height = 200, .exif = exifWithOrientation(6)});
  openDecoded({"turned.jpg"});
  EXPECT_EQ(partText(1), "200 x 300");
  const POINT corner = cornerOf(200, 300);
  EXPECT_EQ(at(client(), static_cast<int>(corner.x) + 199, static_cast<int>(corner.y)),
            at(decoded("turned.jpg"), 0, 0));
}

TEST_F(ViewWindowTest, EscStopsASlowDecoding) {
  addJpeg("slow.jpg", {.width = 7000, .height = 6000, .progressive = true});
  addJpeg("a.jpg", {.width = 90, .height = 30});
  writeBytes(file("settings.ini"), {});
  WritePrivateProfileStringA("KF_VIEW", "Fit", "0", nameOf("settings.ini").c_str());
  open({"slow.jpg"});
  ASSERT_TRUE(eventually([this] { return progressIsShown() && partText(0) == "Decoding"; }));
  EXPECT_TRUE(isEnabled(Action::stop));
  press(VK_ESCAPE);
  EXPECT_EQ(partText(0), "Stopped");
  EXPECT_FALSE(progressIsShown());
  EXPECT_FALSE(isEnabled(Action::stop));
  press(VK_HOME);
  EXPECT_TRUE(eventually([this] { return partText(1) == "90 x 30"; })) << "the next one comes";
  waitForRest();
  expectPicture(decoded("a.jpg"));
}

TEST_F(ViewWindowTest, TheWindowAnswersWhileItDecodes) {
  addJpeg("slow.jpg", {.width = 7000, .height = 6000, .progressive = true});
  writeBytes(file("settings.ini"), {});
  WritePrivateProfileStringA("KF_VIEW", "Fit", "0", nameOf("settings.ini").c_str());
  open({"slow.jpg"});
  const Window progress = bar().control(fiohost::view::StatusBar::progressId);
  LRESULT last = 0;
  int steps = 0;
  ASSERT_TRUE(eventually([&] {
    window_.settle();
    const LRESULT position = progress.send(PBM_GETPOS);
    if (position != last && progressIsShown()) ++steps;
    last = position;
    return steps >= 3;
  })) << "the progress bar moves";
  constexpr Rgb background = {38, 38, 38};
  const POINT place = middle();
  EXPECT_TRUE(eventually([&] { return at(client(), place.x, place.y) != background; }))
      << "what has come is seen";
  window_.post(WM_CLOSE);
  EXPECT_EQ(thread_->result(), 0) << "closing waits for nothing";
  thread_.reset();
}

// What a file manager sends: names, each ended by a zero, behind a header.
WPARAM dropOf(const std::vector<std::wstring>& names) {
  std::wstring list;
  for (const std::wstring& name : names) list += name + L'\0';
  list += L'\0';
  HGLOBAL block = GlobalAlloc(GHND, sizeof(DROPFILES) + list.size() * sizeof(wchar_t));
  auto* header = static_cast<DROPFILES*>(GlobalLock(block));
  header->pFiles = sizeof *header;
  header->fWide = TRUE;
  std::memcpy(header + 1, list.data(), list.size() * sizeof(wchar_t));
  GlobalUnlock(block);
  return reinterpret_cast<WPARAM>(block);
}

TEST_F(ViewWindowTest, DroppedFilesAreOpened) {
  const std::string name = "\xC3\xBC\xE6\x97\xA5\xE6\x9C\xAC.jpg";
  addJpeg(name, {.width = 120, .height = 40});
  addJpeg("other.jpg", {.width = 40, .height = 40});
  open({});
  window_.post(WM_DROPFILES,
               dropOf({platform::widePath(file(name)), platform::widePath(file("other.jpg"))}));
  EXPECT_TRUE(eventually([this] { return partText(1) == "120 x 40"; }));
  waitForRest();
  expectPicture(decoded(name));
  wchar_t title[200] = {};
  GetWindowTextW(window_.handle(), title, 200);
  EXPECT_EQ(std::wstring(title), L"\x00FC\x65E5\x672C.jpg (1 of 2) - fiohost");
}

TEST_F(ViewWindowTest, APathLongerThanUsualIsOpened) {
  std::string folder = "long";
  for (int i = 0; i < 6; ++i) folder += "/" + std::string(60, static_cast<char>('a' + i));
  std::filesystem::create_directories(file(folder));
  addJpeg(folder + "/1.jpg", {.width = 120, .height = 40});
  addJpeg(folder + "/2.jpg", {.width = 110, .height = 40});
  openDecoded({folder + "/1.jpg"});
  EXPECT_EQ(partText(1), "120 x 40");
  press(VK_NEXT);
  EXPECT_TRUE(eventually([this] { return partText(1) == "110 x 40"; })) << partText(0);
}

}  // namespace
}  // namespace fiohostTest

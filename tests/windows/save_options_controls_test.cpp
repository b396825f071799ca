// The controls of the save-options dialog: what they show first and how they follow each other.
#include "tests/windows/save_options_dialog.h"

namespace {

using namespace test;

class SaveOptionsControls : public SaveOptionsDialog {
 protected:
  void SetUp() override {
    SaveOptionsDialog::SetUp();
    giveTail(data_);
  }
  void TearDown() override {
    if (!dialog_) return;
    EXPECT_EQ(end(dialog_, IDCANCEL), 0);
  }
  void openIt() { dialog_ = open(data_); }

  // What field, slider and spin control say.
  void expectQuality(int quality, const std::string& after) const {
    dialog_.settle();
    EXPECT_EQ(dialog_.control(qualityField).text(), std::to_string(quality)) << after;
    EXPECT_EQ(sliderAt(dialog_), quality) << after;
  }

  FileData data_;
  Window dialog_;
};

std::vector<std::string> entriesOf(const Window& list) {
  std::vector<std::string> entries;
  for (LRESULT index = 0; index < list.send(CB_GETCOUNT); ++index) {
    char text[260] = {};
    list.send(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text));
    entries.emplace_back(text);
  }
  return entries;
}

TEST_F(SaveOptionsControls, ShowTheRecordsOwnQuality) {
  openIt();
  expectQuality(70, "opening");
  const Window slider = dialog_.control(qualitySlider);
  EXPECT_EQ(slider.className(), "msctls_trackbar32");
  EXPECT_EQ(slider.send(TBM_GETRANGEMIN), 0);
  EXPECT_EQ(slider.send(TBM_GETRANGEMAX), 100);
  EXPECT_EQ(slider.send(TBM_GETPAGESIZE), 10);
  const Window spin = dialog_.control(qualitySpin);
  EXPECT_EQ(spin.className(), "msctls_updown32");
  EXPECT_EQ(spin.send(UDM_GETRANGE), MAKELONG(100, 0));
  EXPECT_EQ(LOWORD(spin.send(UDM_GETPOS)), 70);
}

TEST_F(SaveOptionsControls, MarkEveryTenthOnTheSliderAndNothingElse) {
  openIt();
  const Window slider = dialog_.control(qualitySlider);
  EXPECT_EQ(slider.send(TBM_GETNUMTICS), 9 + 2) << "the two ends count";
  for (WPARAM tick = 0; tick < 9; ++tick) {
    EXPECT_EQ(slider.send(TBM_GETTIC, tick), static_cast<LRESULT>(tick * 10 + 10));
  }
  EXPECT_EQ(slider.style() & TBS_AUTOTICKS, 0U);
}

TEST_F(SaveOptionsControls, ListOneModeAndFourSamplings) {
  openIt();
  const Window mode = dialog_.control(modeList);
  EXPECT_EQ(entriesOf(mode), std::vector<std::string>{"Baseline"});
  EXPECT_EQ(mode.send(CB_GETCURSEL), 0);
  const Window sample = dialog_.control(sampleList);
  EXPECT_EQ(entriesOf(sample),
            (std::vector<std::string>{"4:4:4 (no subsampling)", "4:2:2 (half width)",
                                      "4:2:0 (half width and height)", "4:1:1 (quarter width)"}));
  EXPECT_EQ(sample.send(CB_GETCURSEL), 2);
  EXPECT_TRUE(sample.enabled());
}

TEST_F(SaveOptionsControls, ShowTheSettingsWhenTheRecordHasNone) {
  settings_->write("[KF_IJPG]\r\nMode=0\r\nSample=3\r\nQuality=33\r\nJFIF=7\r\n");
  data_.with([](auto& record) { record.tail.tag = 0; });
  openIt();
  expectQuality(33, "opening");
  EXPECT_EQ(dialog_.control(sampleList).send(CB_GETCURSEL), 3);
  EXPECT_EQ(dialog_.control(jfifBox).send(BM_GETCHECK), BST_CHECKED);
}

TEST_F(SaveOptionsControls, CheckTheJfifBoxByTheFlagOfTheFile) {
  openIt();
  EXPECT_EQ(dialog_.control(jfifBox).send(BM_GETCHECK), BST_CHECKED);
  EXPECT_EQ(end(dialog_, IDCANCEL), 0);
  data_.with([](auto& record) {
    record.tail.markerFlags = host::markerAdobe;
    record.tail.jfif = 1;
  });
  openIt();
  EXPECT_EQ(dialog_.control(jfifBox).send(BM_GETCHECK), BST_UNCHECKED);
}

TEST_F(SaveOptionsControls, SelectNothingForAModeThatIsNotListed) {
  data_.with([](auto& record) { record.tail.mode = 1; });
  openIt();
  EXPECT_EQ(dialog_.control(modeList).send(CB_GETCURSEL), CB_ERR);
}

TEST_F(SaveOptionsControls, OfferNoSamplingForGreyImages) {
  giveTail(data_, host::colourGrey);
  openIt();
  const Window sample = dialog_.control(sampleList);
  EXPECT_FALSE(sample.enabled());
  EXPECT_EQ(sample.send(CB_GETCOUNT), 0);
}

TEST_F(SaveOptionsControls, CorrectWhatIsTyped) {
  openIt();
  const Window field = dialog_.control(qualityField);
  field.selectText();
  field.type("25");
  expectQuality(25, "25");
  field.type("0");
  expectQuality(100, "250");
  EXPECT_EQ(field.send(EM_GETSEL), MAKELONG(0, 3)) << "the corrected text is selected";
  field.type("8");
  expectQuality(8, "8 over the selection");
  field.selectText();
  field.send(WM_CLEAR);
  expectQuality(0, "nothing");
  EXPECT_EQ(field.send(EM_GETSEL), MAKELONG(0, 1));
}

TEST_F(SaveOptionsControls, TakeDigitsAlone) {
  openIt();
  const Window field = dialog_.control(qualityField);
  field.type("-x");
  expectQuality(70, "-x typed");
  field.send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>("x"));
  expectQuality(0, "x pasted");
}

TEST_F(SaveOptionsControls, FollowTheSlidersKeys) {
  openIt();
  const Window slider = dialog_.control(qualitySlider);
  const std::pair<int, int> keys[] = {
      {VK_RIGHT, 71}, {VK_LEFT, 70},   {VK_DOWN, 71},  {VK_UP, 70},  {VK_NEXT, 80}, {VK_PRIOR, 70},
      {VK_END, 100},  {VK_RIGHT, 100}, {VK_PRIOR, 90}, {VK_HOME, 0}, {VK_LEFT, 0},  {VK_NEXT, 10}};
  for (const auto& [key, quality] : keys) {
    slider.key(static_cast<WPARAM>(key));
    expectQuality(quality, "key " + std::to_string(key));
  }
}

struct Notification {
  int code;
  int position;
  int from;
  int result;
};

TEST_F(SaveOptionsControls, FollowEveryNotificationOfTheSlider) {
  openIt();
  const Notification notifications[] = {
      {SB_LINELEFT, 7, 50, 49},   {SB_LINERIGHT, 7, 50, 51},    {SB_PAGELEFT, 7, 50, 40},
      {SB_PAGERIGHT, 7, 50, 60},  {SB_THUMBPOSITION, 7, 50, 7}, {SB_THUMBTRACK, 7, 50, 7},
      {SB_LEFT, 7, 50, 0},        {SB_RIGHT, 7, 50, 100},       {SB_ENDSCROLL, 7, 50, 50},
      {SB_LINELEFT, 0, 0, 0},     {SB_LINELEFT, 0, 1, 0},       {SB_PAGELEFT, 0, 4, 0},
      {SB_PAGERIGHT, 0, 96, 100}, {SB_LINERIGHT, 0, 100, 100},  {SB_THUMBTRACK, 300, 50, 100},
  };
  for (const Notification& move : notifications) {
    dialog_.control(qualityField)
        .send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(std::to_string(move.from).c_str()));
    dialog_.send(WM_HSCROLL, static_cast<WPARAM>(MAKELONG(move.code, move.position)),
                 reinterpret_cast<LPARAM>(dialog_.control(qualitySlider).handle()));
    expectQuality(move.result, "code " + std::to_string(move.code));
  }
}

TEST_F(SaveOptionsControls, FollowTheDraggedThumb) {
  openIt();
  const Window slider = dialog_.control(qualitySlider);
  RECT thumb = {};
  slider.send(TBM_GETTHUMBRECT, 0, reinterpret_cast<LPARAM>(&thumb));
  const POINT from = {(thumb.left + thumb.right) / 2, (thumb.top + thumb.bottom) / 2};
  slider.drag(from, {0, from.y});
  expectQuality(0, "dragging to the left end");
}

TEST_F(SaveOptionsControls, FollowTheSpinControl) {
  openIt();
  const Window spin = dialog_.control(qualitySpin);
  const RECT area = spin.clientArea();
  spin.pressAt({area.right / 2, area.bottom / 4});
  expectQuality(71, "the upper arrow");
  spin.pressAt({area.right / 2, area.bottom * 3 / 4});
  expectQuality(70, "the lower arrow");
  dialog_.control(qualitySlider).key(VK_HOME);
  dialog_.settle();
  spin.pressAt({area.right / 2, area.bottom / 4});
  expectQuality(1, "the upper arrow after the slider");
}

}  // namespace

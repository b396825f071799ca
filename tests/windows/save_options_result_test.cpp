// How the save-options dialog ends and what it leaves behind.
#include "tests/windows/save_options_dialog.h"
#include "tests/windows/support/handle_count.h"
#include "tests/windows/support/polling.h"

namespace {

using namespace test;

using Lines = std::vector<std::string>;

class SaveOptionsResult : public SaveOptionsDialog {
 protected:
  void SetUp() override {
    SaveOptionsDialog::SetUp();
    settings_->write(before_);
  }
  // Other choices than the record's, in every control.
  static void chooseOthers(const Window& dialog) {
    dialog.control(qualityField).selectText();
    dialog.control(qualityField).type("42");
    dialog.control(sampleList).send(CB_SETCURSEL, 3);
    dialog.control(jfifBox).click();
    dialog.settle();
  }
  static void put(std::vector<host::u8>& bytes, std::size_t offset, host::u32 value) {
    std::memcpy(&bytes.at(offset), &value, sizeof value);
  }

  const std::string before_ = "[KF_IJPG]\r\nMode=1\r\nSample=1\r\nQuality=85\r\nJFIF=1\r\n";
};

TEST_F(SaveOptionsResult, OkWritesTheRecordAndTheSettings) {
  const FileData data;
  giveTail(data);
  std::vector<host::u8> expected = data.bytes();
  put(expected, 752, 42);
  put(expected, 762, 0);
  put(expected, 766, 3);
  put(expected, 770, 0);
  const Window dialog = open(data);
  chooseOthers(dialog);
  EXPECT_EQ(end(dialog, IDOK), 1);
  EXPECT_EQ(data.bytes(), expected);
  EXPECT_TRUE(data.unlocked());
  EXPECT_EQ(settings_->lines(), (Lines{"[KF_IJPG]", "Mode=0", "Sample=3", "Quality=42", "JFIF=0"}));
}

TEST_F(SaveOptionsResult, CancelLeavesEverythingAsItWas) {
  for (const bool byKey : {false, true}) {
    const FileData data;
    giveTail(data);
    const std::vector<host::u8> expected = data.bytes();
    const Window dialog = open(data);
    chooseOthers(dialog);
    if (byKey) {
      dialog.control(qualityField).key(VK_ESCAPE);
      EXPECT_EQ(thread_->result(), 0);
    } else {
      EXPECT_EQ(end(dialog, IDCANCEL), 0);
    }
    EXPECT_EQ(data.bytes(), expected);
    EXPECT_TRUE(data.unlocked());
    EXPECT_EQ(settings_->lines(),
              (Lines{"[KF_IJPG]", "Mode=1", "Sample=1", "Quality=85", "JFIF=1"}));
  }
}

TEST_F(SaveOptionsResult, EnterIsOkAndTheCloseBoxIsCancel) {
  const FileData data;
  giveTail(data);
  open(data).control(qualityField).key(VK_RETURN);
  EXPECT_EQ(thread_->result(), 1);
  open(data).post(WM_SYSCOMMAND, SC_CLOSE);
  EXPECT_EQ(thread_->result(), 0);
}

TEST_F(SaveOptionsResult, GreyImagesKeepTheSamplingSetting) {
  const FileData data;
  giveTail(data, host::colourGrey);
  EXPECT_EQ(end(open(data), IDOK), 1);
  EXPECT_EQ(at<host::i32>(data.bytes(), 766), -1);
  EXPECT_EQ(settings_->lines().at(2), "Sample=1");
}

TEST_F(SaveOptionsResult, AModeThatIsNotListedIsStoredAsNone) {
  const FileData data;
  giveTail(data);
  data.with([](auto& record) { record.tail.mode = 1; });
  EXPECT_EQ(end(open(data), IDOK), 1);
  EXPECT_EQ(at<host::i32>(data.bytes(), 762), -1);
  EXPECT_EQ(settings_->lines().at(1), "Mode=-1");
}

TEST_F(SaveOptionsResult, ARecordOfAnotherFormatGrows) {
  const FileData data(sizeof(host::FileDataRecord));
  data.with<host::FileDataRecord>([](auto& record) { record.colourType = host::colourTrue; });
  std::vector<host::u8> expected = data.bytes();
  EXPECT_EQ(end(open(data), IDOK), 1);
  expected.resize(814);
  put(expected, 692, 62);
  std::memcpy(&expected[746], "JEPG\x90\x01", 6);  // 400
  put(expected, 752, 85);
  put(expected, 762, 0xFFFFFFFF);  // of the settings' mode 1, which is not listed
  put(expected, 766, 1);
  put(expected, 770, 1);
  EXPECT_EQ(data.bytes(), expected);
  EXPECT_TRUE(data.unlocked());
}

// The handle is no record any more when the dialog ends, as when memory is out.
TEST_F(SaveOptionsResult, AFailedEnlargementComesAfterTheSettings) {
  HGLOBAL record = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(host::FileDataRecord));
  DialogThread thread([record] { return show(nullptr, record); });
  const Window dialog = thread.dialog();
  dialog.control(qualityField).selectText();
  dialog.control(qualityField).type("42");
  GlobalFree(record);
  dialog.control(IDOK).click();
  EXPECT_EQ(thread.result(), 0);
  EXPECT_EQ(settings_->lines().at(3), "Quality=42");
}

TEST_F(SaveOptionsResult, WithoutARecordNothingHappens) {
  EXPECT_EQ(show(nullptr, nullptr), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(SaveOptionsResult, TheOwnerIsDisabledWhileTheDialogIsOpen) {
  const FileData data;
  giveTail(data);
  std::atomic<HWND> owner = nullptr;
  DialogThread thread([&] {
    owner = CreateWindowA("STATIC", "owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200,
                          nullptr, nullptr, nullptr, nullptr);
    const int result = show(owner, data.handle());
    DestroyWindow(owner);
    return result;
  });
  const Window dialog = thread.dialog();
  EXPECT_EQ(GetWindow(dialog.handle(), GW_OWNER), owner.load());
  EXPECT_FALSE(Window(owner).enabled());
  dialog.control(IDOK).click();
  EXPECT_EQ(thread.result(), 1);
}

// The double ends each dialog from inside its initialisation.
TEST_F(SaveOptionsResult, AThousandOpeningsLeaveNoHandle) {
  const FileData data;
  giveTail(data);
  int opened = 0;
  the().dialogStart = [&](HWND dialog, auto...) {
    ++opened;
    PostMessageA(dialog, WM_COMMAND, helpButton, 0);
    PostMessageA(dialog, WM_COMMAND, opened % 2 == 0 ? IDOK : IDCANCEL, 0);
    return 0;
  };
  for (int warming = 0; warming < 4; ++warming) show(nullptr, data.handle());
  const HandleCount before = countHandles();
  for (int time = 0; time < 1000; ++time) {
    const int result = show(nullptr, data.handle());
    ASSERT_EQ(result, opened % 2 == 0 ? 1 : 0);
    the().calls.clear();
  }
  EXPECT_EQ(countHandles(), before);
  EXPECT_EQ(opened, 1004);
}

}  // namespace

// The save-options dialog of the loaded plug-in, opened on a record of the test's own.
#pragma once

#include <memory>
#include <optional>

#include "platform/common_controls.h"
#include "tests/plugin/plugin.h"
#include "tests/plugin/settings_file.h"
#include "tests/windows/support/dialog_thread.h"

namespace test {

enum SaveOptionControl : int {
  sampleList = 767,
  jfifBox = 768,
  qualityField = 3051,
  helpButton = 3101,
  qualitySlider = 3122,
  qualitySpin = 3123,
  modeList = 3124,
};

class SaveOptionsDialog : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    settings_.emplace();
  }

  // A JPEG record of a 24-bit colour image with options of its own.
  static void giveTail(const FileData& data, host::u32 colourType = host::colourTrue) {
    data.with([=](host::JpegFileData& record) {
      record.record.colourType = colourType;
      record.tail.tag = host::jpegTailTag;
      record.tail.quality = 70;
      record.tail.mode = 0;
      record.tail.sample = 2;
      record.tail.markerFlags = host::markerJfif;
    });
  }

  static int show(HWND owner, HGLOBAL fileData) {
    return entry<host::JpgShowDlgEntry>(host::ordinalJpgShowDlgSaveOption)(0, owner, fileData);
  }
  // Opens the dialog and waits until it takes messages.
  Window open(const FileData& data) {
    thread_ = std::make_unique<DialogThread>([&data] { return show(nullptr, data.handle()); });
    return thread_->dialog();
  }
  // Ends the dialog by a button; what the entry returned.
  int end(const Window& dialog, int button) {
    dialog.control(button).click();
    return thread_->result();
  }

  static LRESULT sliderAt(const Window& dialog) {
    return dialog.control(qualitySlider).send(TBM_GETPOS);
  }

  std::optional<SettingsFile> settings_;
  std::unique_ptr<DialogThread> thread_;
};

}  // namespace test

#include "frame/save_options.h"

#include <mutex>

#include "host/k32comm.h"

namespace frame {
namespace {

constexpr char section[] = "KF_IJPG";
constexpr int settingsPathCapacity = 260;
constexpr host::u32 modeChoices = 2;

std::mutex mutex;  // of the current options
SaveOptions current = defaultSaveOptions;

struct Setting {
  const char* key;
  host::u32 SaveOptions::*value;
};
constexpr Setting settings[] = {
    {"Mode", &SaveOptions::mode},
    {"Sample", &SaveOptions::sample},
    {"Quality", &SaveOptions::quality},
    {"JFIF", &SaveOptions::jfif},
};

// Empty when the common library is missing.
struct SettingsPath {
  char text[settingsPathCapacity] = {};
  SettingsPath() noexcept { k32GetKavroIniFileName(text, settingsPathCapacity); }
  [[nodiscard]] bool known() const noexcept { return text[0] != '\0'; }
};

}  // namespace

SaveOptions saveOptions() noexcept {
  const std::lock_guard guard(mutex);
  return current;
}

void setSaveOptions(const SaveOptions& options) noexcept {
  const std::lock_guard guard(mutex);
  current = options;
}

void loadSaveOptions() noexcept {
  const SettingsPath path;
  SaveOptions loaded = defaultSaveOptions;
  if (path.known()) {
    for (const Setting& setting : settings) {
      loaded.*setting.value = GetPrivateProfileIntA(
          section, setting.key, static_cast<INT>(defaultSaveOptions.*setting.value), path.text);
    }
  }
  // Mode and sample are indices into fixed lists. Quality and JFIF stay as read: a writer corrects
  // a quality above 100 on the image's own copy.
  if (loaded.mode >= modeChoices) loaded.mode = defaultSaveOptions.mode;
  loaded.sample = servedSample(loaded.sample);
  setSaveOptions(loaded);
}

void storeSaveOptions() noexcept {
  const SettingsPath path;
  if (!path.known()) return;
  const SaveOptions stored = saveOptions();
  for (const Setting& setting : settings) {
    char text[16];
    wsprintfA(text, "%d", static_cast<int>(stored.*setting.value));
    WritePrivateProfileStringA(section, setting.key, text, path.text);
  }
}

}  // namespace frame

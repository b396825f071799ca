// The save options in the settings file that the plug-in reads.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "fiohost/companions.h"
#include "host/types.h"

namespace fiohost {

struct SaveSettings {
  host::u32 mode = 0;    // host::EncodingMode
  host::u32 sample = 1;  // host::ChromaSampling
  host::u32 quality = 85;
  host::u32 jfif = 1;
};

// One setting: its key in the file, its values' names, and where it lies.
struct SettingKind {
  const char* key;
  host::u32 SaveSettings::*value;
  host::u32 largest;
  std::array<const char*, 4> names;  // of the values from 0; null where a number is meant
};
[[nodiscard]] const std::array<SettingKind, 4>& settingKinds();

// A value by name or number; none when the setting has no such value.
[[nodiscard]] std::optional<host::u32> parseSetting(const SettingKind& kind,
                                                    const std::string& text);
[[nodiscard]] std::string settingInWords(const SettingKind& kind, host::u32 value);

class SettingsFile {
 public:
  // Throws Failure when the settings file's place is not known.
  explicit SettingsFile(const std::filesystem::path& folder);

  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  // Out-of-range values come as the plug-in takes them.
  [[nodiscard]] SaveSettings load() const;
  // Throws Failure when the file cannot be written.
  void store(const SettingKind& kind, host::u32 value) const;

 private:
  Module module_;
  std::string path_;
};

}  // namespace fiohost

#include "fiohost/save_settings.h"

#include <charconv>
#include <cstring>

#include "fiohost/failure.h"

namespace fiohost {
namespace {

constexpr char section[] = "KF_IJPG";
constexpr int pathCapacity = 260;

constexpr std::array kinds = {
    SettingKind{"Mode", &SaveSettings::mode, 1, {"baseline", "progressive"}},
    SettingKind{"Sample", &SaveSettings::sample, 3, {"444", "422", "420", "411"}},
    SettingKind{"Quality", &SaveSettings::quality, 100, {}},
    SettingKind{"JFIF", &SaveSettings::jfif, 1, {"no", "yes"}},
};

std::optional<host::u32> parseNumber(const std::string& text) {
  host::u32 value = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end) return std::nullopt;
  return value;
}

}  // namespace

const std::array<SettingKind, 4>& settingKinds() { return kinds; }

std::optional<host::u32> parseSetting(const SettingKind& kind, const std::string& text) {
  for (host::u32 value = 0; value < kind.names.size(); ++value) {
    if (kind.names[value] != nullptr && text == kind.names[value]) return value;
  }
  const std::optional<host::u32> number = parseNumber(text);
  return number && *number <= kind.largest ? number : std::nullopt;
}

std::string settingInWords(const SettingKind& kind, host::u32 value) {
  if (value < kind.names.size() && kind.names[value] != nullptr) return kind.names[value];
  return std::to_string(value);
}

SettingsFile::SettingsFile(const std::filesystem::path& folder) : module_(folder / "k32Comm.dll") {
  char path[pathCapacity] = {};
  module_.entry<void(char*, int)>("k32GetKavroIniFileName")(path, pathCapacity);
  path_ = path;
  if (path_.empty()) {
    throw Failure("the place of the settings file is not known",
                  "name one in the environment variable KFIO_INI");
  }
}

SaveSettings SettingsFile::load() const {
  const SaveSettings defaults;
  SaveSettings loaded;
  for (const SettingKind& kind : kinds) {
    loaded.*kind.value = GetPrivateProfileIntA(
        section, kind.key, static_cast<INT>(defaults.*kind.value), path_.c_str());
  }
  if (loaded.mode > kinds[0].largest) loaded.mode = defaults.mode;
  if (loaded.sample > kinds[1].largest) loaded.sample = defaults.sample;
  return loaded;
}

void SettingsFile::store(const SettingKind& kind, host::u32 value) const {
  const std::string text = std::to_string(value);
  if (WritePrivateProfileStringA(section, kind.key, text.c_str(), path_.c_str()) != 0) return;
  throw Failure("the settings file " + path_ + " cannot be written",
                "check its folder's permissions or name another in KFIO_INI");
}

}  // namespace fiohost

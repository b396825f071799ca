#include <iostream>

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/picture_words.h"
#include "fiohost/save_settings.h"

namespace fiohost {
namespace {

// KEY=VALUE with a known key (in any case) and one of its values.
struct Change {
  const SettingKind* kind;
  host::u32 value;
};

bool sameKey(const std::string& given, const char* key) {
  const std::string known = key;
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
  };
  return std::equal(given.begin(), given.end(), known.begin(), known.end(), same);
}

std::optional<Change> parseChange(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos) return std::nullopt;
  for (const SettingKind& kind : settingKinds()) {
    if (!sameKey(text.substr(0, equals), kind.key)) continue;
    const std::optional<host::u32> value = parseSetting(kind, text.substr(equals + 1));
    if (value) return Change{&kind, *value};
  }
  return std::nullopt;
}

std::string checkChange(const std::string& text) {
  if (parseChange(text)) return "";
  return "\"" + text +
         "\" is no setting; known are Mode=baseline|progressive, Sample=444|422|420|411, "
         "Quality=0 to 100, JFIF=yes|no";
}

class SettingsCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("KEY=VALUE", changes_, "settings to change")->check(&checkChange);
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session&) override {
    const SettingsFile file(pluginFolder());
    for (const std::string& text : changes_) {
      const std::optional<Change> change = parseChange(text);
      if (change) file.store(*change->kind, change->value);
    }
    print(file);
    return exitSuccess;
  }

 private:
  void print(const SettingsFile& file) const {
    const SaveSettings settings = file.load();
    Json json = {{"file", file.path()}};
    std::string words = file.path() + "\n";
    for (const SettingKind& kind : settingKinds()) {
      json[kind.key] = settings.*kind.value;
      words += factLine(kind.key, settingInWords(kind, settings.*kind.value));
    }
    if (json_) {
      printJson(json);
    } else {
      std::cout << words;
    }
  }

  std::vector<std::string> changes_;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> makeSettingsCommand() { return std::make_unique<SettingsCommand>(); }

}  // namespace fiohost

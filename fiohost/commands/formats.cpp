#include <cstring>
#include <iostream>

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/picture_words.h"

namespace fiohost {
namespace {

std::string hexadecimal(unsigned value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

// A fixed field's text, which need not end in a NUL.
template <std::size_t size>
std::string fieldText(const char (&field)[size]) {
  return std::string(field, strnlen(field, size));
}

std::string signatureText(const host::FormatInfoRecord& record) {
  std::string text;
  for (std::size_t i = 0; i < std::min<std::size_t>(record.signatureLength, 2); ++i) {
    text += (i > 0 ? " " : "") + hexadecimal(record.signature[i], 2);
  }
  return text;
}

std::string inWords(Family family, const host::FormatInfoRecord& record) {
  const bool accepted = record.versionedFormatId != 0;
  std::string text = std::string(familyName(family)) + "\n";
  text += factLine("Name", fieldText(record.displayName));
  text += factLine("Extension", "." + fieldText(record.extension));
  text += factLine("Starts with", signatureText(record));
  text += factLine("Format id", "0x" + hexadecimal(record.formatId, 4));
  text += factLine("Version",
                   accepted ? "accepted, as format 0x" + hexadecimal(record.versionedFormatId, 4)
                            : "refused by the file-I/O layer");
  text += factLine("Dialogs", record.hasDialogs != 0 ? "yes" : "none");
  return text;
}

Json inJson(Family family, const host::FormatInfoRecord& record) {
  return {{"format", familyName(family)},
          {"name", fieldText(record.displayName)},
          {"extension", fieldText(record.extension)},
          {"signature", signatureText(record)},
          {"formatId", record.formatId},
          {"versionedFormatId", record.versionedFormatId},
          {"versionAccepted", record.versionedFormatId != 0},
          {"dialogs", record.hasDialogs != 0}};
}

class FormatsCommand : public Command {
 public:
  void declare(CLI::App& arguments) override { arguments.add_flag("--json", json_, "print JSON"); }

  ExitCode run(const Session& session) override {
    std::string words =
        "The plug-in serves " + std::to_string(session.plugin.formatCount()) + " formats.\n";
    Json all = Json::array();
    for (const Family family : {Family::jpeg, Family::mpo}) {
      const auto record = session.plugin.formatInfo(family);
      if (!record) {
        throw Failure(
            "the plug-in gives no information about its format " + std::string(familyName(family)),
            "close other programs, memory may be short");
      }
      words += inWords(family, *record);
      all.push_back(inJson(family, *record));
    }
    if (json_) {
      printJson(all);
    } else {
      std::cout << words;
    }
    return exitSuccess;
  }

 private:
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> makeFormatsCommand() { return std::make_unique<FormatsCommand>(); }

}  // namespace fiohost

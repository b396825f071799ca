#include "fiohost/shell/manual.h"

#include "fiohost/shell/examples.h"

namespace fiohost {
namespace {

// A hyphen that is typed, a backslash and a line that would begin with a request are written so.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '-') {
      result += "\\-";
    } else if (c == '\\') {
      result += "\\e";
    } else {
      result += c;
    }
  }
  const bool request = !result.empty() && (result.front() == '.' || result.front() == '\'');
  return request ? "\\&" + result : result;
}

// A value's type without the set of its members, which the manual tells in words.
std::string valueName(const DeclaredOption& option) {
  if (!option.choices.empty()) {
    std::string text;
    for (const std::string& choice : option.choices) text += (text.empty() ? "" : "|") + choice;
    return text;
  }
  return option.value.substr(0, option.value.find(':'));
}

std::string namesText(const DeclaredOption& option) {
  std::string text;
  for (const std::string& name : option.names) {
    text += (text.empty() ? "" : ", ") + ("\\fB" + escaped(name) + "\\fR");
  }
  if (!option.value.empty() && !option.positional) {
    text += " \\fI" + escaped(valueName(option)) + "\\fR";
  }
  return text;
}

void appendExamples(std::string& page, const std::string& path) {
  for (const Example& example : examplesOf(path)) {
    page +=
        ".PP\n.RS\n" + escaped(example.line) + "\n.br\n(" + escaped(example.meaning) + ")\n.RE\n";
  }
}

void appendOptions(std::string& page, const CLI::App& app) {
  for (const DeclaredOption& option : optionsOf(app)) {
    page += ".TP\n" + namesText(option) + "\n" + escaped(option.description) +
            (option.required ? " (required)" : "") + "\n";
  }
}

void appendCommand(std::string& page, const CLI::App& app) {
  const std::string path = pathOf(app);
  if (partsOf(app).empty()) {
    page += ".SS fiohost " + escaped(path) + "\n" + escaped(app.get_description()) + "\n";
    appendExamples(page, path);
    appendOptions(page, app);
  }
  for (const CLI::App* part : partsOf(app)) appendCommand(page, *part);
}

constexpr const char* head =
    R"(.\" Made by "fiohost man"; a test compares it with what the program declares.
.TH FIOHOST 1 "" "k32Jpg" "User commands"
.SH NAME
fiohost \- open, describe and save JPEG and multi\-picture files
.SH SYNOPSIS
.B fiohost
.I command
.RI [ arguments ]
.SH DESCRIPTION
)";

constexpr const char* tail = R"(.SH EXIT STATUS
.TP
.B 0
everything was done
.TP
.B 1
an input failed, or a fault was found
.TP
.B 2
the command line was wrong
.SH ENVIRONMENT
.TP
.B KFIO_INI
the file with the save options
.TP
.B NO_COLOR
has nothing to turn off: the program prints no colours
.SH NOTES
Data goes to the standard output, messages and the progress that a terminal shows to the standard error.
The members of the JSON form are listed in docs/json.md.
)";

}  // namespace

std::string manualPage(const CLI::App& app) {
  std::string page = head;
  page += escaped(app.get_description()) + "\n";
  appendExamples(page, "");
  page += ".SH COMMANDS\n";
  for (const CLI::App* part : partsOf(app)) appendCommand(page, *part);
  return page + tail;
}

}  // namespace fiohost

#include "fiohost/shell/command_line.h"

#include <sstream>

#include "fiohost/shell/examples.h"

namespace fiohost {
namespace {

// What people look for first stands first.
class ExamplesFirst : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override {
    std::string help = CLI::Formatter::make_help(app, std::move(name), mode);
    if (mode == CLI::AppFormatMode::Sub) return help;
    std::string text;
    for (const Example& example : examplesOf(pathOf(*app))) {
      text += std::string("  ") + example.line + "\n      " + example.meaning + "\n";
    }
    return (text.empty() ? "" : "Examples:\n" + text + "\n") + help;
  }
};

std::string firstName(const CLI::Option& option) {
  if (option.get_positional()) return option.get_name(true, false);
  return option.get_lnames().empty() ? "-" + option.get_snames().front()
                                     : "--" + option.get_lnames().front();
}

// Members of a set stand in braces behind the type: "TEXT:{444,422,420,411}".
std::vector<std::string> choicesIn(const std::string& type) {
  std::vector<std::string> choices;
  const std::size_t open = type.find('{');
  const std::size_t close = type.find('}');
  if (open == std::string::npos || close == std::string::npos) return choices;
  std::istringstream members(type.substr(open + 1, close - open - 1));
  for (std::string member; std::getline(members, member, ',');) choices.push_back(member);
  return choices;
}

DeclaredOption declared(const CLI::Option& option) {
  DeclaredOption result = {{},
                           {},
                           choicesIn(option.get_type_name()),
                           option.get_description(),
                           option.get_positional(),
                           option.get_required()};
  for (const std::string& name : option.get_snames()) result.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) result.names.push_back("--" + name);
  if (result.positional) result.names = {firstName(option)};
  if (option.get_type_size() != 0) result.value = option.get_type_name();
  return result;
}

}  // namespace

CommandLine::CommandLine()
    : app_("Opens JPEG and MPO pictures through the plug-in K32JPG.FIO.", "fiohost") {
  app_.formatter(std::make_shared<ExamplesFirst>());
  app_.set_version_flag("--version", "fiohost " KF_VERSION, "Print the version and exit");
  app_.require_subcommand(1);
  app_.allow_windows_style_options(false);  // "/folder/picture.jpg" is a file on every system
  for (const CommandEntry& entry : commandTable()) {
    CLI::App* arguments = app_.add_subcommand(entry.name, entry.summary);
    commands_.push_back({arguments, entry.make()});
    commands_.back().command->declare(*arguments);
  }
}

std::string pathOf(const CLI::App& app) {
  if (app.get_parent() == nullptr) return "";
  const std::string parent = pathOf(*app.get_parent());
  return (parent.empty() ? "" : parent + " ") + app.get_name();
}

std::vector<const CLI::App*> partsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<DeclaredOption> optionsOf(const CLI::App& app) {
  std::vector<DeclaredOption> options;
  for (const CLI::Option* option : app.get_options()) options.push_back(declared(*option));
  return options;
}

}  // namespace fiohost

#include "fiohost/shell/completion.h"

namespace fiohost {
namespace {

struct CommandWords {
  std::string path;
  std::vector<std::string> parts;      // the commands below
  std::vector<std::string> options;    // every name
  std::vector<DeclaredOption> chosen;  // those with few values
};

std::string joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

void collect(const CLI::App& app, std::vector<CommandWords>& all) {
  CommandWords words = {pathOf(app), {}, {}, {}};
  for (const CLI::App* part : partsOf(app)) words.parts.push_back(part->get_name());
  for (const DeclaredOption& option : optionsOf(app)) {
    if (!option.choices.empty()) words.chosen.push_back(option);
    if (option.positional) continue;
    words.options.insert(words.options.end(), option.names.begin(), option.names.end());
  }
  all.push_back(std::move(words));
  for (const CLI::App* part : partsOf(app)) collect(*part, all);
}

std::vector<CommandWords> allWords(const CLI::App& app) {
  std::vector<CommandWords> all;
  collect(app, all);
  return all;
}

constexpr const char* bashHead =
    R"(# Completion of fiohost for bash: source it, or put it into bash's completion folder.
_fiohost() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local path= word parts options choices= positional=
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$path:$word" in
)";
constexpr const char* bashMiddle = R"(    esac
  done
  case "$path" in
)";
constexpr const char* bashChoices = R"(  esac
  case "$path:$previous" in
)";
constexpr const char* bashTail = R"(  esac
  COMPREPLY=()
  if [[ -n $choices ]]; then
    COMPREPLY=($(compgen -W "$choices" -- "$current"))
  elif [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$current"))
  elif [[ -n $parts$positional ]]; then
    COMPREPLY=($(compgen -W "$parts $positional" -- "$current"))
  fi
}
# Where nothing of the program's own fits, bash completes file names.
complete -o bashdefault -o default -F _fiohost fiohost
)";

constexpr const char* powershellHead =
    R"(# Completion of fiohost for PowerShell: add it to the profile.
Register-ArgumentCompleter -Native -CommandName fiohost, fiohost.exe -ScriptBlock {
  param($wordToComplete, $commandAst, $cursorPosition)
  $words = @{
)";
constexpr const char* powershellMiddle = R"(  }
  $choices = @{
)";
constexpr const char* powershellTail = R"(  }
  $path = ''
  $previous = ''
  foreach ($element in @($commandAst.CommandElements | Select-Object -Skip 1)) {
    $word = $element.ToString()
    if ($element.Extent.EndOffset -ge $cursorPosition) { break }
    $longer = ($path + ' ' + $word).Trim()
    if ($words.ContainsKey($longer)) { $path = $longer }
    $previous = $word
  }
  $fitting = $words[$path]
  if ($choices.ContainsKey($path + ':' + $previous)) { $fitting = $choices[$path + ':' + $previous] }
  $fitting | Where-Object { $_ -like "$wordToComplete*" } | ForEach-Object {
    [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)
  }
}
)";

std::string quotedForPowershell(const std::vector<std::string>& words) {
  return words.empty() ? "@()" : "@('" + joined(words, "', '") + "')";
}

}  // namespace

std::string bashCompletion(const CLI::App& app) {
  const std::vector<CommandWords> all = allWords(app);
  std::string script = bashHead;
  for (const CommandWords& words : all) {
    for (const std::string& part : words.parts) {
      const std::string path = words.path.empty() ? part : words.path + " " + part;
      script.append("      \"").append(words.path).append(":").append(part);
      script.append("\") path=\"").append(path).append("\" ;;\n");
    }
  }
  script += bashMiddle;
  for (const CommandWords& words : all) {
    script += "    \"" + words.path + "\") parts=\"" + joined(words.parts, " ") + "\" options=\"" +
              joined(words.options, " ") + "\"";
    for (const DeclaredOption& option : words.chosen) {
      if (option.positional) script += " positional=\"" + joined(option.choices, " ") + "\"";
    }
    script += " ;;\n";
  }
  script += bashChoices;
  for (const CommandWords& words : all) {
    for (const DeclaredOption& option : words.chosen) {
      if (option.positional) continue;
      for (const std::string& name : option.names) {
        script += "    \"" + words.path + ":" + name + "\") choices=\"" +
                  joined(option.choices, " ") + "\" ;;\n";
      }
    }
  }
  // A case without a pattern is none to bash.
  return script + "    *) ;;\n" + bashTail;
}

std::string powershellCompletion(const CLI::App& app) {
  const std::vector<CommandWords> all = allWords(app);
  std::string script = powershellHead;
  for (const CommandWords& words : all) {
    std::vector<std::string> both = words.parts;
    both.insert(both.end(), words.options.begin(), words.options.end());
    for (const DeclaredOption& option : words.chosen) {
      if (!option.positional) continue;
      both.insert(both.end(), option.choices.begin(), option.choices.end());
    }
    script += "    '" + words.path + "' = " + quotedForPowershell(both) + "\n";
  }
  script += powershellMiddle;
  for (const CommandWords& words : all) {
    for (const DeclaredOption& option : words.chosen) {
      if (option.positional) continue;
      for (const std::string& name : option.names) {
        script +=
            "    '" + words.path + ":" + name + "' = " + quotedForPowershell(option.choices) + "\n";
      }
    }
  }
  return script + powershellTail;
}

}  // namespace fiohost

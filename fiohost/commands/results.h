// How every command tells its results: words or JSON on the standard output, one line a failure on
// the standard error.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "fiohost/commands/command.h"
#include "fiohost/commands/loss_options.h"
#include "fiohost/convert_picture.h"
#include "fiohost/failure.h"
#include "fiohost/json_value.h"

namespace fiohost {

// Of the JSON form that docs/json.md lists. A new member does not change it; a member that goes or
// means something else does.
inline constexpr int jsonVersion = 1;

// Every object at the top, alone or in an array, begins with the version.
void printJson(Json value);

// The failure's line on the standard error. The file's name is left out when it is empty.
void printFailure(const std::string& file, const Failure& failure);

// False, after a line on the standard error, when the plug-in has no windows for the option.
[[nodiscard]] bool hasWindowsFor(const Session& session, const std::string& option);

// What a command has to say about one file.
struct FileResult {
  std::string words;
  Json json;
};

// What became of an input that was saved anew.
[[nodiscard]] FileResult savedResult(const std::string& input, const Converted& saved);

// Saves an input with edited metadata, its settings kept. replace: an existing output.
[[nodiscard]] FileResult savedWith(const Session& session, const SourceFile& file,
                                   const std::string& output, bool replace,
                                   const LossOptions& losses, const MetadataEdit& edit);

// Serves each file on its own: a failure is told and the next file's turn comes. With json the
// results come as one array in the files' order, a failed file as {"file", "error"}.
ExitCode serveFiles(const std::vector<std::string>& files, bool json,
                    const std::function<FileResult(const std::string&)>& serve);

}  // namespace fiohost

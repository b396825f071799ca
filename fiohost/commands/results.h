// How every command tells its results: words or JSON on the standard output, one line a failure on
// the standard error.
#pragma once

#include <functional>
#include <string>
#include <utility>
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
void printJson(const Json& value);

// The failure's line on the standard error. The file's name is left out when it is empty.
void printFailure(const std::string& file, const Failure& failure);

// False, after a line on the standard error, when the plug-in has no windows for the option.
[[nodiscard]] bool hasWindowsFor(const Session& session, const std::string& option);

// What a command has to say about one file. Only the form that is printed need be filled.
struct FileResult {
  FileResult() = default;
  FileResult(std::string resultWords, Json resultJson)
      : words(std::move(resultWords)), json(std::move(resultJson)) {}

  std::string words;
  Json json;
  std::string warning;  // a line for the standard error
};

// What became of an input that was saved anew.
[[nodiscard]] FileResult savedResult(const std::string& input, const Converted& saved);

// Saves an input with edited metadata, its settings kept. replace: an existing output.
[[nodiscard]] FileResult savedWith(const Session& session, const SourceFile& file,
                                   const std::string& output, bool replace,
                                   const LossOptions& losses, const MetadataEdit& edit);

struct Serving {
  bool json =
      false;  // results as one array in the files' order, a failed file as {"file", "error"}
  unsigned jobs = 1;  // files that are served at a time
};

// Serves each file on its own, up to so many at a time: a failure is told and the other files are
// served. Results and failures are told in the files' order. serve is called on several threads
// when jobs is above 1; names mean there what they mean outside.
ExitCode serveFiles(const std::vector<std::string>& files, const Serving& serving,
                    const std::function<FileResult(const std::string&)>& serve);

}  // namespace fiohost

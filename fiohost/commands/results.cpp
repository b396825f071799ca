#include "fiohost/commands/results.h"

#include <iostream>

#include "fiohost/interrupt.h"

namespace fiohost {
namespace {

Json failureInJson(const std::string& file, const Failure& failure) {
  return {{"file", file},
          {"error",
           {{"code", failure.code() != 0 ? Json(failure.code()) : Json(nullptr)},
            {"message", failure.what()},
            {"advice", failure.advice()}}}};
}

FileResult serveOne(const std::string& file,
                    const std::function<FileResult(const std::string&)>& serve) {
  try {
    return serve(file);
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw Failure("there is not enough memory", "close other programs");
  } catch (const std::exception& error) {
    throw Failure(error.what(), "check the file and try again");
  }
}

}  // namespace

void printJson(Json value) {
  value.lead("version", jsonVersion);
  std::cout << value.dump() << '\n';
}

bool hasWindowsFor(const Session& session, const std::string& option) {
  if (session.plugin.hasWindows()) return true;
  printFailure("", Failure(option + ": this build of the plug-in has no windows",
                           "use the Windows build, or leave the option out"));
  return false;
}

void printFailure(const std::string& file, const Failure& failure) {
  std::cout.flush();
  std::cerr << "fiohost: " << (file.empty() ? "" : file + ": ") << failure.line() << '\n';
}

FileResult savedResult(const std::string& input, const Converted& saved) {
  return {input + " -> " + saved.output + ", " + std::to_string(saved.byteCount) + " bytes\n" +
              outcomesInWords(saved.segments),
          {{"file", input},
           {"output", saved.output},
           {"bytes", saved.byteCount},
           {"segments", outcomesInJson(saved.segments)}}};
}

FileResult savedWith(const Session& session, const SourceFile& file, const std::string& output,
                     bool replace, const LossOptions& losses, const MetadataEdit& edit) {
  ConvertOptions options;
  options.keepSourceSettings = true;
  options.replace = replace;
  options = losses.settle(file, options);
  return savedResult(file.name(), convertPicture(session, file, output, options, &edit));
}

ExitCode serveFiles(const std::vector<std::string>& files, bool json,
                    const std::function<FileResult(const std::string&)>& serve) {
  Json all = Json::array();
  ExitCode code = exitSuccess;
  for (const std::string& file : files) {
    if (interrupted()) return exitSomeFailed;
    try {
      FileResult result = serveOne(file, serve);
      if (!json) std::cout << result.words << std::flush;
      all.push_back(std::move(result.json));
    } catch (const Failure& failure) {
      printFailure(file, failure);
      all.push_back(failureInJson(file, failure));
      code = exitSomeFailed;
    }
  }
  if (json) printJson(std::move(all));
  return code;
}

}  // namespace fiohost

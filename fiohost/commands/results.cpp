#include "fiohost/commands/results.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <utility>

#include "fiohost/interrupt.h"
#include "fiohost/jobs/ordered_work.h"
#include "fiohost/progress.h"
#include "platform/console/start_folder.h"

namespace fiohost {
namespace {

Json failureInJson(const std::string& file, const Failure& failure) {
  return {{"file", file},
          {"error",
           {{"code", failure.code() != 0 ? Json(failure.code()) : Json(nullptr)},
            {"message", failure.what()},
            {"advice", failure.advice()}}}};
}

constexpr int jsonIndent = 2;

std::string jsonText(const Json& value) {
  // File names need not be valid UTF-8 on every system.
  return value.dump(jsonIndent, ' ', false, Json::error_handler_t::replace);
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

// Every object that is printed begins with the version of its form.
Json withVersion(Json value) {
  if (value.is_array()) {
    for (Json& each : value) each = withVersion(std::move(each));
    return value;
  }
  Json::object_t led;
  led.reserve(value.size() + 1);
  led.emplace("version", jsonVersion);
  for (auto& [key, member] : value.get_ref<Json::object_t&>()) led.emplace(key, std::move(member));
  return led;
}

// What several threads must not do at once is left out or made safe.
struct ThreadsAtWork {
  platform::StartFolder names;
  Progress::Silence progress;
};

// What became of a file, ready to be printed: words, or with JSON the text of an object.
struct Served {
  std::string text;
  std::string warning;
  std::optional<Failure> failure;
};

Served serveAsText(const std::string& file, bool json,
                   const std::function<FileResult(const std::string&)>& serve) {
  try {
    FileResult result = serveOne(file, serve);
    return {json ? jsonText(withVersion(std::move(result.json))) : std::move(result.words),
            result.warning, std::nullopt};
  } catch (const Failure& failure) {
    return {json ? jsonText(withVersion(failureInJson(file, failure))) : std::string(), "",
            failure};
  }
}

// Objects put together to the array that they would be printed as.
class JsonArray {
 public:
  void add(const std::string& object) {
    text_ += text_.empty() ? "[\n" : ",\n";
    std::size_t start = 0;
    while (start < object.size()) {
      const std::size_t end = std::min(object.find('\n', start), object.size() - 1) + 1;
      text_.append(jsonIndent, ' ').append(object, start, end - start);
      start = end;
    }
  }
  void print() const { std::cout << (text_.empty() ? "[]" : text_ + "\n]") << '\n'; }

 private:
  std::string text_;
};

}  // namespace

void printJson(const Json& value) { std::cout << jsonText(withVersion(value)) << '\n'; }

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
  const SettledSave settled = losses.settle(file, options);
  FileResult result =
      savedResult(file.name(), convertPicture(session, file, output, settled.options, &edit));
  result.warning = settled.warning;
  return result;
}

namespace {

// Prints what becomes of one file after the other.
class Teller {
 public:
  Teller(const std::vector<std::string>& files, bool json) : files_(files), json_(json) {}

  void tell(std::size_t number, const Served& served) {
    std::cerr << served.warning;
    if (json_) {
      array_.add(served.text);
    } else {
      std::cout << served.text << std::flush;
    }
    ++told_;
    if (!served.failure) return;
    printFailure(files_[number], *served.failure);
    code_ = exitSomeFailed;
  }

  // An interrupted run has no array: it would seem to be whole.
  [[nodiscard]] ExitCode finish() const {
    if (interrupted() && told_ < files_.size()) return exitSomeFailed;
    if (json_) array_.print();
    return code_;
  }

 private:
  const std::vector<std::string>& files_;
  bool json_;
  JsonArray array_;
  std::size_t told_ = 0;
  ExitCode code_ = exitSuccess;
};

}  // namespace

ExitCode serveFiles(const std::vector<std::string>& files, const Serving& serving,
                    const std::function<FileResult(const std::string&)>& serve) {
  std::optional<ThreadsAtWork> threads;
  if (serving.jobs > 1 && files.size() > 1) threads.emplace();
  std::vector<Served> served(files.size());
  Teller teller(files, serving.json);
  runInOrder(files.size(), serving.jobs,
             {[] { return !interrupted(); },
              [&](std::size_t i) { served[i] = serveAsText(files[i], serving.json, serve); },
              [&](std::size_t i) { teller.tell(i, std::exchange(served[i], {})); }});
  return teller.finish();
}

}  // namespace fiohost

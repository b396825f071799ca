#include <algorithm>
#include <iostream>
#include <set>

#include "fiohost/commands/command.h"
#include "fiohost/commands/results.h"
#include "fiohost/jobs/jobs_option.h"
#include "fiohost/mpo_extract.h"
#include "fiohost/mpo_words.h"
#include "fiohost/numbers.h"

namespace fiohost {
namespace {

class MpoInfoCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", files_, "MPO files")->required();
    arguments.add_flag("--json", json_, "print JSON");
    jobs_.declare(arguments);
  }

  ExitCode run(const Session& session) override {
    return serveFiles(files_, {json_, jobs_.count()}, [&session](const std::string& name) {
      const MpoFile mpo = describeMpo(session, SourceFile(name));
      return FileResult{listInWords(name, mpo), listInJson(name, mpo)};
    });
  }

 private:
  std::vector<std::string> files_;
  bool json_ = false;
  Jobs jobs_;
};

std::string checkNumbers(const std::string& text) {
  return text == "all" || parseNumbers(text)
             ? ""
             : "--images takes \"all\" or numbers such as 1,3, not " + text;
}

class MpoExtractCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.add_option("FILE", file_, "MPO file")->required();
    arguments.add_option("-o,--output", folder_, "the folder to write to")->required();
    arguments.add_option("--images", images_, "the images' numbers with commas, or all")
        ->check(&checkNumbers);
    arguments.add_flag("--jpeg", jpeg_, "the JPEG streams as they are, not decoded to PNG");
    arguments.add_flag("--force", force_, "replace existing files");
    arguments.add_flag("--json", json_, "print JSON");
  }

  ExitCode run(const Session& session) override {
    std::error_code ignored;
    std::filesystem::create_directory(platform::systemPath(folder_), ignored);
    if (!std::filesystem::is_directory(platform::systemPath(folder_))) {
      throw Failure(folder_ + " is no folder and cannot become one", "name another");
    }
    return serveFiles({file_}, {json_},
                      [&](const std::string& name) { return serve(session, name); });
  }

 private:
  FileResult serve(const Session& session, const std::string& name) const {
    const SourceFile file(name);
    MpoFile mpo = describeMpo(session, file);
    FileResult result = {"", {{"file", name}, {"images", Json::array()}}};
    std::optional<Failure> first;
    for (const ListedImage& image : chosen(mpo)) {
      try {
        tell(result, name, extract(session, file, mpo, image));
      } catch (const Failure& failure) {
        if (!first) first = named(image, failure);
      }
    }
    if (!first) return result;
    if (!json_) std::cout << result.words;  // one image's failure does not undo the others
    throw Failure(*first);
  }

  // The images that were asked for; each must be there.
  [[nodiscard]] std::vector<ListedImage> chosen(const MpoFile& mpo) const {
    if (images_ == "all") return mpo.images;
    const std::vector<host::u32> given = *parseNumbers(images_);
    const std::set<host::u32> numbers(given.begin(), given.end());
    std::vector<ListedImage> images;
    for (const host::u32 number : numbers) {
      if (number > mpo.images.size()) {
        throw Failure("there is no image " + std::to_string(number),
                      "the file has " + std::to_string(mpo.images.size()));
      }
      images.push_back(mpo.images[number - 1]);
    }
    return images;
  }

  TakenImage extract(const Session& session, const SourceFile& file, MpoFile& mpo,
                     const ListedImage& image) const {
    const std::filesystem::path stem = platform::systemPath(folder_) / file.path().stem();
    const std::string output = platform::displayPath(stem) + "-" + std::to_string(image.number) +
                               (jpeg_ ? ".jpg" : ".png");
    const Existing existing = force_ ? Existing::replaced : Existing::refused;
    return jpeg_ ? extractStream(file, image, output, existing)
                 : extractPng(session, mpo, image, output, existing);
  }

  static Failure named(const ListedImage& image, const Failure& failure) {
    return Failure("image " + std::to_string(image.number) + ": " + failure.what(),
                   failure.advice(), failure.code());
  }

  static void tell(FileResult& result, const std::string& name, const TakenImage& taken) {
    result.words += name + ", image " + std::to_string(taken.number) + " -> " + taken.output +
                    ", " + std::to_string(taken.byteCount) + " bytes\n";
    result.json["images"].push_back(
        {{"number", taken.number}, {"output", taken.output}, {"bytes", taken.byteCount}});
  }

  std::string file_;
  std::string folder_;
  std::string images_ = "all";
  bool jpeg_ = false;
  bool force_ = false;
  bool json_ = false;
};

class MpoCommand : public Command {
 public:
  void declare(CLI::App& arguments) override {
    arguments.require_subcommand(1);
    add(arguments, "info", "tell the images of multi-picture files",
        std::make_unique<MpoInfoCommand>());
    add(arguments, "extract", "write a file's images to files of their own",
        std::make_unique<MpoExtractCommand>());
    add(arguments, "build", "make a multi-picture file of JPEG files", makeMpoBuildCommand());
    add(arguments, "reorder", "change the order of a file's images", makeMpoReorderCommand());
    add(arguments, "swap", "let two images change places", makeMpoSwapCommand());
    add(arguments, "remove", "leave images out", makeMpoRemoveCommand());
    add(arguments, "insert", "add JPEG files as images", makeMpoInsertCommand());
    add(arguments, "verify", "compare a file's index with its images", makeMpoVerifyCommand());
    add(arguments, "repair", "write a right index", makeMpoRepairCommand());
  }

  ExitCode run(const Session& session) override {
    const auto chosen = std::find_if(parts_.begin(), parts_.end(),
                                     [](const Part& part) { return part.arguments->parsed(); });
    return chosen->command->run(session);
  }

 private:
  struct Part {
    CLI::App* arguments;
    std::unique_ptr<Command> command;
  };

  void add(CLI::App& arguments, const char* name, const char* summary,
           std::unique_ptr<Command> command) {
    parts_.push_back({arguments.add_subcommand(name, summary), std::move(command)});
    parts_.back().command->declare(*parts_.back().arguments);
  }

  std::vector<Part> parts_;
};

}  // namespace

std::unique_ptr<Command> makeMpoCommand() { return std::make_unique<MpoCommand>(); }

}  // namespace fiohost
